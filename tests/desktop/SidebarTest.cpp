#include "desktop/DeskFixture.h"
#include "desktop/shell/EmptyStateOverlay.h"
#include "desktop/sidebar/SermonListModel.h"
#include "desktop/sidebar/SermonSidebar.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"

#include <algorithm>

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QSignalSpy>
#include <QTest>

using namespace quillon;
using namespace quillon::desktop;
using namespace quillon::desktop::testing;

namespace {

QStringList titles(const SermonListModel& model) {
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result << model.index(row).data().toString();
    return result;
}

} // namespace

class SidebarTest : public QObject {
    Q_OBJECT

private slots:
    void pinnedComeFirstThenLatestChange() {
        auto old = sermonTitled("Old", 300);
        auto recent = sermonTitled("Recent", 5);
        auto middle = sermonTitled("Middle", 60);
        auto pinnedOld = sermonTitled("Pinned Old", 900);
        DeskFixture desk({old, recent, middle, pinnedOld});
        desk.services().manager().setPinned(pinnedOld.id, true);
        SermonListModel model(desk.services().manager(), {});
        QCOMPARE(titles(model), (QStringList{"Pinned Old", "Recent", "Middle", "Old"}));
        QVERIFY(model.index(0).data(SermonListModel::PinnedRole).toBool());
    }

    void oneChangedSermonListsAsAFullReloadWould() {
        // An edit redraws its row in place; a move in the order or across the filter takes all again.
        const struct {
            const char* title;
            const char* newTitle;
            bool inPlace;
        } cases[] = {
            {"Recent", "Recent and revised", true},
            {"Old", "Old made new", false},
            {"Middle", "Not a match", false},
        };
        for (const auto& c : cases) {
            auto old = sermonTitled("Old", 300);
            auto recent = sermonTitled("Recent", 5);
            auto middle = sermonTitled("Middle", 60);
            DeskFixture desk({old, recent, middle});
            SermonListModel model(desk.services().manager(), {});
            model.setFilterText(QStringLiteral("e"));
            QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
            QSignalSpy redrawn(&model, &QAbstractItemModel::dataChanged);
            store::SermonNotesManager& manager = desk.services().manager();
            model::SermonNote changed = *std::find_if(manager.sermons().begin(), manager.sermons().end(),
                                                      [&](const auto& sermon) { return sermon.title == c.title; });
            changed.title = c.newTitle;
            QVERIFY(manager.update(changed));
            model.reloadSermon(changed.id);
            SermonListModel fresh(manager, {});
            fresh.setFilterText(QStringLiteral("e"));
            QCOMPARE(titles(model), titles(fresh));
            QCOMPARE(resets.count(), c.inPlace ? 0 : 1);
            QCOMPARE(redrawn.count(), c.inPlace ? 1 : 0);
        }
    }

    void subtitleJoinsSeriesAndDate() {
        DeskFixture desk({sermonTitled("With Series", 1, "Romans"), sermonTitled("Alone", 2)});
        SermonListModel model(desk.services().manager(), {});
        QCOMPARE(model.index(0).data(SermonListModel::SubtitleRole).toString(), QStringLiteral("Romans · 16 Mar 2025"));
        QCOMPARE(model.index(1).data(SermonListModel::SubtitleRole).toString(), QStringLiteral("16 Mar 2025"));
    }

    void filterMatchesEveryWordAcrossFields_data() {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("empty shows all") << "" << QStringList{"Grace Abounds", "Café Church", "Psalm 23"};
        QTest::newRow("case ignored") << "GRACE" << QStringList{"Grace Abounds"};
        QTest::newRow("accents ignored") << "cafe" << QStringList{"Café Church"};
        QTest::newRow("series searched") << "shepherd" << QStringList{"Psalm 23"};
        QTest::newRow("tags searched") << "advent" << QStringList{"Grace Abounds"};
        QTest::newRow("every word must match") << "grace romans" << QStringList{"Grace Abounds"};
        QTest::newRow("words in two sermons") << "grace shepherd" << QStringList{};
        QTest::newRow("spaces only") << "   " << QStringList{"Grace Abounds", "Café Church", "Psalm 23"};
    }
    void filterMatchesEveryWordAcrossFields() {
        QFETCH(QString, filter);
        QFETCH(QStringList, expected);
        auto grace = sermonTitled("Grace Abounds", 1, "Romans");
        grace.tags = {"Advent"};
        DeskFixture desk({grace, sermonTitled("Café Church", 2), sermonTitled("Psalm 23", 3, "The Shepherd")});
        SermonListModel model(desk.services().manager(), {});
        model.setFilterText(filter);
        QCOMPARE(titles(model), expected);
    }

    void hiddenSermonsShowOnlyWhenAsked() {
        auto hidden = sermonTitled("Hidden", 1);
        DeskFixture desk({hidden, sermonTitled("Shown", 2)});
        desk.services().manager().setHidden(hidden.id, true);
        SermonListModel model(desk.services().manager(), {});
        SermonSidebar sidebar(model);
        QCOMPARE(titles(model), QStringList{"Shown"});
        child<QCheckBox>(&sidebar, "showHiddenToggle")->setChecked(true);
        QCOMPARE(titles(model), (QStringList{"Hidden", "Shown"}));
        QVERIFY(model.index(0).data(SermonListModel::HiddenRole).toBool());
    }

