// Long work in the desk (backups, restores, exports, transcriptions) runs away from the interface
// thread, can be cancelled without leaving anything half done, and ends with the controller's
// own messages.
#include "app/RecordingToDraft.h"
#include "app/SermonNotesViewModel.h"
#include "desktop/DeskFixture.h"
#include "desktop/MainWindow.h"
#include "desktop/search/DeskSearch.h"
#include "desktop/sheets/TrashWindow.h"
#include "desktop/sheets/VersionHistoryWindow.h"
#include "desktop/shell/BackgroundTask.h"
#include "desktop/shell/DeskCommands.h"
#include "desktop/shell/DeskMenus.h"
#include "desktop/shell/EmptyStateOverlay.h"
#include "desktop/shell/ExportRunner.h"
#include "platform/PlatformWording.h"
#include "speech/TranscriptionSettings.h"
#include "support/SilentWav.h"
#include "support/StubModelServer.h"

#include <QAction>
#include <QApplication>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>
#include <fstream>

using namespace quillon;
using namespace quillon::desktop;
using namespace quillon::desktop::testing;
namespace fs = std::filesystem;

namespace {

/// The window over a library of `titles`.
struct Desk {
    explicit Desk(std::vector<std::string> titles = {"Grace Abounding"}) : fixture(sermons(titles)) {
        window = std::make_unique<MainWindow>(fixture.services());
    }
    static std::vector<model::SermonNote> sermons(const std::vector<std::string>& titles) {
        std::vector<model::SermonNote> made;
        for (const auto& title : titles)
            made.push_back(sermonTitled(title));
        return made;
    }
    app::SermonNotesViewModel& controller() { return fixture.services().controller(); }
    std::string lastTitle() {
        const auto& message = controller().lastStatus();
        return message ? message->title : std::string();
    }
    const model::SermonNote& first() { return controller().store().sermons().front(); }

    DeskFixture fixture;
    std::unique_ptr<MainWindow> window;
};

/// Waits for the progress dialog of `task` and presses its Cancel.
bool cancelThroughTheDialog(BackgroundTask* task) {
    if (!QTest::qWaitFor([task] { return task->dialog() && task->dialog()->isVisible(); }, 5000))
        return false;
    auto* cancel = task->dialog()->findChild<QPushButton*>();
    if (!cancel)
        return false;
    QTest::mouseClick(cancel, Qt::LeftButton);
    return true;
}

bool ends(QPointer<BackgroundTask> task) {
    return QTest::qWaitFor([&task] { return task.isNull(); }, 20000);
}

fs::path folderOf(const QTemporaryDir& dir) {
    return dir.path().toStdString();
}

bool isEmptyFolder(const fs::path& folder) {
    return fs::is_empty(folder);
}

} // namespace

class BackgroundWorkTest : public QObject {
    Q_OBJECT

private slots:
    void aBackupIsWrittenAwayFromTheWindowWithTheControllersMessage() {
        Desk desk({"Grace Abounding", "Living Hope"});
        QTemporaryDir out;
        QPointer<BackgroundTask> task = desk.window->commands().backUpTo(out.path());
        QVERIFY(task);
        QVERIFY(ends(task));
        QCOMPARE(desk.controller().lastStatus()->title, std::string("Backup Complete"));
        QCOMPARE(desk.controller().lastStatus()->detail, std::string("Saved 2 sermons"));
        int backups = 0;
        for (const auto& entry : fs::directory_iterator(folderOf(out))) {
            QVERIFY(entry.path().extension() == ".quillonbackup");
            QVERIFY(fs::exists(entry.path() / "sermons.json"));
            ++backups;
        }
        QCOMPARE(backups, 1);
    }

