#include "desktop/preach/SectionBars.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace quillon::desktop {

namespace {

constexpr int rowHeight = 24;
constexpr int legendHeight = 22;

QColor deliveryColour(preach::Delivery delivery) {
    switch (delivery) {
    case preach::Delivery::scripture:
        return QColor(0xC0, 0x8A, 0x2E);
    case preach::Delivery::list:
        return QColor(0x7E, 0x5B, 0xB5);
    case preach::Delivery::prose:
        break;
    }
    return QColor(0x3C, 0x7D, 0xC4);
}

QString deliveryName(preach::Delivery delivery) {
    switch (delivery) {
    case preach::Delivery::scripture:
        return QObject::tr("Scripture reading");
    case preach::Delivery::list:
        return QObject::tr("List");
    case preach::Delivery::prose:
        break;
    }
    return QObject::tr("Prose");
}

QString minutesFigure(double minutes) {
    if (minutes < 0.95)
        return QObject::tr("%1 s").arg(std::max(1L, std::lround(minutes * 60)));
    return QObject::tr("%1 min").arg(QString::number(minutes, 'f', minutes < 9.95 ? 1 : 0));
}

} // namespace

SectionBars::SectionBars(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAccessibleName(tr("Time per section"));
}

double SectionBars::sectionMinutes(const preach::PreachTimeEstimate::Section& section, const preach::PreachPace& pace) {
    double rate = pace.wordsPerMinute;
    if (section.delivery == preach::Delivery::scripture)
        rate *= pace.scriptureFactor;
    else if (section.delivery == preach::Delivery::list)
        rate *= pace.listFactor;
    return section.words / std::max(rate, 1.0);
}

void SectionBars::setEstimate(const preach::PreachTimeEstimate& estimate, const preach::PreachPace& pace) {
    m_rows.clear();
    m_longest = 0;
    QStringList spoken;
    for (const auto& section : estimate.sections) {
        Row row{QString::fromStdString(section.title), {}, sectionMinutes(section, pace), section.delivery};
        row.figure = minutesFigure(row.minutes);
        m_longest = std::max(m_longest, row.minutes);
        spoken << row.title + u' ' + row.figure;
        m_rows.push_back(std::move(row));
    }
    setAccessibleDescription(spoken.join(QStringLiteral(", ")));
    updateGeometry();
    update();
}

QSize SectionBars::sizeHint() const {
    return {320, legendHeight + rowHeight * static_cast<int>(std::max<std::size_t>(m_rows.size(), 1)) + 4};
}

QSize SectionBars::minimumSizeHint() const {
    return {200, sizeHint().height()};
}

void SectionBars::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QFontMetrics metrics = fontMetrics();
    const int titleWidth = width() * 2 / 5;
    const int figureWidth = metrics.horizontalAdvance(QStringLiteral("00.0 min")) + 8;
    const int barLeft = titleWidth + 8;
    const int barSpace = std::max(10, width() - barLeft - figureWidth);

    int x = 0;
    for (auto delivery : {preach::Delivery::prose, preach::Delivery::scripture, preach::Delivery::list}) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(deliveryColour(delivery));
        painter.drawRoundedRect(QRectF(x, 6, 10, 10), 2, 2);
        painter.setPen(palette().color(QPalette::WindowText));
        const QString name = deliveryName(delivery);
        painter.drawText(QRect(x + 14, 0, metrics.horizontalAdvance(name) + 4, legendHeight),
                         Qt::AlignLeft | Qt::AlignVCenter, name);
        x += metrics.horizontalAdvance(name) + 30;
    }

    int y = legendHeight;
    for (const Row& row : m_rows) {
        const QRect titleRect(0, y, titleWidth, rowHeight);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(titleRect, Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(row.title, Qt::ElideRight, titleWidth));
        const double share = m_longest > 0 ? row.minutes / m_longest : 0;
        const double barWidth = std::max(3.0, share * barSpace);
        painter.setPen(Qt::NoPen);
        painter.setBrush(deliveryColour(row.delivery));
        painter.drawRoundedRect(QRectF(barLeft, y + 5, barWidth, rowHeight - 10), 3, 3);
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(QRect(barLeft + static_cast<int>(barWidth) + 6, y, figureWidth, rowHeight),
                         Qt::AlignLeft | Qt::AlignVCenter, row.figure);
        y += rowHeight;
    }
}

} // namespace quillon::desktop
