#include "desktop/sidebar/SermonListDelegate.h"

#include "desktop/sidebar/SermonListModel.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace quillon::desktop {

namespace {

constexpr int margin = 6;
constexpr int thumbnail = 40;

void drawThumbnail(QPainter* painter, const QRect& box, const QModelIndex& index, const QPalette& palette) {
    QPainterPath clip;
    clip.addRoundedRect(box, 6, 6);
    painter->save();
    painter->setClipPath(clip);
    QVariant decoration = index.data(Qt::DecorationRole);
    if (decoration.canConvert<QPixmap>() && !decoration.value<QPixmap>().isNull()) {
        QPixmap pixmap = decoration.value<QPixmap>();
        QPixmap scaled = pixmap.scaled(box.size() * painter->device()->devicePixelRatioF(),
                                       Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
        scaled.setDevicePixelRatio(painter->device()->devicePixelRatioF());
        QSizeF logical = scaled.deviceIndependentSize();
        QPointF origin(box.x() - (logical.width() - box.width()) / 2, box.y() - (logical.height() - box.height()) / 2);
        painter->drawPixmap(origin, scaled);
    } else {
        // A tint between the text and the background reads on light and dark palettes alike.
        const QColor text = palette.color(QPalette::Text);
        const QColor base = palette.color(QPalette::Base);
        auto blend = [&](int (QColor::*channel)() const) {
            return ((text.*channel)() * 35 + (base.*channel)() * 65) / 100;
        };
        painter->fillRect(box, QColor(blend(&QColor::red), blend(&QColor::green), blend(&QColor::blue)));
        QFont font = painter->font();
        font.setBold(true);
        font.setPointSizeF(font.pointSizeF() * 1.3);
        painter->setFont(font);
        painter->setPen(palette.color(QPalette::Base));
        QString title = index.data(Qt::DisplayRole).toString();
        painter->drawText(box, Qt::AlignCenter, title.left(1).toUpper());
    }
    painter->restore();
}

} // namespace

void SermonListDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    background.text.clear();
    background.icon = QIcon();
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &background, painter, widget);

    const bool selected = option.state & QStyle::State_Selected;
    const bool hidden = index.data(SermonListModel::HiddenRole).toBool();
    const bool pinned = index.data(SermonListModel::PinnedRole).toBool();
    QPalette::ColorGroup group = option.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    QColor text = option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    QColor muted = text;
    muted.setAlphaF(0.65F);

    painter->save();
    if (hidden)
        painter->setOpacity(0.55);
    QRect box(option.rect.left() + margin, option.rect.top() + (option.rect.height() - thumbnail) / 2, thumbnail,
              thumbnail);
    drawThumbnail(painter, box, index, option.palette);

    int textLeft = box.right() + margin + 2;
    int pinWidth = pinned ? option.fontMetrics.horizontalAdvance(QStringLiteral("★")) + margin : 0;
    QRect titleRect(textLeft, option.rect.top() + margin, option.rect.right() - textLeft - margin - pinWidth,
                    option.fontMetrics.height());
    QFont titleFont = option.font;
    titleFont.setBold(true);
    titleFont.setItalic(hidden);
    painter->setFont(titleFont);
    painter->setPen(text);
    QString title =
        QFontMetrics(titleFont).elidedText(index.data(Qt::DisplayRole).toString(), Qt::ElideRight, titleRect.width());
    painter->drawText(titleRect, Qt::AlignLeft | Qt::AlignVCenter, title);
    if (pinned) {
        QRect pinRect(titleRect.right() + margin, titleRect.top(), pinWidth, titleRect.height());
        painter->setFont(option.font);
        painter->drawText(pinRect, Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("★"));
    }

    QFont subtitleFont = option.font;
    subtitleFont.setPointSizeF(option.font.pointSizeF() * 0.9);
    painter->setFont(subtitleFont);
    painter->setPen(muted);
    QRect subtitleRect(textLeft, titleRect.bottom() + 3, option.rect.right() - textLeft - margin,
                       QFontMetrics(subtitleFont).height());
    QString subtitle =
        QFontMetrics(subtitleFont)
            .elidedText(index.data(SermonListModel::SubtitleRole).toString(), Qt::ElideRight, subtitleRect.width());
    painter->drawText(subtitleRect, Qt::AlignLeft | Qt::AlignVCenter, subtitle);
    painter->restore();
}

QSize SermonListDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    int textHeight = option.fontMetrics.height() * 2 + 3;
    return {200, std::max(thumbnail, textHeight) + 2 * margin};
}

} // namespace quillon::desktop
