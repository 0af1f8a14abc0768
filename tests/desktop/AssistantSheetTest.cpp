// Every assistant sheet ends in a generated answer or the labelled fallback, whatever the model
// server does; a proposal changes the sermon only when accepted, in one undo step.
#include "desktop/assistant/AssistantSheet.h"
#include "app/SermonNotesViewModel.h"
#include "desktop/DeskFixture.h"
#include "intelligence/AskYourLibrary.h"
#include "intelligence/SermonTagSuggester.h"
#include "intelligence/SharedRouter.h"
#include "platform/Preferences.h"
#include "support/SermonFixtures.h"
#include "support/StubModelServer.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include <memory>

using namespace quillon;
using namespace quillon::desktop;
using Behaviour = quillon::testing::StubModelServer::Behaviour;

class AssistantSheetTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_sermon = quillon::testing::makeSermon("Love that gives");
        m_desk = std::make_unique<desktop::testing::DeskFixture>(std::vector{m_sermon});
        m_server = std::make_unique<quillon::testing::StubModelServer>();
        platform::Preferences& preferences = m_desk->services().preferences();
        preferences.set("Quillon.intelligence.endpoint", m_server->endpoint());
        preferences.set("Quillon.intelligence.timeoutSeconds", 0.5);
        m_desk->services().controller().selectSermon(m_sermon.id);
    }
    void cleanup() {
        m_server.reset();
        m_desk.reset();
    }

    void everyServerBehaviourEndsInAnAnswerOrTheLabelledFallback() {
        const QString tagsFallback = QString::fromUtf8(intelligence::SermonTagSuggester::fallbackCaption);
        const QString unsummarised = QString::fromUtf8(intelligence::AskYourLibrary::unsummarised);
        const struct {
            const char* name;
            app::AssistantFeatureId feature;
            const char* question;
            std::optional<Behaviour> behaviour;
            QString caption;
            bool generated;
        } cases[] = {
            {"grounded tags", app::AssistantFeatureId::tagSuggestions, "", Behaviour::reply("self-giving love\ngrace"),
             QStringLiteral("[Generated] ") + QString::fromUtf8(intelligence::SermonTagSuggester::generatedCaption),
             true},
            {"503", app::AssistantFeatureId::tagSuggestions, "", Behaviour::statusCode(503), tagsFallback, false},
            {"timeout", app::AssistantFeatureId::tagSuggestions, "", Behaviour::neverReply(), tagsFallback, false},
            {"no server", app::AssistantFeatureId::tagSuggestions, "", std::nullopt, tagsFallback, false},
            {"cites nothing", app::AssistantFeatureId::askYourLibrary, "love", Behaviour::reply("9 || Made up."),
             unsummarised, false},
            {"grounded answer", app::AssistantFeatureId::askYourLibrary, "love",
             Behaviour::reply("1 || Love gives first."),
             QStringLiteral("[Generated] ") + QString::fromUtf8(intelligence::AskYourLibrary::pointsIntroduction),
             true},
        };
        for (const auto& c : cases) {
            if (c.behaviour)
                m_server->setDefaultChat(*c.behaviour);
            m_desk->services().preferences().set("Quillon.intelligence.endpoint",
                                                 c.behaviour ? m_server->endpoint() : "http://127.0.0.1:1/v1");
            AssistantSheet sheet(c.feature, m_desk->services(),
                                 intelligence::makeSharedRouter(m_desk->services().preferences()));
            QSignalSpy answered(&sheet, &AssistantSheet::answered);
            if (*c.question) {
                sheet.textField()->setText(QString::fromUtf8(c.question));
                sheet.run();
            }
            QVERIFY2(answered.wait(5000), c.name);
            QVERIFY2(sheet.answer().has_value(), c.name);
            QCOMPARE(sheet.answer()->caption.generated, c.generated);
            QCOMPARE(desktop::testing::child<QLabel>(&sheet, "assistantCaption")->text(), c.caption);
            QVERIFY2(sheet.items()->count() > 0, c.name);
            auto* reason = desktop::testing::child<QLabel>(&sheet, "assistantReason");
            QCOMPARE(reason->isVisibleTo(&sheet), !sheet.answer()->caption.reason.empty());
            if (!c.behaviour)
                QVERIFY(reason->text().contains(QStringLiteral("http://127.0.0.1:1/v1")));
            if (c.feature == app::AssistantFeatureId::askYourLibrary) {
                // Each source opens what it cites: the sermon it names is a link.
                auto* label = qobject_cast<QLabel*>(sheet.items()->itemWidget(sheet.items()->item(0)));
                QVERIFY2(label && (label->text().contains(QStringLiteral("href=\"sermon:")) ||
                                   label->text().contains(QStringLiteral("href=\"bible:"))),
                         c.name);
                QSignalSpy opened(&sheet, &AssistantSheet::sourceActivated);
                emit label->linkActivated(QStringLiteral("sermon:") + QString::fromStdString(m_sermon.id.text()));
                QCOMPARE(opened.count(), 1);
            }
        }
    }

    void acceptingTagsIsOneUndoStepAndCancellingChangesNothing() {
        m_server->setDefaultChat(Behaviour::reply("self-giving love\nsacrifice"));
        app::SermonNotesViewModel& controller = m_desk->services().controller();
        const auto tagsNow = [&] { return controller.sermon(m_sermon.id)->tags; };
        const auto router = intelligence::makeSharedRouter(m_desk->services().preferences());
        {
            AssistantSheet sheet(app::AssistantFeatureId::tagSuggestions, m_desk->services(), router);
            QSignalSpy answered(&sheet, &AssistantSheet::answered);
            QVERIFY(answered.wait(5000));
            // Nothing ticked, nothing applied.
            QVERIFY(!sheet.acceptProposal());
            QCOMPARE(tagsNow(), m_sermon.tags);
            sheet.items()->item(0)->setCheckState(Qt::Checked);
            QVERIFY(sheet.acceptProposal());
        }
        QCOMPARE(tagsNow(), (std::vector<std::string>{"grace", "self-giving love"}));
        QVERIFY(controller.undo());
        QCOMPARE(tagsNow(), m_sermon.tags);

        m_server->setDefaultChat(Behaviour::neverReply());
        AssistantSheet slow(app::AssistantFeatureId::tagSuggestions, m_desk->services(), router);
        QVERIFY(slow.isRunning());
        slow.cancel();
        QVERIFY(!slow.isRunning());
        QCOMPARE(slow.result(), int(QDialog::Rejected));
        QTest::qWait(700);
        QVERIFY(!slow.answer().has_value());
        QCOMPARE(tagsNow(), m_sermon.tags);
    }

    void closingTheWindowDuringARunLeavesNoReaderOfTheFreedCommentaries() {
        // The illustration finder indexes the library on a worker, then searches the commentaries
        // the services own. A library long enough to index keeps the run going while the window,
        // its sheet and then the services go.
        std::vector<model::SermonNote> library{m_sermon};
        std::string notes;
        for (int word = 0; word < 20'000; ++word)
            notes += "grace" + std::to_string(word % 997) + (word % 3 ? " love " : " kingdom ");
        for (int index = 0; index < 20; ++index) {
            library.push_back(quillon::testing::makeSermon("Long sermon " + std::to_string(index)));
            library.back().notes = notes;
        }
        m_desk = std::make_unique<desktop::testing::DeskFixture>(library);
        m_desk->services().controller().selectSermon(m_sermon.id);
        auto window = std::make_unique<QWidget>();
        auto* sheet =
            new AssistantSheet(app::AssistantFeatureId::illustrationFinder, m_desk->services(),
                               intelligence::makeSharedRouter(m_desk->services().preferences()), window.get());
        sheet->setAttribute(Qt::WA_DeleteOnClose);
        window->show();
        sheet->show();
        sheet->textField()->setText(QStringLiteral("love"));
        sheet->run();
        QVERIFY(sheet->isRunning());
        window->close();
        window.reset();
        m_desk.reset();
        QCOMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
    }

private:
    model::SermonNote m_sermon;
    std::unique_ptr<desktop::testing::DeskFixture> m_desk;
    std::unique_ptr<quillon::testing::StubModelServer> m_server;
};

std::unique_ptr<QObject> makeAssistantSheetTest() {
    return std::make_unique<AssistantSheetTest>();
}

#include "AssistantSheetTest.moc"
