#include "store/SampleSermons.h"

#include "scripture/ReferenceParser.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"
#include "support/FakeClock.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

namespace {
using quillon::model::DateTime;
using quillon::store::SampleSermonDefinition;
using quillon::store::SermonNotesManager;
using quillon::store::SermonStorage;

std::size_t wordCount(const std::string& text) {
    std::istringstream words(text);
    return static_cast<std::size_t>(std::distance(std::istream_iterator<std::string>(words), {}));
}

TEST(SampleSermons, everySampleIsACompleteSermonWhoseReferencesParse) {
    const auto& definitions = quillon::store::sampleSermonDefinitions();
    ASSERT_GE(definitions.size(), 4u);
    std::set<std::string> titles;
    for (const SampleSermonDefinition& definition : definitions) {
        SCOPED_TRACE(definition.title);
        EXPECT_TRUE(titles.insert(definition.title).second);
        EXPECT_FALSE(definition.series.empty());
        EXPECT_FALSE(definition.focus.empty());
        EXPECT_GE(wordCount(definition.notes), 400u);
        ASSERT_GE(definition.authoredTopics.size(), 3u);
        for (const auto& topic : definition.authoredTopics) {
            EXPECT_FALSE(topic.summary.empty()) << topic.title;
            ASSERT_FALSE(topic.subTopics.empty()) << topic.title;
            for (const auto& subTopic : topic.subTopics) {
                EXPECT_FALSE(subTopic.summary.empty()) << subTopic.title;
                ASSERT_FALSE(subTopic.scriptures.empty()) << subTopic.title;
                for (const auto& scripture : subTopic.scriptures) {
                    EXPECT_TRUE(quillon::scripture::parse(scripture.reference)) << scripture.reference;
                    EXPECT_FALSE(scripture.insight.empty()) << scripture.reference;
                }
            }
        }
        for (const auto& reference : definition.scriptures)
            EXPECT_TRUE(quillon::scripture::resolveBook(reference.bookName)) << reference.bookName;
    }
}

TEST(SampleSermons, buildKeepsFixedIdentitiesAndTheWholeOutline) {
    const DateTime now{std::chrono::seconds{1'741'530'600}};
    const auto sermons = quillon::store::buildSampleSermons(now);
    const auto again = quillon::store::buildSampleSermons(now + std::chrono::hours{24});
    const auto& definitions = quillon::store::sampleSermonDefinitions();
    ASSERT_EQ(sermons.size(), definitions.size());

    std::set<quillon::model::Uuid> identities;
    for (std::size_t index = 0; index < sermons.size(); ++index) {
        const auto& sermon = sermons[index];
        const auto& definition = definitions[index];
        SCOPED_TRACE(sermon.title);
        EXPECT_EQ(sermon.id.text(), definition.id);
        EXPECT_TRUE(quillon::store::isSampleSermon(sermon.id));
        EXPECT_TRUE(sermon.tags.empty());
        EXPECT_EQ(sermon.createdAt, now);
        EXPECT_EQ(sermon.modifiedAt, now);
        identities.insert(sermon.id);
        ASSERT_EQ(sermon.topics.size(), definition.authoredTopics.size());
        for (std::size_t t = 0; t < sermon.topics.size(); ++t) {
            const auto& topic = sermon.topics[t];
            EXPECT_EQ(topic.sortOrder, static_cast<int>(t));
            EXPECT_EQ(topic.id, again[index].topics[t].id);
            identities.insert(topic.id);
            for (std::size_t s = 0; s < topic.subTopics.size(); ++s) {
                const auto& subTopic = topic.subTopics[s];
                const auto& authored = definition.authoredTopics[t].subTopics[s];
                EXPECT_EQ(subTopic.sortOrder, static_cast<int>(s));
                EXPECT_TRUE(subTopic.details.starts_with(authored.summary));
                // Every insight travels with its sub-point.
                for (const auto& scripture : authored.scriptures)
                    EXPECT_NE(subTopic.details.find(scripture.insight), std::string::npos);
                ASSERT_EQ(subTopic.scriptures.size(), authored.scriptures.size());
                identities.insert(subTopic.id);
                for (std::size_t r = 0; r < subTopic.scriptures.size(); ++r) {
                    const auto& scripture = subTopic.scriptures[r];
                    EXPECT_EQ(scripture.sortOrder, static_cast<int>(r));
                    EXPECT_LE(scripture.startVerse, scripture.endVerse);
                    EXPECT_GE(scripture.chapter, 1);
                    identities.insert(scripture.id);
                }
            }
        }
    }
    EXPECT_FALSE(quillon::store::isSampleSermon(quillon::model::Uuid::random()));
    // Spot-check one parsed reference against the text it came from.
    const auto& psalm = sermons[1].topics[1].subTopics[0].scriptures[0];
    EXPECT_EQ(psalm.bookName, "Psalms");
    EXPECT_EQ(psalm.chapter, 23);
    EXPECT_EQ(psalm.startVerse, 4);
    EXPECT_EQ(psalm.endVerse, 4);
    std::size_t nodes = 0;
    for (const auto& sermon : sermons)
        for (const auto& topic : sermon.topics) {
            ++nodes;
            for (const auto& subTopic : topic.subTopics)
                nodes += 1 + subTopic.scriptures.size();
        }
    EXPECT_EQ(identities.size(), nodes + sermons.size());
}

TEST(SampleSermons, aDefinitionWithoutAuthoredTopicsStillGivesAnOutline) {
    SampleSermonDefinition definition;
    definition.title = "Sketch";
    definition.focus = "One line";
    definition.topics = {"First", "Second"};
    definition.subtopicAngles = {"Why", "How"};
    definition.scriptures = {{"John", 3, 16, 17}};
    const auto sermon = quillon::store::buildSampleSermon(definition, DateTime{});
    ASSERT_EQ(sermon.topics.size(), 2u);
    ASSERT_EQ(sermon.topics[1].subTopics.size(), 2u);
    ASSERT_EQ(sermon.topics[1].subTopics[1].scriptures.size(), 1u);
    EXPECT_EQ(sermon.topics[1].subTopics[1].scriptures[0].endVerse, 17);
}

/// Starts libraries that share one set of preferences, seeding the samples as the program does.
struct Seeding {
    std::unique_ptr<SermonNotesManager> start(SermonStorage& storage) {
        auto manager = std::make_unique<SermonNotesManager>(storage, preferences, clock);
        manager->load();
        manager->seedSampleSermons();
        return manager;
    }
    quillon::testing::TemporaryFolder root;
    quillon::testing::FakeClock clock;
    quillon::platform::Preferences preferences = quillon::platform::Preferences::inMemory();
    const std::vector<SampleSermonDefinition>& definitions = quillon::store::sampleSermonDefinitions();
};

TEST(SampleSermons, seedingAddsEachSampleOnceAndHonoursTheHiddenFlag) {
    Seeding seeding;
    auto& root = seeding.root;
    const auto& definitions = seeding.definitions;
    auto storage = SermonStorage::atRoot(root.path());
    auto start = [&] { return seeding.start(storage); };

    auto first = start();
    EXPECT_EQ(first->sermons().size(), definitions.size());
    EXPECT_EQ(first->lastSyncStatus(), "Loaded sample sermons");
    EXPECT_EQ(first->currentSermonId()->text(), definitions.front().id);

    // A second start finds them on disk and adds nothing; one the user removed stays removed.
    const auto removed = *quillon::model::Uuid::parse(definitions.back().id);
    first->remove(removed);
    std::filesystem::remove(storage.sermonFile(removed));
    auto second = start();
    EXPECT_EQ(second->sermons().size(), definitions.size() - 1);
    EXPECT_EQ(second->sermon(removed), nullptr);

    second->hideSampleSermons();
    EXPECT_EQ(second->hiddenSermonIds().size(), definitions.size() - 1);
    std::filesystem::remove_all(root / "Sermons");
    auto hidden = start();
    EXPECT_TRUE(hidden->sermons().empty());
    EXPECT_EQ(hidden->lastSyncStatus(), "Updated sample sermons");

    hidden->showSampleSermons();
    EXPECT_EQ(hidden->sermons().size(), definitions.size());
    EXPECT_TRUE(hidden->hiddenSermonIds().empty());
}

TEST(SampleSermons, everyLibraryKeepsItsOwnRecordOfTheSamplesItWasGiven) {
    Seeding seeding;
    auto& root = seeding.root;
    auto& preferences = seeding.preferences;
    const auto& definitions = seeding.definitions;
    auto start = [&](SermonStorage& storage) { return seeding.start(storage); };

    auto firstStorage = SermonStorage::atRoot(root / "first");
    auto first = start(firstStorage);
    const auto removed = *quillon::model::Uuid::parse(definitions.back().id);
    first->remove(removed);
    std::filesystem::remove(firstStorage.sermonFile(removed));

    // Another library with the same preferences (another --library, or the sync folder after the
    // local one) gets every sample, and the sample deleted in the first stays deleted there.
    auto secondStorage = SermonStorage::atRoot(root / "second");
    EXPECT_EQ(start(secondStorage)->sermons().size(), definitions.size());
    EXPECT_EQ(start(firstStorage)->sermons().size(), definitions.size() - 1);
    EXPECT_TRUE(std::filesystem::exists(root / "second" / "Seeded Samples.json"));
    EXPECT_FALSE(preferences.value(SermonNotesManager::sampleSermonsSeededKey));

    // The list earlier versions kept in the preferences belongs to the library that holds
    // sermons; a new, empty library still gets its samples, and the old key is retired.
    auto earlier = SermonStorage::atRoot(root / "earlier");
    quillon::model::SermonNote own;
    own.id = quillon::model::Uuid::random();
    own.title = "My own";
    earlier.saveSermon(own);
    nlohmann::json legacy = nlohmann::json::array();
    for (const auto& definition : definitions)
        legacy.push_back(definition.id);
    preferences.set(SermonNotesManager::sampleSermonsSeededKey, legacy);
    EXPECT_EQ(start(earlier)->sermons().size(), 1u);
    EXPECT_FALSE(preferences.value(SermonNotesManager::sampleSermonsSeededKey));
    preferences.set(SermonNotesManager::sampleSermonsSeededKey, legacy);
    auto fresh = SermonStorage::atRoot(root / "fresh");
    EXPECT_EQ(start(fresh)->sermons().size(), definitions.size());

    // A record that cannot be read is no reason to lose the library's samples.
    std::filesystem::create_directories(root / "broken");
    std::ofstream(root / "broken" / "Seeded Samples.json") << "{ not json";
    auto broken = SermonStorage::atRoot(root / "broken");
    EXPECT_EQ(start(broken)->sermons().size(), definitions.size());
}

} // namespace
