#pragma once

#include <QStyledItemDelegate>

namespace quillon::desktop {

/// Draws one sidebar row: cover thumbnail (or the title's initial), title, series and date, and a
/// pin mark; hidden sermons are drawn faded. Every row has the same height, so the list view
/// lays out 10,000 rows without measuring them.
class SermonListDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace quillon::desktop
