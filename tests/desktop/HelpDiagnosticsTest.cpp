// Help finds articles through misspellings and answers how-to questions citing an article or lists
// the matches; diagnostics filters the log and summarises errors with or without a model; the
// welcome shows once and can be skipped.
#include "app/LogDigest.h"
#include "desktop/DeskFixture.h"
#include "desktop/MainWindow.h"
#include "desktop/assistant/SnapshotRouter.h"
#include "desktop/companions/Companions.h"
#include "desktop/diagnostics/DiagnosticsWindow.h"
#include "desktop/help/HelpWindow.h"
#include "desktop/onboarding/OnboardingDialog.h"
#include "support/StubModelServer.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTextBrowser>

using namespace quillon;
using namespace quillon::desktop;
using Behaviour = quillon::testing::StubModelServer::Behaviour;

namespace {

std::shared_ptr<orvane::ModelRouter> routerTo(const std::string& endpoint) {
    platform::Preferences preferences = platform::Preferences::inMemory();
    preferences.set("Quillon.intelligence.endpoint", endpoint);
    preferences.set("Quillon.intelligence.timeoutSeconds", 0.5);
    return snapshotRouter(preferences);
}

} // namespace

class HelpDiagnosticsTest : public QObject {
    Q_OBJECT

private slots:
    void helpSearchFindsArticlesThroughMisspellings() {
        HelpWindow help(routerTo("http://127.0.0.1:1/v1"));
        QCOMPARE(help.listedTitles().size(), 10);
        QCOMPARE(help.listedTitles().front(), QStringLiteral("Getting started"));
        const struct {
            const char* typed;
            const char* first;
        } cases[] = {{"preech previw", "Preach Preview"},
                     {"sync foldr", "The sync folder"},
                     {"shortcts", "Keyboard shortcuts"},
                     {"trahs", "Backups and the trash"}};
        for (const auto& c : cases) {
            help.searchField()->setText(QString::fromUtf8(c.typed));
            QVERIFY2(!help.listedTitles().isEmpty(), c.typed);
            QCOMPARE(help.listedTitles().front(), QString::fromUtf8(c.first));
        }
        help.searchField()->setText(QStringLiteral("xyzzy"));
        QVERIFY(help.listedTitles().isEmpty());
        QCOMPARE(desktop::testing::child<QLabel>(&help, "helpBanner")->text(),
                 QStringLiteral("No help article matches “xyzzy”."));
    }

    void askHowToCitesTheArticleOrListsTheMatches() {
        quillon::testing::StubModelServer server;
        const struct {
            const char* name;
            std::optional<Behaviour> reply;
            const char* caption;
            const char* answer;
        } cases[] = {
            {"grounded", Behaviour::reply("Choose Record Actual Time after you preach.\nSOURCE: 1"),
             "[Generated] Answered from the help article named below.", "Choose Record Actual Time"},
            {"cites nothing", Behaviour::reply("Just guess."), "These help articles match your question.",
             "Preach Preview"},
            {"503", Behaviour::statusCode(503), "These help articles match your question.", "Preach Preview"},
            {"no server", std::nullopt, "These help articles match your question.", "Preach Preview"},
        };
        for (const auto& c : cases) {
            if (c.reply)
                server.setDefaultChat(*c.reply);
            HelpWindow help(routerTo(c.reply ? server.endpoint() : "http://127.0.0.1:1/v1"));
            QSignalSpy answered(&help, &HelpWindow::answered);
            help.ask(QStringLiteral("how do I record the time my sermon took in preach preview"));
            QVERIFY2(answered.wait(5000), c.name);
            QVERIFY2(
                desktop::testing::child<QLabel>(&help, "howToCaption")->text().startsWith(QString::fromUtf8(c.caption)),
                c.name);
            QVERIFY2(desktop::testing::child<QTextBrowser>(&help, "howToAnswer")
                         ->toPlainText()
                         .contains(QString::fromUtf8(c.answer)),
                     c.name);
        }
    }

    void diagnosticsFiltersTheLogAndSummarisesErrors() {
        desktop::testing::DeskFixture desk;
        const std::filesystem::path log = desk.root().parent_path() / "quillon.log";
        QFile file(QString::fromStdString(log.string()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("2026-11-23T19:01:00+0000 [info] Quillon started\n"
                   "2026-11-23T19:02:00+0000 [error] Failed to save sermon \"Grace\": disk full\n"
                   "2026-11-23T19:04:00+0000 [error] Failed to save sermon \"Grace\": disk full\n");
        file.close();
        quillon::testing::StubModelServer server;
        for (const bool withModel : {false, true}) {
            server.setDefaultChat(Behaviour::reply("The disk is full.\nLINE: 2"));
            DiagnosticsWindow window(desk.services(), routerTo(withModel ? server.endpoint() : "http://127.0.0.1:1/v1"),
                                     log);
            QVERIFY(window.shownLog().contains(QStringLiteral("Quillon started")));
            window.filter(4, {});
            QVERIFY(!window.shownLog().contains(QStringLiteral("Quillon started")));
            window.filter(0, QStringLiteral("grace"));
            QCOMPARE(window.shownLog().count(u'\n'), 1);
            QSignalSpy summarised(&window, &DiagnosticsWindow::summarised);
            window.summarise();
            QVERIFY(summarised.wait(5000));
            if (withModel) {
                QVERIFY(window.errorsCaption().startsWith(QStringLiteral("[Generated]")));
                QVERIFY(window.errorsText().contains(QStringLiteral("2026-11-23T19:04:00+0000 [error]")));
            } else {
                QVERIFY(window.errorsCaption().startsWith(QString::fromUtf8(app::ErrorSummary::fallbackCaption)));
                QVERIFY(window.errorsText().contains(QStringLiteral("2026-11-23T19:04:00+0000")));
            }
        }
        DiagnosticsWindow window(desk.services(), routerTo("http://127.0.0.1:1/v1"), log);
        window.runSelfTest();
        QVERIFY(window.selfTestText().contains(QStringLiteral("Bible loader")));
    }

    void welcomeShowsOnceAndCanBeSkipped() {
        desktop::testing::DeskFixture desk;
        desk.services().preferences().remove(OnboardingDialog::shownKey);
        desk.services().preferences().set("Quillon.intelligence.endpoint", "http://127.0.0.1:1/v1");
        {
            MainWindow window(desk.services());
            QTRY_VERIFY(window.findChild<OnboardingDialog*>() != nullptr);
            OnboardingDialog* welcome = window.findChild<OnboardingDialog*>();
            QCOMPARE(welcome->pageCount(), 4);
            QSignalSpy checked(welcome, &OnboardingDialog::modelChecked);
            QVERIFY(checked.wait(3000));
            QVERIFY(welcome->modelSentence().startsWith(
                QStringLiteral("No model server answers at http://127.0.0.1:1/v1")));
            welcome->next();
            QCOMPARE(welcome->currentPage(), 1);
            welcome->reject();
        }
        MainWindow again(desk.services());
        QTest::qWait(50);
        QVERIFY(again.findChild<OnboardingDialog*>() == nullptr);
    }
};

std::unique_ptr<QObject> makeHelpDiagnosticsTest() {
    return std::make_unique<HelpDiagnosticsTest>();
}

#include "HelpDiagnosticsTest.moc"