    void aCancelledBackupLeavesNoFolder() {
        Desk desk;
        QTemporaryDir out;
        PoolHold hold;
        QPointer<BackgroundTask> task = desk.window->commands().backUpTo(out.path());
        QVERIFY(task);
        QVERIFY(cancelThroughTheDialog(task));
        hold.release();
        QVERIFY(ends(task));
        QVERIFY(isEmptyFolder(folderOf(out)));
        QVERIFY(desk.lastTitle() != "Backup Complete");
        QVERIFY(!openBox("statusAlert"));
    }

    void restoreAsksFirstAndReplacesOnlyAfterYesUnlessCancelled_data() {
        QTest::addColumn<bool>("cancel");
        QTest::newRow("restored") << false;
        QTest::newRow("cancelled while reading") << true;
    }
    void restoreAsksFirstAndReplacesOnlyAfterYesUnlessCancelled() {
        QFETCH(bool, cancel);
        Desk desk;
        QTemporaryDir out;
        const auto backup = desk.controller().backUp(folderOf(out));
        QVERIFY(backup);
        const model::Uuid id = desk.first().id;
        app::SermonMetadataChange change;
        change.title = "Changed Since";
        QVERIFY(desk.controller().setMetadata(id, change));

        desk.window->commands().restoreFrom(QString::fromStdString(backup->string()));
        QMessageBox* question = openBox("restoreConfirmation");
        QVERIFY(question);
        QVERIFY(question->text().startsWith(QStringLiteral("Restore sermons from “Quillon Backup ")));
        QCOMPARE(desk.controller().sermon(id)->title, std::string("Changed Since"));

        const std::string before = desk.lastTitle();
        std::optional<PoolHold> hold;
        if (cancel)
            hold.emplace();
        QTest::mouseClick(question->findChild<QPushButton*>(QStringLiteral("restoreConfirmationAccept")),
                          Qt::LeftButton);
        QPointer<BackgroundTask> task = desk.window->findChild<BackgroundTask*>();
        QVERIFY(task);
        if (cancel) {
            QVERIFY(cancelThroughTheDialog(task));
            hold->release();
        }
        QVERIFY(ends(task));
        QCOMPARE(desk.controller().sermon(id)->title, std::string(cancel ? "Changed Since" : "Grace Abounding"));
        QCOMPARE(desk.lastTitle(), cancel ? before : std::string("Restore Complete"));
    }

