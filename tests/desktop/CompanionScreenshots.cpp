// Takes the companions' screenshots for docs/screenshots: Preach Preview, two assistant sheets (one
// answered by a model, one model-free), settings with a search, the command palette, the welcome,
// the Bible panel's empty results and the progress of long work.
// Run it under Xvfb (scripts/companion-screenshots); it writes PNG files into the folder it is given.
#include "app/SermonNotesViewModel.h"
#include "desktop/DeskFixture.h"
#include "desktop/MainWindow.h"
#include "desktop/assistant/AssistantSheet.h"
#include "desktop/bible/BiblePanel.h"
#include "desktop/companions/Companions.h"
#include "desktop/onboarding/OnboardingDialog.h"
#include "desktop/palette/CommandPalette.h"
#include "desktop/settings/SettingsWindow.h"
#include "desktop/shell/BackgroundTask.h"
#include "desktop/shell/DeskCommands.h"
#include "support/StubModelServer.h"

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QLineEdit>
#include <QProgressDialog>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cstdio>

using namespace quillon;
using namespace quillon::desktop;

namespace {

void save(QWidget* widget, const QDir& folder, const char* name) {
    QTest::qWait(300);
    const QString file = folder.filePath(QString::fromLatin1(name));
    if (!widget->grab().save(file))
        std::fprintf(stderr, "could not write %s\n", qPrintable(file));
    else
        std::printf("%s\n", qPrintable(file));
}

void waitForAnswer(AssistantSheet* sheet) {
    QSignalSpy answered(sheet, &AssistantSheet::answered);
    if (!sheet->answer())
        answered.wait(10000);
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: companion_screenshots FOLDER\n");
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    quillon::testing::StubModelServer server;
    desktop::testing::DeskFixture desk({}, true);
    platform::Preferences& preferences = desk.services().preferences();
    preferences.set("Quillon.intelligence.endpoint", server.endpoint());
    preferences.set("Quillon.pace.measuredFromRecording", true);

    MainWindow window(desk.services());
    window.resize(1360, 860);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        std::fprintf(stderr, "the window never showed\n");

    auto* bible = window.findChild<QDockWidget*>(QStringLiteral("biblePanelDock"));
    window.showInBible(QString());
    bible->raise();
    save(bible, folder, "bible-before-search.png");
    QSignalSpy shown(window.biblePanel(), &BiblePanel::resultsShown);
    window.showInBible(QStringLiteral("frobnicate"));
    shown.wait(10000);
    save(bible, folder, "bible-no-results.png");

    // The pool held, the backup waits, and its progress dialog shows as for a long one.
    QTemporaryDir backups;
    desktop::testing::PoolHold hold;
    BackgroundTask* backup = window.commands().backUpTo(backups.path());
    if (!QTest::qWaitFor([backup] { return backup->dialog() && backup->dialog()->isVisible(); }, 5000))
        std::fprintf(stderr, "the progress dialog never showed\n");
    QTest::qWait(300);
    const QString progress = folder.filePath(QStringLiteral("background-progress.png"));
    if (window.screen()->grabWindow(0).save(progress))
        std::printf("%s\n", qPrintable(progress));
    backup->cancel();
    hold.release();
    QTest::qWait(500);

    auto* companions = window.findChild<Companions*>(QStringLiteral("companions"));
    companions->preachDock()->show();
    companions->preachDock()->raise();
    QTest::qWait(3500);
    save(&window, folder, "preach-preview.png");

    server.queueChat(quillon::testing::StubModelServer::Behaviour::reply(
        "0 || Where have you seen love give before it was asked?\n0 || What would it cost you to give first this "
        "week?\n1 || Which promise here do you find hardest to believe?"));
    AssistantSheet* questions = companions->openSheet(app::AssistantFeatureId::discussionQuestions);
    waitForAnswer(questions);
    save(questions, folder, "assistant-discussion-questions.png");
    questions->close();

    preferences.set("Quillon.intelligence.endpoint", "http://127.0.0.1:1/v1");
    AssistantSheet* tags = companions->openSheet(app::AssistantFeatureId::tagSuggestions);
    waitForAnswer(tags);
    save(tags, folder, "assistant-tag-suggestions-model-free.png");
    tags->close();

    SettingsWindow* settings = companions->openSettings();
    QTest::keyClicks(settings->searchField(), QStringLiteral("pase"));
    save(settings, folder, "settings-search.png");
    settings->close();

    companions->palette()->open();
    QTest::keyClicks(companions->palette()->field(), QStringLiteral("exp"));
    save(companions->palette(), folder, "command-palette.png");
    companions->palette()->hide();

    OnboardingDialog* welcome = companions->openOnboarding();
    save(welcome, folder, "onboarding.png");
    welcome->next();
    welcome->next();
    QSignalSpy checked(welcome, &OnboardingDialog::modelChecked);
    checked.wait(3000);
    save(welcome, folder, "onboarding-model-server.png");
    return 0;
}
