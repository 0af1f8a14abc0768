#pragma once

#include <QWidget>

class QLineEdit;
class QTreeView;

namespace quillon::app {
class SermonNotesViewModel;
}

namespace quillon::desktop {

class OutlineModel;

/// The modern layout: the whole outline as one tree, reordered by dragging an item among its
/// siblings or into another parent of the same level. Adding and deleting go to the controller.
class OutlineTree : public QWidget {
    Q_OBJECT
public:
    OutlineTree(app::SermonNotesViewModel& controller, OutlineModel& model, QWidget* parent = nullptr);

    /// Shows the controller's selection.
    void sync();
    void setReading(bool reading);
    QTreeView* view() const { return m_view; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void choose(const QModelIndex& index);
    void showMenu(const QPoint& point);
    void deleteCurrent();

    app::SermonNotesViewModel& m_controller;
    OutlineModel& m_model;
    QTreeView* m_view = nullptr;
    QLineEdit* m_addTopic = nullptr;
    bool m_syncing = false;
    bool m_reading = false;
};

} // namespace quillon::desktop
