#pragma once

#include "desktop/WindowStateStore.h"
#include "desktop/sidebar/SermonListModel.h"

#include <QMainWindow>

class QDockWidget;
class QLabel;
class QStackedWidget;

namespace quillon::desktop {

class BiblePanel;
class DeskServices;
class SermonSidebar;

/// The desk's one window: it puts the sidebar, the sermon area and the Bible panel together and
/// connects them to the library. It decides nothing about sermons itself.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    /// `services` must outlive the window.
    explicit MainWindow(DeskServices& services, QWidget* parent = nullptr);
    ~MainWindow() override;

    /// Opens sermon documents and archives handed over by the file manager or a later start.
    void openFiles(const QStringList& files);
    /// Re-reads the library into the sidebar and the sermon area after a change.
    void refresh();

    SermonSidebar* sidebar() const { return m_sidebar; }
    BiblePanel* biblePanel() const { return m_biblePanel; }
    SermonListModel& sermonModel() { return m_sermonModel; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    void selectSermon(const model::Uuid& id);
    void showCurrentSermon();
    void updateTitle();

    DeskServices& m_services;
    WindowStateStore m_stateStore;
    SermonListModel m_sermonModel;
    SermonSidebar* m_sidebar = nullptr;
    BiblePanel* m_biblePanel = nullptr;
    QDockWidget* m_sidebarDock = nullptr;
    QDockWidget* m_bibleDock = nullptr;
    QStackedWidget* m_sermonArea = nullptr;
    QLabel* m_noSermon = nullptr;
    QLabel* m_sermonPlaceholder = nullptr;
    QLabel* m_saveStatus = nullptr;
};

} // namespace quillon::desktop
