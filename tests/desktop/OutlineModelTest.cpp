#include "desktop/outline/OutlineModel.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

using namespace quillon;
using namespace quillon::desktop;

namespace {

model::SermonScripture scripture(const std::string& book, int chapter, int first, int last) {
    model::SermonScripture s;
    s.id = model::Uuid::random();
    s.bookName = book;
    s.chapter = chapter;
    s.startVerse = first;
    s.endVerse = last;
    return s;
}

model::SermonNote outline() {
    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    for (const char* title : {"Creation", "Fall", "Redemption"}) {
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = title;
        for (const char* sub : {"One", "Two"}) {
            model::SermonSubTopic subTopic;
            subTopic.id = model::Uuid::random();
            subTopic.title = sub;
            subTopic.scriptures = {scripture("John", 3, 16, 18), scripture("Romans", 8, 28, 28)};
            topic.subTopics.push_back(subTopic);
        }
        sermon.topics.push_back(topic);
    }
    return sermon;
}

std::unique_ptr<QMimeData> dragged(OutlineModel& model, const QModelIndex& index) {
    return std::unique_ptr<QMimeData>(model.mimeData({index}));
}

} // namespace

class OutlineModelTest : public QObject {
    Q_OBJECT

private slots:
    void treeHoldsTopicsSubTopicsAndScriptures() {
        model::SermonNote sermon = outline();
        OutlineModel model([&] { return &sermon; });
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.rowCount(), 3);
        QModelIndex fall = model.index(1, 0);
        QCOMPARE(fall.data().toString(), QStringLiteral("Fall"));
        QModelIndex two = model.index(1, 0, fall);
        QCOMPARE(two.data().toString(), QStringLiteral("Two"));
        QCOMPARE(two.parent(), fall);
        QModelIndex romans = model.index(1, 0, two);
        QCOMPARE(romans.data().toString(), QStringLiteral("Romans 8:28"));
        QCOMPARE(model.index(0, 0, two).data().toString(), QStringLiteral("John 3:16-18"));
        QCOMPARE(romans.parent(), two);
        QCOMPARE(model.rowCount(romans), 0);
        QCOMPARE(model.indexOf(sermon.topics[1].subTopics[1].scriptures[1].id), romans);
        QCOMPARE(model.kindOf(romans), std::optional(OutlineModel::Kind::scripture));
    }

    void noSermonMeansAnEmptyOutline() {
        OutlineModel model([] { return static_cast<const model::SermonNote*>(nullptr); });
        QCOMPARE(model.rowCount(), 0);
        QVERIFY(!model.indexOf(model::Uuid::random()).isValid());
    }

    void renamingAsksInsteadOfChanging() {
        model::SermonNote sermon = outline();
        OutlineModel model([&] { return &sermon; });
        QSignalSpy asked(&model, &OutlineModel::renameRequested);
        QVERIFY(model.setData(model.index(0, 0), QStringLiteral("  Beginnings "), Qt::EditRole));
        QCOMPARE(asked.count(), 1);
        QCOMPARE(asked.at(0).at(1).toString(), QStringLiteral("Beginnings"));
        QCOMPARE(sermon.topics[0].title, std::string("Creation"));
        QVERIFY(!model.setData(model.index(0, 0), QStringLiteral("   "), Qt::EditRole));
        QModelIndex scriptureIndex = model.index(0, 0, model.index(0, 0, model.index(0, 0)));
        QVERIFY(!(model.flags(scriptureIndex) & Qt::ItemIsEditable));
    }

    void itemsDropOnlyAmongTheirOwnLevel() {
        model::SermonNote sermon = outline();
        OutlineModel model([&] { return &sermon; });
        QModelIndex topic = model.index(0, 0);
        QModelIndex subTopic = model.index(0, 0, topic);
        QModelIndex scriptureIndex = model.index(0, 0, subTopic);
        auto topicData = dragged(model, topic);
        auto subTopicData = dragged(model, subTopic);
        auto scriptureData = dragged(model, scriptureIndex);
        QVERIFY(model.canDropMimeData(topicData.get(), Qt::MoveAction, 2, 0, {}));
        QVERIFY(!model.canDropMimeData(topicData.get(), Qt::MoveAction, 0, 0, topic));
        QVERIFY(model.canDropMimeData(subTopicData.get(), Qt::MoveAction, 0, 0, model.index(2, 0)));
        QVERIFY(!model.canDropMimeData(subTopicData.get(), Qt::MoveAction, 0, 0, {}));
        QVERIFY(model.canDropMimeData(scriptureData.get(), Qt::MoveAction, 0, 0, model.index(1, 0, model.index(2, 0))));
        QVERIFY(!model.canDropMimeData(scriptureData.get(), Qt::MoveAction, 0, 0, topic));
        QVERIFY(!model.canDropMimeData(topicData.get(), Qt::CopyAction, 2, 0, {}));
    }

    void aDropAsksForTheMoveWithTheSlotCounted_data() {
        QTest::addColumn<int>("dropRow");
        QTest::addColumn<int>("expected");
        QTest::newRow("to the top") << 0 << 0;
        QTest::newRow("below the next one") << 2 << 1;
        QTest::newRow("at the end") << -1 << 2;
    }
    void aDropAsksForTheMoveWithTheSlotCounted() {
        QFETCH(int, dropRow);
        QFETCH(int, expected);
        model::SermonNote sermon = outline();
        OutlineModel model([&] { return &sermon; });
        QSignalSpy moves(&model, &OutlineModel::moveRequested);
        auto data = dragged(model, model.index(0, 0));
        model.dropMimeData(data.get(), Qt::MoveAction, dropRow, 0, {});
        QCOMPARE(moves.count(), 1);
        QCOMPARE(moves.at(0).at(3).toInt(), expected);
        QCOMPARE(sermon.topics[0].title, std::string("Creation"));
    }

    void refreshResetsOnlyWhenItemsMove() {
        model::SermonNote sermon = outline();
        OutlineModel model([&] { return &sermon; });
        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
        sermon.topics[0].title = "Beginnings";
        model.refresh();
        QCOMPARE(resets.count(), 0);
        QVERIFY(changes.count() > 0);
        QCOMPARE(model.index(0, 0).data().toString(), QStringLiteral("Beginnings"));
        std::swap(sermon.topics[0].subTopics[0].scriptures[0], sermon.topics[0].subTopics[0].scriptures[1]);
        model.refresh();
        QCOMPARE(resets.count(), 1);
    }
};

std::unique_ptr<QObject> makeOutlineModelTest() {
    return std::make_unique<OutlineModelTest>();
}

#include "OutlineModelTest.moc"
