#include "app/SermonNotesViewModel.h"
#include "desktop/DeskFixture.h"
#include "desktop/MainWindow.h"
#include "desktop/editor/RichTextEditor.h"
#include "desktop/scripture/ScripturePanel.h"
#include "desktop/sermon/DetailArea.h"
#include "desktop/sermon/SermonView.h"
#include "desktop/shell/ExportRunner.h"
#include "desktop/shell/SingleInstance.h"
#include "model/SermonCoding.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextCursor>
#include <QTimer>
#include <QToolButton>
#include <QtConcurrent>

#include <fstream>
#include <sstream>

using namespace quillon;
using namespace quillon::desktop;
using namespace quillon::desktop::testing;

namespace {

std::string fileText(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void typeInto(QLineEdit* field, const QString& text) {
    field->setFocus();
    QTest::keyClicks(field, text);
    QTest::keyClick(field, Qt::Key_Return);
}

/// A window over a library with one sermon "Living Hope" holding one topic, sub-topic and scripture.
struct EditingDesk {
    model::SermonNote sermon = sermonTitled("Living Hope", 1);
    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<MainWindow> window;

    EditingDesk() {
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = "Born Again";
        model::SermonSubTopic subTopic;
        subTopic.id = model::Uuid::random();
        subTopic.title = "By Mercy";
        model::SermonScripture scripture;
        scripture.id = model::Uuid::random();
        scripture.bookName = "1 Peter";
        scripture.chapter = 1;
        scripture.startVerse = 3;
        scripture.endVerse = 3;
        subTopic.scriptures = {scripture};
        topic.subTopics = {subTopic};
        sermon.topics = {topic};
        desk = std::make_unique<DeskFixture>(std::vector{sermon});
        open();
    }
    void open() {
        window = std::make_unique<MainWindow>(desk->services());
        window->resize(1300, 850);
        window->show();
        controller().selectSermon(sermon.id);
    }
    app::SermonNotesViewModel& controller() { return desk->services().controller(); }
    const model::SermonNote& stored() { return *controller().sermon(sermon.id); }
    std::filesystem::path file() { return desk->services().storage().sermonFile(sermon.id); }
};

} // namespace

class EditingTest : public QObject {
    Q_OBJECT

private slots:
    void newSermonFromATemplateBecomesTheSelectedSermon() {
        DeskFixture desk;
        MainWindow window(desk.services());
        window.show();
        QTimer::singleShot(0, [] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            QTest::keyClicks(dialog->findChild<QLineEdit*>(QStringLiteral("newSermonTitle")), "The Good Shepherd");
            auto* templates = dialog->findChild<QComboBox*>(QStringLiteral("newSermonTemplate"));
            templates->setCurrentIndex(templates->findText(QStringLiteral("Topical"), Qt::MatchStartsWith));
            QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("newSermonCreate")), Qt::LeftButton);
        });
        window.findChild<QAction*>(QStringLiteral("newSermonAction"))->trigger();
        const model::SermonNote* created = desk.services().controller().selectedSermon();
        QVERIFY(created);
        QCOMPARE(created->title, std::string("The Good Shepherd"));
        QVERIFY(!created->topics.empty());
        QCOMPARE(window.windowTitle(), QStringLiteral("The Good Shepherd — Quillon"));
        QCOMPARE(child<QListView>(&window, "topicList")->model()->rowCount(), static_cast<int>(created->topics.size()));
        QVERIFY(std::filesystem::exists(desk.services().storage().sermonFile(created->id)));
    }

    void typedOutlineItemsAppearWithTheVerseText() {
        EditingDesk desk;
        typeInto(child<QLineEdit>(desk.window.get(), "addTopicField"), "God So Loved");
        typeInto(child<QLineEdit>(desk.window.get(), "addSubTopicField"), "The Gift");
        typeInto(child<QLineEdit>(desk.window.get(), "addScriptureField"), "John 3:16");
        const model::SermonNote& stored = desk.stored();
        QCOMPARE(stored.topics.size(), std::size_t{2});
        QCOMPARE(stored.topics[1].title, std::string("God So Loved"));
        QCOMPARE(stored.topics[1].subTopics.at(0).title, std::string("The Gift"));
        QCOMPARE(stored.topics[1].subTopics.at(0).scriptures.at(0).bookName, std::string("John"));
        ScripturePanel* panel = desk.window->sermonView()->detailArea()->scripturePanel();
        QVERIFY(panel->isVisible());
        QCOMPARE(child<QLabel>(desk.window.get(), "scriptureReference")->text(), QStringLiteral("John 3:16"));
        QVERIFY(panel->words().join(u' ').startsWith(QStringLiteral("For God so loved the world")));
        QVERIFY(fileText(desk.file()).find("\"John\"") != std::string::npos);
    }

    void clickingWordsHighlightsThemAndBreaksLines() {
        EditingDesk desk;
        desk.controller().selectScripture(desk.sermon.topics[0].subTopics[0].scriptures[0].id);
        ScripturePanel* panel = desk.window->sermonView()->detailArea()->scripturePanel();
        QVERIFY(panel->words().size() > 5);
        panel->clickWord(2);
        auto scripture = desk.stored().topics[0].subTopics[0].scriptures[0];
        QCOMPARE(scripture.wordHighlights.at(2), std::string("yellow"));
        panel->clickWord(2);
        QVERIFY(desk.stored().topics[0].subTopics[0].scriptures[0].wordHighlights.empty());
        auto* tool = child<QComboBox>(desk.window.get(), "wordTool");
        tool->setCurrentIndex(tool->findData(QStringLiteral("lineBreak")));
        panel->clickWord(4);
        QCOMPARE(desk.stored().topics[0].subTopics[0].scriptures[0].breakIndicators, std::vector<int>{4});
    }

    void typingInTheManuscriptIsOnDiskAtOnceAndUndoTakesItBack() {
        EditingDesk desk;
        // Every keystroke here is one undo step however slowly the machine types.
        desk.desk->services().preferences().set(store::SermonNotesManager::undoCoalesceIntervalKey, 600.0);
        RichTextEditor* notes = desk.window->sermonView()->notesEditor();
        notes->setFocus();
        QTest::keyClicks(notes, "Hope is alive");
        QCOMPARE(desk.stored().notes, std::string("Hope is alive"));
        auto decoded = model::decodeSermonNote(model::OrderedJSON::parse(fileText(desk.file())));
        QCOMPARE(decoded.notes, std::string("Hope is alive"));
        QVERIFY(decoded.notesRTFData.has_value());
        child<QAction>(desk.window.get(), "undoAction")->trigger();
        QCOMPARE(desk.stored().notes, std::string());
        QCOMPARE(notes->toPlainText(), QString());
        child<QAction>(desk.window.get(), "redoAction")->trigger();
        QCOMPARE(notes->toPlainText(), QStringLiteral("Hope is alive"));
    }

    void deletingATopicAsksWithItsContentsFirst() {
        EditingDesk desk;
        desk.controller().selectTopic(desk.sermon.topics[0].id);
        QTest::mouseClick(child<QToolButton>(desk.window.get(), "deleteTopicButton"), Qt::LeftButton);
        QMessageBox* box = openBox("deleteConfirmation");
        QVERIFY(box);
        QCOMPARE(box->text(),
                 QStringLiteral("“Born Again” will be deleted along with 1 subtopic and 1 scripture reference."));
        QCOMPARE(desk.stored().topics.size(), std::size_t{1});
        QTest::mouseClick(box->findChild<QPushButton*>(QStringLiteral("deleteConfirmationAccept")), Qt::LeftButton);
        QVERIFY(desk.stored().topics.empty());
    }

    void wordExportIsWrittenInTheBackgroundAndAnnounced() {
        EditingDesk desk;
        QTemporaryDir out;
        QString file = out.filePath(QStringLiteral("Living Hope.docx"));
        QSignalSpy done(desk.window->exportRunner(), &ExportRunner::finished);
        QVERIFY(desk.window->exportSelected(app::ExportFormat::word, file));
        QVERIFY(done.wait(30000));
        QVERIFY(done.at(0).at(0).toBool());
        QFile written(file);
        QVERIFY(written.open(QIODevice::ReadOnly));
        QCOMPARE(written.read(2), QByteArray("PK"));
        QCOMPARE(desk.controller().lastStatus()->title, std::string("Word Exported"));
        QVERIFY(child<QLabel>(desk.window.get(), "toast")->text().contains(QStringLiteral("Word Exported")));
    }

    void outlineSelectionComesBackAfterRestart() {
        EditingDesk desk;
        const auto subTopicId = desk.sermon.topics[0].subTopics[0].id;
        desk.controller().selectSubTopic(subTopicId);
        desk.window.reset();
        desk.desk->reopen();
        desk.window = std::make_unique<MainWindow>(desk.desk->services());
        QCOMPARE(desk.controller().selection().subTopicId, std::optional(subTopicId));
        QCOMPARE(child<QListView>(desk.window.get(), "subTopicList")->currentIndex().data().toString(),
                 QStringLiteral("By Mercy"));
    }

    void aQuilletHandedToTheRunningWindowOpensThere() {
        EditingDesk desk;
        model::SermonNote incoming = sermonTitled("Sent From Files", 0);
        QTemporaryDir folder;
        QString file = folder.filePath(QStringLiteral("Sent.quillet"));
        {
            std::ofstream out(file.toStdString(), std::ios::binary);
            out << model::encodeSermonNote(incoming).dump(2);
        }
        QString name = SingleInstance::socketName(folder.path());
        SingleInstance running(name);
        QVERIFY(running.listen());
        connect(&running, &SingleInstance::filesReceived, desk.window.get(), &MainWindow::openFiles);
        QFuture<bool> handed =
            QtConcurrent::run([name, file] { return SingleInstance(name).handToRunning({file}, 5000); });
        QTRY_VERIFY_WITH_TIMEOUT(desk.controller().sermon(incoming.id) != nullptr, 5000);
        QCOMPARE(desk.window->windowTitle(), QStringLiteral("Sent From Files — Quillon"));
        QTRY_VERIFY(handed.isFinished());
        QVERIFY(handed.result());
    }
};

std::unique_ptr<QObject> makeEditingTest() {
    return std::make_unique<EditingTest>();
}

#include "EditingTest.moc"