    void aCancelledExportWritesNoFileAndNoAlert_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("archive");
        QTest::newRow("Word document") << "Grace.docx" << false;
        QTest::newRow("library archive") << "Quillon.vrnsermons" << true;
    }
    void aCancelledExportWritesNoFileAndNoAlert() {
        QFETCH(QString, name);
        QFETCH(bool, archive);
        Desk desk;
        desk.controller().selectSermon(desk.first().id);
        QTemporaryDir out;
        const QString file = out.filePath(name);
        ExportRunner* exports = desk.window->exportRunner();
        QSignalSpy cancelled(exports, &ExportRunner::cancelled);
        QSignalSpy finished(exports, &ExportRunner::finished);
        const std::string before = desk.lastTitle();
        PoolHold hold;
        QVERIFY(archive ? desk.window->commands().exportArchiveTo(file)
                        : desk.window->exportSelected(app::ExportFormat::word, file));
        QVERIFY(!exports->start(desk.first(), app::ExportFormat::pdf, out.filePath("Other.pdf").toStdString()));
        QPointer<BackgroundTask> task = exports->task();
        QVERIFY(cancelThroughTheDialog(task));
        hold.release();
        QVERIFY(ends(task));
        QCOMPARE(cancelled.count(), 1);
        QCOMPARE(finished.count(), 0);
        QVERIFY(isEmptyFolder(folderOf(out)));
        QCOMPARE(desk.lastTitle(), before);
        QVERIFY(!openBox("statusAlert"));
    }

    void theLibraryArchiveIsExportedInTheBackground() {
        Desk desk;
        QTemporaryDir out;
        const QString file = out.filePath(QStringLiteral("Quillon.vrnsermons"));
        QSignalSpy finished(desk.window->exportRunner(), &ExportRunner::finished);
        QVERIFY(desk.window->commands().exportArchiveTo(file));
        QVERIFY(finished.wait(20000));
        QVERIFY(finished.at(0).at(0).toBool());
        QCOMPARE(desk.controller().lastStatus()->title, std::string("Export Complete"));
        QVERIFY(fs::file_size(file.toStdString()) > 0);
    }

    void aRecordingBecomesASelectedDraft() {
        quillon::testing::StubModelServer server;
        server.queueTranscription(quillon::testing::StubModelServer::Behaviour::statusCode(
            200, R"({"segments":[{"start":0,"end":4,"text":"Please turn to John chapter 3 verse 16."}]})"));
        Desk desk;
        auto& preferences = desk.fixture.services().preferences();
        preferences.set(speech::TranscriptionSettings::endpointKey, server.endpoint());
        preferences.set(speech::TranscriptionSettings::modelFolderKey, (desk.fixture.root() / "no-model").string());
        QTemporaryDir out;
        const fs::path recording = folderOf(out) / "Easter_Sunday.wav";
        std::ofstream(recording, std::ios::binary) << quillon::testing::silentWav(0.5);
        QVERIFY(desk.window->menus().command(QStringLiteral("newFromRecordingAction")));

        desk.window->commands().newSermonFromRecording(QString::fromStdString(recording.string()));
        QTRY_VERIFY_WITH_TIMEOUT(
            desk.controller().selectedSermon() && desk.controller().selectedSermon()->title == "Easter Sunday", 20000);
        QCOMPARE(desk.controller().selectedSermon()->notes, std::string("Please turn to John chapter 3 verse 16."));
        QCOMPARE(desk.lastTitle(), std::string("Draft Created"));
        QVERIFY(!desk.controller().recordingStage());
    }

    void withoutARecogniserTheControllersReasonIsShown() {
        Desk desk;
        auto& preferences = desk.fixture.services().preferences();
        preferences.set(speech::TranscriptionSettings::endpointKey, std::string());
        preferences.set(speech::TranscriptionSettings::modelFolderKey, (desk.fixture.root() / "no-model").string());
        desk.window->commands().newSermonFromRecording(QStringLiteral("/nowhere.wav"));
        QTRY_VERIFY_WITH_TIMEOUT(openBox("statusAlert"), 10000);
        QMessageBox* alert = openBox("statusAlert");
        QCOMPARE(alert->windowTitle(), QString::fromUtf8(app::RecordingToDraft::unavailableTitle));
        QCOMPARE(alert->text(), QString::fromUtf8(platform::wording::speechRecognitionNotPermitted));
        QCOMPARE(desk.controller().store().sermons().size(), std::size_t{1});
        alert->close();
    }

    void emptyListsSayWhy() {
        Desk desk;
        desk.controller().selectSermon(desk.first().id);
        struct Case {
            QWidget* window;
            const char* overlay;
            QString text;
        };
        const Case cases[] = {
            {TrashWindow::showFor(*desk.window, desk.controller()), "trashListEmpty",
             QStringLiteral("The trash is empty.")},
            {VersionHistoryWindow::showFor(*desk.window, desk.controller(), desk.fixture.services().versions()),
             "versionListEmpty", QStringLiteral("No earlier versions yet.")},
            {DeskSearch::showFor(*desk.window, desk.fixture.services()), "searchResultsEmpty",
             QStringLiteral("Type a word, a phrase or a reference (Romans 8:28) to search your sermons, the Bible and "
                            "the commentaries.")},
        };
        for (const Case& c : cases) {
            auto* overlay = child<EmptyStateOverlay>(c.window, c.overlay);
            QVERIFY2(overlay && overlay->isShowing(), c.overlay);
            QCOMPARE(overlay->text(), c.text);
            c.window->close();
        }
    }
};

std::unique_ptr<QObject> makeBackgroundWorkTest() {
    return std::make_unique<BackgroundWorkTest>();
}

#include "BackgroundWorkTest.moc"
