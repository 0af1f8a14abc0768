#include "desktop/bible/BiblePanel.h"
#include "desktop/DeskFixture.h"
#include "desktop/bible/ChapterReader.h"
#include "desktop/bible/CommentaryPane.h"
#include "desktop/shell/EmptyStateOverlay.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

#include <atomic>

using namespace quillon;
using namespace quillon::desktop;
using namespace quillon::desktop::testing;

namespace {

std::unique_ptr<BiblePanel> makePanel(DeskFixture& desk) {
    auto* services = &desk.services();
    return std::make_unique<BiblePanel>(
        services->bibles(), [services]() -> intelligence::CommentaryLibrary& { return services->commentaries(); });
}

bool waitForChapter(ChapterReader* reader) {
    QSignalSpy shown(reader, &ChapterReader::chapterShown);
    return !reader->isLoading() || shown.wait(10000);
}

} // namespace

class BiblePanelTest : public QObject {
    Q_OBJECT

private slots:
    void typedReferenceListsTheVerseAndOpensItsChapter() {
        DeskFixture desk;
        auto panel = makePanel(desk);
        QSignalSpy shown(panel.get(), &BiblePanel::resultsShown);
        QTest::keyClicks(child<QLineEdit>(panel.get(), "bibleSearchField"), "John 3:16");
        QTest::keyClick(child<QLineEdit>(panel.get(), "bibleSearchField"), Qt::Key_Return);
        QVERIFY(shown.wait(10000));
        const BibleResultsModel& results = panel->results();
        QCOMPARE(results.rowCount(), 1);
        QCOMPARE(results.index(0, BibleResultsModel::referenceColumn).data().toString(),
                 QStringLiteral("John 3:16 KJV"));
        QVERIFY(results.index(0, BibleResultsModel::textColumn).data().toString().startsWith("For God so loved"));
        QVERIFY(waitForChapter(panel->reader()));
        QCOMPARE(child<QLabel>(panel.get(), "chapterTitle")->text(), QStringLiteral("John 3"));
        QCOMPARE(panel->referenceToAttach(), QStringLiteral("John 3:16"));
    }

    void theResultsListSaysWhyItIsEmpty() {
        DeskFixture desk;
        auto panel = makePanel(desk);
        auto* empty = child<EmptyStateOverlay>(panel.get(), "bibleResultsEmpty");
        QVERIFY(empty->isShowing());
        QCOMPARE(empty->text(), QStringLiteral("Type a reference or a few words to search the Bible."));
        QSignalSpy shown(panel.get(), &BiblePanel::resultsShown);
        panel->search(QStringLiteral("zzqxv"));
        QVERIFY(shown.wait(10000));
        QCOMPARE(panel->results().rowCount(), 0);
        QVERIFY(empty->isShowing());
        QCOMPARE(empty->text(), QStringLiteral("Nothing in the Bible matches “zzqxv”."));
        panel->search(QStringLiteral("John 3:16"));
        QVERIFY(shown.wait(10000));
        QVERIFY(!empty->isShowing());
        panel->search(QString());
        QVERIFY(empty->isShowing());
        QVERIFY(empty->text().startsWith(QStringLiteral("Type a reference")));
    }

    void chaptersStepAcrossBooksAndStopAtTheEnds_data() {
        QTest::addColumn<int>("book");
        QTest::addColumn<int>("chapter");
        QTest::addColumn<bool>("forward");
        QTest::addColumn<QString>("expected");
        QTest::newRow("next within a book") << 43 << 3 << true << "John 4";
        QTest::newRow("next into the following book") << 43 << 21 << true << "Acts 1";
        QTest::newRow("previous into the book before") << 44 << 1 << false << "John 21";
        QTest::newRow("no chapter before Genesis 1") << 1 << 1 << false << "Genesis 1";
        QTest::newRow("no chapter after Revelation 22") << 66 << 22 << true << "Revelation 22";
    }
    void chaptersStepAcrossBooksAndStopAtTheEnds() {
        QFETCH(int, book);
        QFETCH(int, chapter);
        QFETCH(bool, forward);
        QFETCH(QString, expected);
        DeskFixture desk;
        auto panel = makePanel(desk);
        panel->reader()->showChapter(book, chapter);
        auto* button = child<QToolButton>(panel.get(), forward ? "nextChapter" : "previousChapter");
        if (button->isEnabled())
            QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(child<QLabel>(panel.get(), "chapterTitle")->text(), expected);
        QVERIFY(waitForChapter(panel->reader()));
    }

