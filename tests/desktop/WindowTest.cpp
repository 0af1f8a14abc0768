#include "desktop/DeskFixture.h"
#include "desktop/MainWindow.h"
#include "desktop/sidebar/SermonListModel.h"
#include "desktop/sidebar/SermonSidebar.h"

#include "app/SermonNotesViewModel.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QSplitter>
#include <QStackedWidget>
#include <QTest>
#include <QTextEdit>
#include <QToolBar>

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

    void everyControlHasANameForScreenReadersAndTakesTheKeyboard() {
        auto sermon = sermonTitled("Named Controls", 1);
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = "Point";
        model::SermonSubTopic sub;
        sub.id = model::Uuid::random();
        sub.title = "Sub-point";
        model::SermonScripture scripture;
        scripture.id = model::Uuid::random();
        scripture.bookName = "John";
        scripture.chapter = 3;
        scripture.startVerse = 16;
        scripture.endVerse = 16;
        sub.scriptures = {scripture};
        topic.subTopics = {sub};
        sermon.topics = {topic};
        DeskFixture desk({sermon});
        MainWindow window(desk.services());
        window.resize(1600, 900);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        desk.services().controller().selectSermon(sermon.id);
        desk.services().controller().selectScripture(scripture.id);
        QApplication::processEvents();
        // The classic columns open at their remembered widths, whatever the window's size.
        const auto& state = desk.services().controller().interfaceState();
        const QList<int> widths = child<QSplitter>(&window, "outlineColumnsSplitter")->sizes().mid(0, 3);
        QCOMPARE(widths,
                 (QList<int>{static_cast<int>(state.topicColumnWidth), static_cast<int>(state.subtopicColumnWidth),
                             static_cast<int>(state.scriptureColumnWidth)}));
        for (auto style : {app::AppLayoutStyle::classic, app::AppLayoutStyle::modernOutline}) {
            desk.services().controller().setLayoutStyle(style);
            desk.services().controller().selectScripture(scripture.id);
            for (QWidget* widget : window.findChildren<QWidget*>()) {
                const bool control = qobject_cast<QAbstractButton*>(widget) || qobject_cast<QLineEdit*>(widget) ||
                                     qobject_cast<QAbstractItemView*>(widget) || qobject_cast<QComboBox*>(widget) ||
                                     qobject_cast<QTextEdit*>(widget) || qobject_cast<QAbstractSpinBox*>(widget);
                // A header is named by its columns' titles.
                if (!control || !widget->isVisibleTo(&window) || qobject_cast<QToolBar*>(widget->parentWidget()) ||
                    qobject_cast<QHeaderView*>(widget) || qobject_cast<QAbstractItemView*>(widget->parentWidget()) ||
                    widget->objectName().startsWith(QStringLiteral("qt_")))
                    continue;
                QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
                QVERIFY(accessible);
                const QString description =
                    QString::fromLatin1(widget->metaObject()->className()) + u' ' + widget->objectName();
                QVERIFY2(!accessible->text(QAccessible::Name).trimmed().isEmpty(), qPrintable(description));
                // Every control can be reached without a mouse: by Tab, or by its own shortcut.
                QVERIFY2(widget->focusPolicy() & Qt::TabFocus || qobject_cast<QAbstractButton*>(widget),
                         qPrintable(description));
            }
        }
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
