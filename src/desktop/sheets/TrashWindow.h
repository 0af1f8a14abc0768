#pragma once

#include <QDialog>

class QLabel;
class QListWidget;
class QPushButton;

namespace quillon::app {
class SermonNotesViewModel;
}

namespace quillon::desktop {

/// The sermons in the trash, newest first, each with when it was trashed and how long it stays;
/// "Put Back" returns the chosen ones to the library, "Delete Permanently" removes them after a
/// question. Follows the controller's library notices while open.
class TrashWindow : public QDialog {
    Q_OBJECT
public:
    TrashWindow(app::SermonNotesViewModel& controller, QWidget* parent = nullptr);

    /// Opens the trash window of `window` (one per window), or brings it forward.
    static TrashWindow* showFor(QWidget& window, app::SermonNotesViewModel& controller);

    /// Reads the trash again.
    void reload();
    QListWidget* list() const { return m_list; }
    /// Puts the chosen sermons back; how many came back.
    int putBackSelected();

private:
    void deleteSelected();
    void updateButtons();

    app::SermonNotesViewModel& m_controller;
    QLabel* m_explanation = nullptr;
    QListWidget* m_list = nullptr;
    QPushButton* m_putBack = nullptr;
    QPushButton* m_delete = nullptr;
};

} // namespace quillon::desktop
