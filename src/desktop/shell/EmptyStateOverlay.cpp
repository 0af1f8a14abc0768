#include "desktop/shell/EmptyStateOverlay.h"

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QEvent>

namespace quillon::desktop {

namespace {

constexpr int inset = 12;

} // namespace

EmptyStateOverlay::EmptyStateOverlay(QAbstractItemView& view, const QString& text)
    : QLabel(text, view.viewport()), m_view(&view) {
    setObjectName(view.objectName() + QStringLiteral("Empty"));
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setForegroundRole(QPalette::PlaceholderText);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    view.viewport()->installEventFilter(this);
    if (QAbstractItemModel* model = view.model()) {
        for (auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
            connect(model, signal, this, &EmptyStateOverlay::follow);
        connect(model, &QAbstractItemModel::modelReset, this, &EmptyStateOverlay::follow);
        connect(model, &QAbstractItemModel::layoutChanged, this, &EmptyStateOverlay::follow);
    }
    follow();
}

void EmptyStateOverlay::setEmptyText(const QString& text) {
    setText(text);
    follow();
}

bool EmptyStateOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize)
        follow();
    return QLabel::eventFilter(watched, event);
}

void EmptyStateOverlay::follow() {
    if (!m_view)
        return;
    const QAbstractItemModel* model = m_view->model();
    const bool empty = (!model || model->rowCount(m_view->rootIndex()) == 0) && !text().isEmpty();
    setGeometry(m_view->viewport()->rect().adjusted(inset, inset, -inset, -inset));
    setVisible(empty);
}

} // namespace quillon::desktop
