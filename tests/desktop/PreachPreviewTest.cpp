// Preach Preview follows edits, shows its bars and pace, and learns from a recorded time.
#include "desktop/DeskFixture.h"
#include "desktop/assistant/SnapshotRouter.h"
#include "desktop/preach/PreachPreviewPanel.h"
#include "desktop/preach/SpeakerProfilesDialog.h"
#include "platform/Preferences.h"
#include "preach/PreachPace.h"
#include "preach/PreachPaceLearner.h"
#include "preach/SpeakerProfile.h"
#include "support/SermonFixtures.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

#include <memory>

using namespace quillon;
using namespace quillon::desktop;

class PreachPreviewTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_sermon = quillon::testing::makeSermon("Love that gives");
        m_desk = std::make_unique<desktop::testing::DeskFixture>(std::vector{m_sermon});
        // No model answers here: the labelling pass falls back at once.
        m_desk->services().preferences().set("Quillon.intelligence.endpoint", "http://127.0.0.1:1/v1");
        m_desk->services().controller().selectSermon(m_sermon.id);
        m_panel =
            std::make_unique<PreachPreviewPanel>(m_desk->services(), snapshotRouter(m_desk->services().preferences()));
        m_panel->refreshNow();
    }
    void cleanup() {
        m_panel.reset();
        m_desk.reset();
    }

    void showsTheEstimateBarsAndPace() {
        auto* total = desktop::testing::child<QLabel>(m_panel.get(), "preachTotal");
        QCOMPARE(total->text(), QStringLiteral("About 1 min to preach"));
        QVERIFY(!m_panel->estimate().sections.empty());
        QCOMPARE(desktop::testing::child<QLabel>(m_panel.get(), "preachCaption")->text(),
                 QStringLiteral("Every section counted as prose or scripture reading."));
        QCOMPARE(desktop::testing::child<QLabel>(m_panel.get(), "preachPace")->text(),
                 QStringLiteral("Pace: 130 words a minute, the starting pace"));
    }

    void refreshesAfterAnEditWithoutBlockingIt() {
        const double before = m_panel->estimate().minutes;
        QSignalSpy refreshed(m_panel.get(), &PreachPreviewPanel::refreshed);
        std::string notes;
        for (int i = 0; i < 400; ++i)
            notes += "Grace meets us where we are. ";
        QVERIFY(m_desk->services().controller().setNotes(m_sermon.id, notes));
        // The recount waits for a pause in typing.
        QCOMPARE(m_panel->estimate().minutes, before);
        QVERIFY(refreshed.wait(2000));
        QVERIFY(m_panel->estimate().minutes > before + 10);
    }

    void recordedTimeTeachesThePace() {
        QVERIFY(!m_panel->recordActualMinutes(0));
        QVERIFY(!m_panel->recordActualMinutes(std::nan("")));
        // 13 words in a tenth of a minute is far past the fastest pace: the learner clamps it.
        QVERIFY(m_panel->recordActualMinutes(0.05));
        auto* learned = desktop::testing::child<QLabel>(m_panel.get(), "preachLearned");
        QVERIFY(learned->text().contains(QStringLiteral("Your learned pace: 260 words a minute.")));
        QCOMPARE(m_panel->pace().wordsPerMinute, 130.0);
        m_desk->services().preferences().set(preach::PreachPace::measuredFromRecordingKey, true);
        m_panel->refreshNow();
        QCOMPARE(m_panel->pace().wordsPerMinute, 260.0);
        QVERIFY(desktop::testing::child<QLabel>(m_panel.get(), "preachPace")
                    ->text()
                    .endsWith(QStringLiteral("learned from 1 recorded sermon")));
    }

    void speakerProfilesAreCheckedThenReplaceThePace() {
        platform::Preferences& preferences = m_desk->services().preferences();
        SpeakerProfilesDialog dialog(preferences);
        QTableWidget* table = dialog.table();
        table->insertRow(0);
        table->setItem(0, 0, new QTableWidgetItem(QStringLiteral("Ann Lee")));
        table->setItem(0, 1, new QTableWidgetItem(QStringLiteral("fast")));
        QVERIFY(!dialog.save());
        QCOMPARE(dialog.problem(),
                 QStringLiteral("The pace for Ann Lee must be a number of words a minute from 60 to 260."));
        QVERIFY(preach::SpeakerProfile::all(preferences).empty());
        table->item(0, 1)->setText(QStringLiteral("100"));
        QVERIFY(dialog.save());
        m_panel->refreshNow();
        QCOMPARE(m_panel->pace().wordsPerMinute, 100.0);
        QVERIFY(
            desktop::testing::child<QLabel>(m_panel.get(), "preachPace")->text().contains(QStringLiteral("Ann Lee")));
        // Removing the row removes the profile.
        SpeakerProfilesDialog again(preferences);
        QCOMPARE(again.table()->rowCount(), 1);
        again.table()->removeRow(0);
        QVERIFY(again.save());
        QVERIFY(preach::SpeakerProfile::all(preferences).empty());
    }

    void withoutASermonSaysSo() {
        m_desk->services().controller().selectSermon(std::nullopt);
        m_panel->refreshNow();
        QCOMPARE(desktop::testing::child<QLabel>(m_panel.get(), "preachTotal")->text(),
                 QStringLiteral("No Sermon Selected"));
        QVERIFY(!m_panel->recordActualMinutes(30));
    }

private:
    model::SermonNote m_sermon;
    std::unique_ptr<desktop::testing::DeskFixture> m_desk;
    std::unique_ptr<PreachPreviewPanel> m_panel;
};

std::unique_ptr<QObject> makePreachPreviewTest() {
    return std::make_unique<PreachPreviewTest>();
}

#include "PreachPreviewTest.moc"