    void typingInTheFilterNarrowsTheList() {
        DeskFixture desk({sermonTitled("Grace", 1), sermonTitled("Hope", 2)});
        SermonListModel model(desk.services().manager(), {});
        SermonSidebar sidebar(model);
        QTest::keyClicks(child<QLineEdit>(&sidebar, "sidebarFilter"), "hop");
        QCOMPARE(titles(model), QStringList{"Hope"});
        QCOMPARE(child<QLabel>(&sidebar, "sermonCount")->text(), QStringLiteral("1 of 2 sermons"));
        auto* empty = child<EmptyStateOverlay>(&sidebar, "sermonListEmpty");
        QVERIFY(!empty->isShowing());
        QTest::keyClicks(child<QLineEdit>(&sidebar, "sidebarFilter"), "zz");
        QVERIFY(empty->isShowing());
        QCOMPARE(empty->text(), QStringLiteral("No sermons match “hopzz”."));
    }

    void anEmptyListSaysWhetherTheLibraryIsNewOrAllHidden() {
        auto hidden = sermonTitled("Hidden", 1);
        DeskFixture desk({hidden});
        desk.services().manager().setHidden(hidden.id, true);
        SermonListModel model(desk.services().manager(), {});
        SermonSidebar sidebar(model);
        auto* empty = child<EmptyStateOverlay>(&sidebar, "sermonListEmpty");
        QVERIFY(empty->isShowing());
        QCOMPARE(empty->text(), QStringLiteral("Every sermon is hidden. Tick “Show hidden sermons” to see them."));
        child<QCheckBox>(&sidebar, "showHiddenToggle")->setChecked(true);
        QVERIFY(!empty->isShowing());
    }

    void clickingARowAsksForThatSermonOnce() {
        auto first = sermonTitled("First", 1);
        auto second = sermonTitled("Second", 2);
        DeskFixture desk({first, second});
        SermonListModel model(desk.services().manager(), {});
        SermonSidebar sidebar(model);
        sidebar.resize(300, 400);
        sidebar.show();
        QSignalSpy asked(&sidebar, &SermonSidebar::sermonActivated);
        auto* list = child<QListView>(&sidebar, "sermonList");
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(model.index(1)).center());
        QCOMPARE(asked.count(), 1);
        QCOMPARE(asked.at(0).at(0).value<model::Uuid>(), second.id);
        sidebar.showCurrent(first.id);
        QCOMPARE(asked.count(), 1);
        QCOMPARE(list->currentIndex().row(), 0);
    }

    void severalRowsCanBeSelectedForBatchWork() {
        auto a = sermonTitled("A", 1);
        auto b = sermonTitled("B", 2);
        auto c = sermonTitled("C", 3);
        DeskFixture desk({a, b, c});
        SermonListModel model(desk.services().manager(), {});
        SermonSidebar sidebar(model);
        sidebar.resize(300, 400);
        sidebar.show();
        auto* list = child<QListView>(&sidebar, "sermonList");
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(model.index(0)).center());
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::ControlModifier,
                          list->visualRect(model.index(2)).center());
        auto ids = sidebar.selectedIds();
        QCOMPARE(ids.size(), std::size_t{2});
        QCOMPARE(ids[0], a.id);
        QCOMPARE(ids[1], c.id);
    }

    void currentSermonStaysSelectedThroughFilterAndReload() {
        auto keep = sermonTitled("Keep", 1);
        DeskFixture desk({keep, sermonTitled("Other", 2)});
        SermonListModel model(desk.services().manager(), {});
        SermonSidebar sidebar(model);
        sidebar.showCurrent(keep.id);
        auto* list = child<QListView>(&sidebar, "sermonList");
        model.setFilterText(QStringLiteral("oth"));
        QVERIFY(!list->currentIndex().isValid() || list->selectionModel()->selectedRows().isEmpty());
        model.setFilterText({});
        QCOMPARE(model.idAt(list->currentIndex().row()), std::optional(keep.id));
        model.reload();
        QCOMPARE(model.idAt(list->currentIndex().row()), std::optional(keep.id));
    }

    void tenThousandSermonsFilterToTheOneAsked() {
        std::vector<model::SermonNote> many;
        for (int i = 0; i < 10000; ++i)
            many.push_back(sermonTitled("Sermon " + std::to_string(i), i));
        DeskFixture desk;
        // Held in memory only: the list is under test, not ten thousand file writes.
        desk.services().storage().setWriter([](const std::filesystem::path&, std::string_view) {});
        desk.services().manager().importSermons(many, model::SermonImportMode::skipDuplicates);
        SermonListModel model(desk.services().manager(), {});
        QCOMPARE(model.rowCount(), 10000);
        model.setFilterText(QStringLiteral("sermon 9999"));
        QCOMPARE(titles(model), QStringList{"Sermon 9999"});
    }

    void coverThumbnailComesFromTheMediaFolder() {
        auto sermon = sermonTitled("Covered", 1);
        sermon.coverImageFileName = sermon.id.text() + "_cover.jpg";
        DeskFixture desk({sermon, sermonTitled("Bare", 2)});
        auto media = desk.services().storage().mediaFolder();
        QImage image(64, 48, QImage::Format_RGB32);
        image.fill(Qt::darkGreen);
        QVERIFY(image.save(QString::fromStdString((media / *sermon.coverImageFileName).string()), "JPG"));
        SermonListModel model(desk.services().manager(), [media] { return media; });
        QVERIFY(!model.index(0).data(Qt::DecorationRole).value<QPixmap>().isNull());
        QVERIFY(model.index(1).data(Qt::DecorationRole).isNull());
    }
};

std::unique_ptr<QObject> makeSidebarTest() {
    return std::make_unique<SidebarTest>();
}

#include "SidebarTest.moc"
