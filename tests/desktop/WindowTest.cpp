#include "desktop/DeskFixture.h"
#include "desktop/MainWindow.h"
#include "desktop/sidebar/SermonListModel.h"
#include "desktop/sidebar/SermonSidebar.h"

#include <QDockWidget>
#include <QLabel>
#include <QListView>
#include <QStackedWidget>
#include <QTest>

using namespace quillon;
using namespace quillon::desktop;
using namespace quillon::desktop::testing;

class WindowTest : public QObject {
    Q_OBJECT

private slots:
    void emptyLibraryShowsNoSermonSelected() {
        DeskFixture desk;
        MainWindow window(desk.services());
        auto* area = child<QStackedWidget>(&window, "sermonArea");
        QCOMPARE(area->currentWidget()->objectName(), QStringLiteral("noSermonSelected"));
        QCOMPARE(child<QLabel>(&window, "noSermonSelected")->text(), QStringLiteral("No Sermon Selected"));
        QCOMPARE(window.windowTitle(), QStringLiteral("Quillon"));
    }

    void clickedSermonBecomesCurrentAndComesBackAfterRestart() {
        auto first = sermonTitled("First Light", 1);
        auto second = sermonTitled("Second Wind", 2);
        DeskFixture desk({first, second});
        {
            MainWindow window(desk.services());
            window.show();
            auto* list = child<QListView>(&window, "sermonList");
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                              list->visualRect(window.sermonModel().index(1)).center());
            QCOMPARE(window.windowTitle(), QStringLiteral("Second Wind — Quillon"));
            QCOMPARE(child<QStackedWidget>(&window, "sermonArea")->currentIndex(), 1);
        }
        desk.reopen();
        MainWindow restarted(desk.services());
        QCOMPARE(restarted.windowTitle(), QStringLiteral("Second Wind — Quillon"));
        auto* list = child<QListView>(&restarted, "sermonList");
        QCOMPARE(restarted.sermonModel().idAt(list->currentIndex().row()), std::optional(second.id));
    }

    void geometryAndPanelsComeBackAfterRestart() {
        DeskFixture desk;
        {
            MainWindow window(desk.services());
            window.show();
            window.resize(910, 620);
            child<QDockWidget>(&window, "biblePanelDock")->hide();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            window.close();
        }
        desk.reopen();
        MainWindow restarted(desk.services());
        restarted.show();
        QCOMPARE(restarted.size(), QSize(910, 620));
        QVERIFY(child<QDockWidget>(&restarted, "biblePanelDock")->isHidden());
        QVERIFY(!child<QDockWidget>(&restarted, "sidebarDock")->isHidden());
    }
};

std::unique_ptr<QObject> makeWindowTest() {
    return std::make_unique<WindowTest>();
}

#include "WindowTest.moc"
