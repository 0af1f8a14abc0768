#pragma once

#include <QLabel>
#include <QPointer>

class QAbstractItemView;

namespace quillon::desktop {

/// A sentence in the middle of a list, table or tree while it has no rows ("Nothing in the Bible
/// matches “grace”."), so an empty view says why it is empty instead of looking broken.
class EmptyStateOverlay : public QLabel {
    Q_OBJECT
public:
    /// Follows `view`'s model (set it first); the overlay is a child of the view's viewport.
    explicit EmptyStateOverlay(QAbstractItemView& view, const QString& text = {});

    void setEmptyText(const QString& text);
    /// True while the view is empty and the sentence shows.
    bool isShowing() const { return !isHidden(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow();

    QPointer<QAbstractItemView> m_view;
};

} // namespace quillon::desktop
