#pragma once

#include "model/Uuid.h"

#include <QDialog>

#include <vector>

class QLabel;
class QListWidget;
class QPushButton;
class QTextBrowser;

namespace quillon::app {
class SermonNotesViewModel;
}
namespace quillon::store {
class SermonVersionHistory;
struct VersionSnapshot;
} // namespace quillon::store

namespace quillon::desktop {

/// The earlier states of the selected sermon, newest first, each with its time and a preview of
/// its outline and manuscript; "Restore This Version" puts the chosen state back through the
/// controller (one edit, so the state it replaces is kept and can be undone).
class VersionHistoryWindow : public QDialog {
    Q_OBJECT
public:
    VersionHistoryWindow(app::SermonNotesViewModel& controller, store::SermonVersionHistory& versions,
                         QWidget* parent = nullptr);
    ~VersionHistoryWindow() override;

    /// Opens the history of the selected sermon (one window per main window), or brings it forward.
    static VersionHistoryWindow* showFor(QWidget& window, app::SermonNotesViewModel& controller,
                                         store::SermonVersionHistory& versions);

    /// Reads the selected sermon's snapshots again.
    void reload();
    QListWidget* list() const { return m_list; }
    /// Restores the chosen snapshot; false when none is chosen or it could not be restored.
    bool restoreChosen();

private:
    void showPreview();

    app::SermonNotesViewModel& m_controller;
    store::SermonVersionHistory& m_versions;
    std::vector<store::VersionSnapshot> m_snapshots;
    QLabel* m_heading = nullptr;
    QListWidget* m_list = nullptr;
    QTextBrowser* m_preview = nullptr;
    QPushButton* m_restore = nullptr;
};

} // namespace quillon::desktop
