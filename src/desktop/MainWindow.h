#pragma once

#include "app/ExportFormat.h"
#include "desktop/WindowStateStore.h"
#include "desktop/sidebar/SermonListModel.h"

#include <QFutureWatcher>
#include <QMainWindow>

#include <memory>

class QDockWidget;
class QLabel;
class QStackedWidget;

namespace quillon::desktop {

class BiblePanel;
class ControllerBridge;
class ControllerDialogs;
class DeskCommands;
class DeskMenus;
class DeskServices;
class ExportRunner;
class MeshIndicator;
class MeshLink;
class SermonSidebar;
class SermonView;
class SpellChecker;
class ToastOverlay;

/// The desk's one window: it puts the sidebar, the sermon, the Bible panel, the menus and the
/// notices together and connects them to the editing controller. It decides nothing about
/// sermons itself: the commands (DeskCommands) are calls of the controller, the menus (DeskMenus)
/// start them, and every view follows the controller's notices.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    /// `services` must outlive the window.
    explicit MainWindow(DeskServices& services, QWidget* parent = nullptr);
    ~MainWindow() override;

    /// Opens sermon documents, archives and outlines handed over by the file manager, a drop or a
    /// later start.
    void openFiles(const QStringList& files);
    /// Starts the scripture mesh (listeners and discovery); the window works the same without it.
    void startMesh();
    /// Focuses a reference a peer sent: the selected sermon's scripture with it, else the Bible panel.
    void focusReference(const QString& reference);
    /// Shows `reference` in the Bible panel.
    void showInBible(const QString& reference);
    /// Exports the selected sermon to `file` in the background; false when none is selected.
    bool exportSelected(app::ExportFormat format, const QString& file);

    SermonSidebar* sidebar() const { return m_sidebar; }
    BiblePanel* biblePanel() const { return m_biblePanel; }
    SermonView* sermonView() const { return m_sermonView; }
    SermonListModel& sermonModel() { return m_sermonModel; }
    ExportRunner* exportRunner() const { return m_exports; }
    MeshLink& mesh() const { return *m_mesh; }
    DeskServices& services() const { return m_services; }
    DeskCommands& commands() const { return *m_commands; }
    DeskMenus& menus() const { return *m_menus; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void buildDocks();
    void connectController();
    void loadSpellingVocabulary();

    void onSelectionChanged();
    void onSermonChanged(const model::Uuid& id);
    void onLibraryChanged();
    void onInterfaceChanged();
    void updateTitle();

    DeskServices& m_services;
    std::unique_ptr<SpellChecker> m_spelling;
    ControllerBridge* m_bridge = nullptr;
    WindowStateStore m_stateStore;
    SermonListModel m_sermonModel;
    SermonSidebar* m_sidebar = nullptr;
    BiblePanel* m_biblePanel = nullptr;
    SermonView* m_sermonView = nullptr;
    QDockWidget* m_sidebarDock = nullptr;
    QDockWidget* m_bibleDock = nullptr;
    QStackedWidget* m_sermonArea = nullptr;
    QLabel* m_noSermon = nullptr;
    QLabel* m_saveStatus = nullptr;
    MeshLink* m_mesh = nullptr;
    MeshIndicator* m_meshStatus = nullptr;
    ToastOverlay* m_toast = nullptr;
    ExportRunner* m_exports = nullptr;
    DeskCommands* m_commands = nullptr;
    DeskMenus* m_menus = nullptr;
    ControllerDialogs* m_dialogs = nullptr;
    QFutureWatcher<std::shared_ptr<SpellChecker>> m_vocabulary;
};

} // namespace quillon::desktop
