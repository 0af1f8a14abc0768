#include "desktop/shell/ToastOverlay.h"

#include <QEvent>

namespace quillon::desktop {

namespace {

constexpr int shownMs = 3500;
constexpr int bottomGap = 24;
constexpr int widest = 520;

} // namespace

ToastOverlay::ToastOverlay(QWidget* parent) : QLabel(parent) {
    setObjectName(QStringLiteral("toast"));
    setAccessibleName(tr("Notice"));
    setWordWrap(true);
    setAlignment(Qt::AlignCenter);
    setTextFormat(Qt::RichText);
    setStyleSheet(QStringLiteral("QLabel#toast { background: rgba(40, 40, 40, 230); color: white; "
                                 "border-radius: 10px; padding: 10px 18px; }"));
    hide();
    m_timer.setSingleShot(true);
    m_timer.setInterval(shownMs);
    connect(&m_timer, &QTimer::timeout, this, &QWidget::hide);
    parent->installEventFilter(this);
}

void ToastOverlay::showToast(const QString& title, const QString& detail) {
    QString text = QStringLiteral("<b>%1</b>").arg(title.toHtmlEscaped());
    if (!detail.isEmpty())
        text += QStringLiteral("<br>%1").arg(detail.toHtmlEscaped());
    setText(text);
    place();
    show();
    raise();
    m_timer.start();
}

void ToastOverlay::place() {
    QWidget* host = parentWidget();
    setMaximumWidth(std::min(widest, host->width() - 40));
    adjustSize();
    move((host->width() - width()) / 2, host->height() - height() - bottomGap);
}

bool ToastOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible())
        place();
    return QLabel::eventFilter(watched, event);
}

void ToastOverlay::mousePressEvent(QMouseEvent*) {
    hide();
}

} // namespace quillon::desktop
