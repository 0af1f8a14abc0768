// The companions in the real window: the palette runs menu commands by fuzzy name, the model's
// readiness shows in the status bar and leads to its settings, and sources open what they cite.
#include "desktop/companions/Companions.h"
#include "app/SermonNotesViewModel.h"
#include "desktop/DeskFixture.h"
#include "desktop/MainWindow.h"
#include "desktop/assistant/ModelStatusButton.h"
#include "desktop/palette/CommandPalette.h"
#include "desktop/settings/SettingsWindow.h"
#include "support/SermonFixtures.h"

#include <QAction>
#include <QDockWidget>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

using namespace quillon;
using namespace quillon::desktop;
using namespace quillon::desktop::testing;

class CompanionsTest : public QObject {
    Q_OBJECT

private slots:
    void paletteRunsACommandByFuzzyNameWithItsShortcut() {
        DeskFixture desk;
        desk.services().preferences().set("Quillon.intelligence.endpoint", "http://127.0.0.1:1/v1");
        MainWindow window(desk.services());
        window.show();
        auto* companions = window.findChild<Companions*>(QStringLiteral("companions"));
        QVERIFY(companions);
        QDockWidget* preach = companions->preachDock();
        preach->hide();
        auto* open = window.findChild<QAction*>(QStringLiteral("paletteAction"));
        QVERIFY(open->shortcuts().contains(QKeySequence(QStringLiteral("Ctrl+K"))));
        QVERIFY(open->shortcuts().contains(QKeySequence(QStringLiteral("Ctrl+Shift+P"))));
        open->trigger();
        CommandPalette* palette = companions->palette();
        QVERIFY(palette->isVisible());
        QVERIFY(palette->shownNames().contains(QStringLiteral("Tools › Settings")));
        QTest::keyClicks(palette->field(), QStringLiteral("prech preview"));
        QVERIFY(!palette->shownNames().isEmpty());
        QCOMPARE(palette->shownNames().front(), QStringLiteral("Tools › Preach Preview"));
        QTest::keyClick(palette->field(), Qt::Key_Return);
        QVERIFY(!palette->isVisible());
        QTRY_VERIFY(preach->isVisible());
    }

    void modelReadinessLeadsToTheModelSettings() {
        DeskFixture desk;
        desk.services().preferences().set("Quillon.intelligence.endpoint", "http://127.0.0.1:1/v1");
        MainWindow window(desk.services());
        auto* companions = window.findChild<Companions*>(QStringLiteral("companions"));
        ModelStatusButton* status = companions->modelStatus();
        QTRY_COMPARE(status->text(), QStringLiteral("Model: not available"));
        QVERIFY(status->toolTip().contains(QStringLiteral("http://127.0.0.1:1/v1")));
        status->click();
        auto* settings = window.findChild<SettingsWindow*>();
        QVERIFY(settings && settings->isVisible());
        QCOMPARE(
            settings->enter(QStringLiteral("Quillon.intelligence.endpoint"), QStringLiteral("http://127.0.0.1:2/v1")),
            QString());
        QTRY_VERIFY(status->toolTip().contains(QStringLiteral("http://127.0.0.1:2/v1")));
        // A layout setting reaches the window through the controller, which keeps it.
        QCOMPARE(settings->enter(QStringLiteral("Quillon.readingMode"), QStringLiteral("true")), QString());
        QVERIFY(desk.services().controller().interfaceState().readingMode);
    }

    void sourcesOpenWhatTheyCite() {
        auto sermon = quillon::testing::makeSermon("Love that gives");
        auto other = quillon::testing::makeSermon("Rest for the weary");
        DeskFixture desk({sermon, other});
        desk.services().preferences().set("Quillon.intelligence.endpoint", "http://127.0.0.1:1/v1");
        MainWindow window(desk.services());
        auto* companions = window.findChild<Companions*>(QStringLiteral("companions"));
        companions->openSource(QStringLiteral("sermon:") + QString::fromStdString(other.id.text()));
        QCOMPARE(desk.services().controller().selection().sermonId, std::optional(other.id));
        companions->openSource(QStringLiteral("bible:John 3:16"));
        QCOMPARE(child<QLineEdit>(&window, "bibleSearchField")->text(), QStringLiteral("John 3:16"));
        companions->openSource(QStringLiteral("sermon:not-an-id"));
        QCOMPARE(desk.services().controller().selection().sermonId, std::optional(other.id));
    }
};

std::unique_ptr<QObject> makeCompanionsTest() {
    return std::make_unique<CompanionsTest>();
}

#include "CompanionsTest.moc"
