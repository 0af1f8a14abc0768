#pragma once

#include "app/ExportFormat.h"
#include "desktop/WindowStateStore.h"
#include "desktop/sidebar/SermonListModel.h"

#include <QFutureWatcher>
#include <QMainWindow>

#include <memory>
#include <set>
#include <string>

class QAction;
class QActionGroup;
class QDockWidget;
class QLabel;
class QMenu;
class QMessageBox;
class QStackedWidget;

namespace quillon::desktop {

class BiblePanel;
class ControllerBridge;
class DeskServices;
class ExportRunner;
class SermonSidebar;
class SermonView;
class SpellChecker;
class ToastOverlay;

/// The desk's one window: it puts the sidebar, the sermon, the Bible panel, the menus and the
/// notices together and connects them to the editing controller. It decides nothing about
/// sermons itself: every command is one call of the controller, and every view follows the
/// controller's notices.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    /// `services` must outlive the window.
    explicit MainWindow(DeskServices& services, QWidget* parent = nullptr);
    ~MainWindow() override;

    /// Opens sermon documents, archives and outlines handed over by the file manager, a drop or a
    /// later start.
    void openFiles(const QStringList& files);
    /// Exports the selected sermon to `file` in the background; false when none is selected.
    bool exportSelected(app::ExportFormat format, const QString& file);

    SermonSidebar* sidebar() const { return m_sidebar; }
    BiblePanel* biblePanel() const { return m_biblePanel; }
    SermonView* sermonView() const { return m_sermonView; }
    SermonListModel& sermonModel() { return m_sermonModel; }
    ExportRunner* exportRunner() const { return m_exports; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void buildDocks();
    void buildMenus();
    void buildFileMenu();
    void buildEditMenu();
    void buildSermonMenu();
    void buildViewMenu();
    void buildHelpMenu();
    void buildSidebarMenu();
    void connectController();
    void loadSpellingVocabulary();

    void onSelectionChanged();
    void onSermonChanged();
    void onLibraryChanged();
    void onInterfaceChanged();
    void onStatus(const QString& title, const QString& detail, bool isAlert);
    void onSheet(int sheet, bool open);
    void confirm(const QString& name, const QString& title, const QString& message, const QString& action,
                 std::function<void()> accepted, std::function<void()> rejected);

    void newSermon();
    void openDocument();
    void importFile();
    void exportSermon(app::ExportFormat format);
    void exportArchive();
    void backUp();
    void restore();
    void duplicateSelected();
    void updateActions();
    void updateTitle();
    void rebuildRecentMenu();

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
    QLabel* m_meshStatus = nullptr;
    ToastOverlay* m_toast = nullptr;
    ExportRunner* m_exports = nullptr;
    QMenu* m_recentMenu = nullptr;
    QMenu* m_sidebarMenu = nullptr;
    QAction* m_undo = nullptr;
    QAction* m_redo = nullptr;
    QAction* m_readingMode = nullptr;
    QAction* m_compactLayout = nullptr;
    QAction* m_classic = nullptr;
    QAction* m_modern = nullptr;
    QAction* m_pin = nullptr;
    QAction* m_hide = nullptr;
    QList<QAction*> m_needsSermon;
    QFutureWatcher<std::set<std::string>> m_vocabulary;
};

} // namespace quillon::desktop
