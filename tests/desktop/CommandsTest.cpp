#include "app/SermonNotesViewModel.h"
#include "desktop/DeskFixture.h"
#include "desktop/MainWindow.h"
#include "desktop/mesh/MeshLink.h"
#include "desktop/search/DeskSearch.h"
#include "desktop/sheets/PairingDialog.h"
#include "desktop/sheets/RelativeTime.h"
#include "desktop/sheets/TrashWindow.h"
#include "desktop/sheets/VersionHistoryWindow.h"
#include "desktop/shell/DeskCommands.h"
#include "desktop/shell/DeskMenus.h"
#include "desktop/shell/SermonPrinter.h"
#include "model/SermonCoding.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPrinter>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>
#include <QUrl>

#include <fstream>
#include <functional>
#include <map>

using namespace quillon;
using namespace quillon::desktop;
using namespace quillon::desktop::testing;

namespace {

QAction* command(MainWindow& window, const char* name) {
    QAction* action = window.menus().command(QString::fromLatin1(name));
    if (!action)
        QTest::qFail((QByteArray("no command named ") + name).constData(), __FILE__, __LINE__);
    return action;
}

} // namespace

class CommandsTest : public QObject {
    Q_OBJECT

private slots:
    void everyCommandHasANameAndNoShortcutIsTakenTwice() {
        DeskFixture desk;
        MainWindow window(desk.services());
        QStringList names;
        for (QAction* action : window.menus().commands()) {
            QVERIFY2(!names.contains(action->objectName()), qPrintable(action->objectName()));
            names << action->objectName();
            QVERIFY2(!action->text().isEmpty(), qPrintable(action->objectName()));
        }
        // Every menu's shortcuts, the companions' included: a key taken twice would do neither.
        std::map<QString, QString> owners;
        std::function<void(QMenu*)> visit = [&](QMenu* menu) {
            for (QAction* action : menu->actions()) {
                if (action->menu()) {
                    visit(action->menu());
                    continue;
                }
                for (const QKeySequence& shortcut : action->shortcuts()) {
                    const QString key = shortcut.toString();
                    QVERIFY2(!owners.contains(key), qPrintable(key + u' ' + owners[key] + u' ' + action->text()));
                    owners[key] = action->text();
                }
            }
        };
        for (QAction* top : window.menuBar()->actions())
            visit(top->menu());
        // What a preacher reaches by keyboard alone.
        const std::pair<const char*, QKeySequence> expected[] = {
            {"newSermonAction", QKeySequence::New},
            {"openAction", QKeySequence::Open},
            {"printAction", QKeySequence::Print},
            {"undoAction", QKeySequence(Qt::CTRL | Qt::Key_Z)},
            {"redoAction", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)},
            {"sendToScreenAction", QKeySequence(Qt::CTRL | Qt::Key_Return)},
            {"export_docx", QKeySequence(Qt::CTRL | Qt::Key_E)},
        };
        for (const auto& [name, keys] : expected)
            QCOMPARE(command(window, name)->shortcut(), keys);
    }

    void aTrashedSermonComesBackFromTheTrashWindow() {
        auto sermon = sermonTitled("Grace Abounds", 1);
        DeskFixture desk({sermon, sermonTitled("Other", 2)});
        MainWindow window(desk.services());
        window.show();
        auto& controller = desk.services().controller();
        controller.selectSermon(sermon.id);
        command(window, "moveToTrashAction")->trigger();
        QMessageBox* box = openBox("trashConfirmation");
        QVERIFY(box);
        QVERIFY(box->text().startsWith(QStringLiteral("“Grace Abounds” will move to Trash.")));
        QTest::mouseClick(box->findChild<QPushButton*>(QStringLiteral("trashConfirmationAccept")), Qt::LeftButton);
        QVERIFY(!controller.sermon(sermon.id));

        command(window, "trashAction")->trigger();
        auto* trash = window.findChild<TrashWindow*>(QStringLiteral("trashWindow"));
        QVERIFY(trash && trash->isVisible());
        QCOMPARE(trash->list()->count(), 1);
        QVERIFY(trash->list()->item(0)->text().startsWith(QStringLiteral("Grace Abounds\nTrashed just now")));
        trash->list()->item(0)->setSelected(true);
        QTest::mouseClick(trash->findChild<QPushButton*>(QStringLiteral("trashPutBack")), Qt::LeftButton);
        QVERIFY(controller.sermon(sermon.id));
        QCOMPARE(trash->list()->count(), 0);
        QCOMPARE(controller.lastStatus()->title, std::string("Restored from Trash"));
    }

    void anEarlierVersionIsRestoredAsOneUndoableEdit() {
        auto sermon = sermonTitled("Seasons", 1);
        sermon.notes = "First draft";
        DeskFixture desk({sermon});
        // The two edits are two undo steps however quickly the test makes them.
        desk.services().preferences().set(store::SermonNotesManager::undoCoalesceIntervalKey, 1e-9);
        MainWindow window(desk.services());
        auto& controller = desk.services().controller();
        controller.selectSermon(sermon.id);
        QVERIFY(controller.setNotes(sermon.id, "Second draft"));

        command(window, "versionHistoryAction")->trigger();
        auto* history = window.findChild<VersionHistoryWindow*>(QStringLiteral("versionHistoryWindow"));
        QVERIFY(history);
        QCOMPARE(history->list()->count(), 1);
        QVERIFY(history->findChild<QTextBrowser*>(QStringLiteral("versionPreview"))
                    ->toPlainText()
                    .contains(QStringLiteral("First draft")));
        QVERIFY(history->restoreChosen());
        QCOMPARE(controller.sermon(sermon.id)->notes, std::string("First draft"));
        command(window, "undoAction")->trigger();
        QCOMPARE(controller.sermon(sermon.id)->notes, std::string("Second draft"));
    }

    void printingToAFileWritesTheHandOut() {
        auto sermon = sermonTitled("Printed Word", 1);
        sermon.notes = "On paper.";
        DeskFixture desk({sermon});
        MainWindow window(desk.services());
        QTemporaryDir out;
        QPrinter printer;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(out.filePath(QStringLiteral("printed.pdf")));
        QSignalSpy done(&window.commands().printer(), &SermonPrinter::finished);
        window.commands().printer().printTo(sermon, printer);
        QVERIFY(done.wait(20000));
        QVERIFY(done.at(0).at(0).toBool());
        QFile printed(printer.outputFileName());
        QVERIFY(printed.open(QIODevice::ReadOnly));
        QCOMPARE(printed.read(5), QByteArray("%PDF-"));
    }

    void droppedSermonFilesOpenAndOtherFilesAreRefused() {
        DeskFixture desk;
        MainWindow window(desk.services());
        window.show();
        model::SermonNote incoming = sermonTitled("Dropped In", 0);
        QTemporaryDir folder;
        QString file = folder.filePath(QStringLiteral("Dropped.quillet"));
        {
            std::ofstream out(file.toStdString(), std::ios::binary);
            out << model::encodeSermonNote(incoming).dump(2);
        }
        const std::pair<QString, bool> cases[] = {
            {folder.filePath(QStringLiteral("picture.png")), false},
            {file, true},
        };
        for (const auto& [path, accepted] : cases) {
            QMimeData data;
            data.setUrls({QUrl::fromLocalFile(path)});
            QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
            QApplication::sendEvent(&window, &enter);
            QCOMPARE(enter.isAccepted(), accepted);
            if (!accepted)
                continue;
            QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
            QApplication::sendEvent(&window, &drop);
        }
        QVERIFY(desk.services().controller().sermon(incoming.id));
        QCOMPARE(window.windowTitle(), QStringLiteral("Dropped In — Quillon"));
    }

    void thePairingDialogShowsASixDigitCodeAndItsExpiry() {
        DeskFixture desk;
        MainWindow window(desk.services());
        PairingDialog dialog(window.mesh(), &window);
        dialog.generate();
        QCOMPARE(dialog.shownCode().size(), 6);
        QVERIFY(std::all_of(dialog.shownCode().begin(), dialog.shownCode().end(), [](QChar c) { return c.isDigit(); }));
        QVERIFY(dialog.findChild<QLabel*>(QStringLiteral("pairingExpiry"))
                    ->text()
                    .startsWith(QStringLiteral("Valid until")));
        // Without a network the mesh never started, and the window says so rather than waiting.
        QVERIFY(!window.mesh().isRunning());
        QCOMPARE(window.mesh().statusText(), QStringLiteral("Screens: off"));
    }

    void searchGroupsSermonsBibleAndCommentariesAndCorrectsSpelling() {
        auto sermon = sermonTitled("Forgiveness Runs Deep", 1);
        sermon.notes = "Forgiveness is costly and free.";
        DeskFixture desk({sermon, sermonTitled("Unrelated", 2)});
        MainWindow window(desk.services());
        window.show();
        command(window, "findAction")->trigger();
        auto* search = window.findChild<DeskSearch*>(QStringLiteral("searchWindow"));
        QVERIFY(search && search->isVisible());
        QCOMPARE(search->focusWidget(), search->field());
        struct Case {
            const char* query;
            const char* firstHeading;
            bool corrected;
        };
        const Case cases[] = {{"forgiveness", "Sermons (1)", false}, {"forgivness", "Sermons (1)", true}};
        for (const Case& test : cases) {
            QSignalSpy shown(search, &DeskSearch::resultsShown);
            search->search(QString::fromLatin1(test.query));
            QVERIFY(shown.wait(20000));
            QStringList headings = search->groupHeadings();
            QVERIFY2(!headings.isEmpty(), test.query);
            QCOMPARE(headings.first(), QString::fromLatin1(test.firstHeading));
            // The Bible is searched as typed; only the sermons' own words correct a misspelling.
            QVERIFY2(headings.filter(QStringLiteral("Scripture")).size() == (test.corrected ? 0 : 1),
                     qPrintable(headings.join(u',')));
            QCOMPARE(search->banner().startsWith(QStringLiteral("Showing results for")), test.corrected);
        }
        QSignalSpy chosen(search, &DeskSearch::sermonChosen);
        search->openHit(search->results().index(0, 0, search->results().index(0, 0)));
        QCOMPARE(desk.services().controller().selection().sermonId, std::optional(sermon.id));
    }

    void bookNamesCompleteAsAReferenceIsTyped() {
        auto sermon = sermonTitled("Completed", 1);
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = "Point";
        model::SermonSubTopic sub;
        sub.id = model::Uuid::random();
        sub.title = "Sub-point";
        topic.subTopics = {sub};
        sermon.topics = {topic};
        DeskFixture desk({sermon});
        MainWindow window(desk.services());
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        desk.services().controller().selectSermon(sermon.id);
        desk.services().controller().selectSubTopic(sub.id);
        auto* field = window.findChild<QLineEdit*>(QStringLiteral("addScriptureField"));
        QVERIFY(field);
        const std::pair<const char*, const char*> cases[] = {
            {"1 co", "1 Corinthians"}, {"phile", "Philemon"}, {"PSA", "Psalms"}};
        for (const auto& [typed, completed] : cases) {
            field->clear();
            field->setFocus();
            QTest::keyClicks(field, QString::fromLatin1(typed));
            QCOMPARE(field->text().toLower(), QString::fromLatin1(completed).toLower());
        }
        field->clear();
        QTest::keyClicks(field, QStringLiteral("1 co"));
        QTest::keyClick(field, Qt::Key_End);
        QTest::keyClicks(field, QStringLiteral(" 13:4-7"));
        QTest::keyClick(field, Qt::Key_Return);
        const auto& stored = desk.services().controller().sermon(sermon.id)->topics[0].subTopics[0].scriptures;
        QCOMPARE(stored.size(), std::size_t{1});
        QCOMPARE(stored[0].bookName, std::string("1 Corinthians"));
        QCOMPARE(stored[0].endVerse, 7);
    }

    void relativeTimesReadAsAPreacherSaysThem() {
        using namespace std::chrono;
        const model::DateTime now = sys_days{2025y / 3 / 9} + hours{12};
        const std::pair<seconds, const char*> cases[] = {
            {seconds{20}, "Just now"},     {minutes{1}, "1 minute ago"}, {minutes{59}, "59 minutes ago"},
            {hours{1}, "1 hour ago"},      {hours{23}, "23 hours ago"},  {hours{24}, "Yesterday"},
            {hours{24 * 3}, "3 days ago"}, {seconds{-90}, "Just now"},
        };
        for (const auto& [ago, text] : cases)
            QCOMPARE(relativeTime(now - ago, now), QString::fromUtf8(text));
    }
};

std::unique_ptr<QObject> makeCommandsTest() {
    return std::make_unique<CommandsTest>();
}

#include "CommandsTest.moc"