    void versionsShowSideBySide() {
        DeskFixture desk;
        auto panel = makePanel(desk);
        ChapterReader* reader = panel->reader();
        QVERIFY(waitForChapter(reader));
        QCOMPARE(reader->chapterModel().columnCount(), 1);
        auto* asv = panel->findChild<QToolButton*>(QStringLiteral("readerVersion_ASV"));
        if (!asv)
            QSKIP("the ASV text is not installed");
        QSignalSpy shown(reader, &ChapterReader::chapterShown);
        asv->setChecked(true);
        QVERIFY(shown.wait(10000));
        const ChapterModel& chapter = reader->chapterModel();
        QCOMPARE(chapter.columnCount(), 2);
        QCOMPARE(chapter.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("ASV"));
        QCOMPARE(chapter.rowCount(), 36);
        QString kjv = chapter.index(15, 0).data().toString();
        QString other = chapter.index(15, 1).data().toString();
        QVERIFY(!other.isEmpty());
        QVERIFY(kjv != other);
    }

    void attachHandsOverTheSelectedVersesOnlyWhenASubTopicIsSelected() {
        DeskFixture desk;
        auto panel = makePanel(desk);
        QVERIFY(waitForChapter(panel->reader()));
        auto* table = child<QTableView>(panel.get(), "chapterTable");
        table->selectionModel()->select(QItemSelection(table->model()->index(15, 0), table->model()->index(17, 0)),
                                        QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        auto* attach = child<QPushButton>(panel.get(), "attachToSubTopic");
        panel->setCanAttach(false);
        QVERIFY(!attach->isEnabled());
        panel->setCanAttach(true);
        QVERIFY(attach->isEnabled());
        QSignalSpy attached(panel.get(), &BiblePanel::attachRequested);
        QTest::mouseClick(attach, Qt::LeftButton);
        QCOMPARE(attached.count(), 1);
        QCOMPARE(attached.at(0).at(0).toString(), QStringLiteral("John 3:16-18"));
    }

    void commentaryNotesFollowTheReader() {
        DeskFixture desk;
        if (desk.services().commentaries().commentaries().empty())
            QSKIP("no SWORD commentary is installed");
        auto panel = makePanel(desk);
        CommentaryPane* pane = panel->commentaries();
        pane->setExpanded(true);
        panel->reader()->showChapter(19, 23, 1);
        QTRY_VERIFY_WITH_TIMEOUT(!pane->isLoading() && pane->text().contains("23"), 10000);
        QVERIFY(!pane->text().contains("No commentaries are installed"));
    }

    void commentaryLibraryIsOpenedOnlyWhenThePaneIsFirstUnfolded() {
        DeskFixture desk;
        std::atomic<int> asked = 0;
        auto* services = &desk.services();
        BiblePanel panel(services->bibles(), [services, &asked]() -> intelligence::CommentaryLibrary& {
            ++asked;
            return services->commentaries();
        });
        QVERIFY(waitForChapter(panel.reader()));
        CommentaryPane* pane = panel.commentaries();
        QVERIFY(!pane->isExpanded());
        QVERIFY(!pane->isLoading());
        QCOMPARE(asked.load(), 0);

        QTest::mouseClick(child<QToolButton>(&panel, "commentaryToggle"), Qt::LeftButton);
        QVERIFY(pane->isExpanded());
        QCOMPARE(pane->text(), QStringLiteral("Loading commentaries…"));
        QTRY_VERIFY_WITH_TIMEOUT(pane->text() != QStringLiteral("Loading commentaries…"), 10000);
        QCOMPARE(asked.load(), 1);

        // Folding and unfolding again keeps what was read rather than asking anew.
        pane->setExpanded(false);
        pane->setExpanded(true);
        QVERIFY(!pane->isLoading());
        QCOMPARE(asked.load(), 1);
    }
};

std::unique_ptr<QObject> makeBiblePanelTest() {
    return std::make_unique<BiblePanelTest>();
}

#include "BiblePanelTest.moc"
