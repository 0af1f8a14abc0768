#pragma once

#include "app/ExportFormat.h"

#include <QObject>
#include <QStringList>

#include <filesystem>
#include <optional>

class QWidget;

namespace quillon::desktop {

class BackgroundTask;
class DeskServices;
class ExportRunner;
class MeshLink;
class RecordingImport;
class SermonPrinter;
class SermonSidebar;

/// What the desk's commands do, whichever menu, toolbar button, shortcut, drop or palette entry
/// starts them. Each asks what it needs (a file, a folder, a name) and then makes one call of the
/// controller; the controller's notices tell the views what changed.
class DeskCommands : public QObject {
    Q_OBJECT
public:
    /// `window` anchors the dialogs; `services`, `sidebar` and `exports` must outlive the commands.
    DeskCommands(QWidget& window, DeskServices& services, SermonSidebar& sidebar, ExportRunner& exports);
    ~DeskCommands() override;

    void newSermon();
    void openDocument();
    void importFile();
    /// Opens sermon documents and archives, and imports outlines, by their suffix.
    void openFiles(const QStringList& files);
    void exportSermon(app::ExportFormat format);
    /// Exports the selected sermon to `file` in the background; false when none is selected.
    bool exportSelected(app::ExportFormat format, const QString& file);
    void exportArchive();
    /// Writes the library archive to `file` in the background; false while an export runs.
    bool exportArchiveTo(const QString& file);
    void print();
    void backUp();
    /// Backs the library up into `folder` in the background; null when the controller's checks
    /// stopped it (an empty library, a nearly full volume: it says why).
    BackgroundTask* backUpTo(const QString& folder, bool continueWhenLow = false);
    /// The preacher chose to back up to a nearly full volume after all.
    void backUpAnyway();
    void restore();
    /// Asks whether to restore from `folder`; nothing is replaced before the answer.
    void restoreFrom(const QString& folder);
    /// The preacher said yes: the backup is read in the background, then restored.
    BackgroundTask* restoreConfirmed();
    /// Transcribes a recording into a new draft sermon; a `file` given is used without asking.
    void newSermonFromRecording(const QString& file = {});
    RecordingImport& recordingImport() const { return *m_recording; }
    void duplicateSelected();
    void setPinned(bool pinned);
    void setHidden(bool hidden);
    void tagSelected();
    void moveSelectedToTrash();
    void showTrash();
    void showVersionHistory();
    void runSelfTest();
    void about();
    /// Puts the selected scripture on the screens of the mesh.
    void sendToScreen();
    /// Opens the search window (sermons, the Bible, the commentaries).
    void showSearch();
    void pairWithScreen();

    /// The mesh the desk shares its passage on; none until the window starts it.
    void setMesh(MeshLink* mesh) { m_mesh = mesh; }

    SermonPrinter& printer() const { return *m_printer; }

    /// The file types the desk opens or imports ("quillet", "vrnsermons", "docx", …).
    static bool isOpenable(const QString& file);

signals:
    /// A command wants `reference` ("John 3:16") shown in the Bible panel.
    void referenceRequested(const QString& reference);

private:
    QWidget& m_window;
    DeskServices& m_services;
    SermonSidebar& m_sidebar;
    ExportRunner& m_exports;
    SermonPrinter* m_printer = nullptr;
    RecordingImport* m_recording = nullptr;
    MeshLink* m_mesh = nullptr;
    std::optional<std::filesystem::path> m_backupFolder;
};

} // namespace quillon::desktop
