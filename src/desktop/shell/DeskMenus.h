#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>

#include <array>
#include <functional>

class QAction;
class QDockWidget;
class QMainWindow;
class QMenu;

namespace quillon::desktop {

class BiblePanel;
class DeskCommands;
class DeskServices;
class SermonSidebar;

/// The menus of the menu bar, in their order.
enum class DeskMenu { file, edit, sermon, view, setup, help };

/// What the menus reach: the window's pieces, which all outlive the menus.
struct DeskParts {
    QMainWindow* window = nullptr;
    DeskServices* services = nullptr;
    DeskCommands* commands = nullptr;
    SermonSidebar* sidebar = nullptr;
    QDockWidget* sidebarDock = nullptr;
    QDockWidget* bibleDock = nullptr;
    BiblePanel* biblePanel = nullptr;
};

/// The menu bar, the toolbar and the sidebar's context menu, built from one QAction per command.
/// Each action's object name is the command's stable name ("newSermonAction"); the command palette
/// lists commands() with their shortcuts, and running one there is the same as from the menu.
/// Windows and sheets that live in their own files add their entries with add().
class DeskMenus : public QObject {
    Q_OBJECT
public:
    explicit DeskMenus(const DeskParts& parts);
    ~DeskMenus() override;

    QMenu* menu(DeskMenu which) const { return m_menus[static_cast<std::size_t>(which)]; }
    /// Appends a command to a menu; `name` is its object name. Returns the action for more settings.
    QAction* add(DeskMenu which, const char* name, const QString& text, const QKeySequence& shortcut,
                 std::function<void()> run);
    /// The command with that object name, or null.
    QAction* command(const QString& name) const;
    /// Every named command, in menu order.
    QList<QAction*> commands() const;

    /// Enables, checks and relabels the commands for the controller's current state.
    void update();
    void rebuildRecentMenu();

private:
    void buildFileMenu();
    void buildEditMenu();
    void buildSermonMenu();
    void buildViewMenu();
    void buildSetupMenu();
    void buildHelpMenu();
    void buildToolBar();
    void buildSidebarMenu();
    QAction* named(QAction* action, const char* name);

    DeskParts m_parts;
    std::array<QMenu*, 6> m_menus{};
    QMenu* m_recent = nullptr;
    QList<QAction*> m_needsSermon;
};

} // namespace quillon::desktop
