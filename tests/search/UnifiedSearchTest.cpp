#include "search/UnifiedSearch.h"

#include "scripture/BibleLoader.h"
#include "search/SermonSearchIndex.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>

namespace quillon::search {
namespace {

ReferenceWorkHit note(std::string id, std::string heading) {
    return ReferenceWorkHit{std::move(id), "Matthew Henry's Concise Commentary", std::move(heading),
                            "The love of God…"};
}

/// A source that answers every query with the given hits.
UnifiedSearch::Source answering(std::vector<SearchHit> hits) {
    return [hits = std::move(hits)](std::string_view, std::size_t) { return hits; };
}

std::vector<SearchGroup> groupsOf(const std::vector<SearchResultGroup>& results) {
    std::vector<SearchGroup> groups;
    for (const auto& result : results)
        groups.push_back(result.group);
    return groups;
}

} // namespace

TEST(UnifiedSearch, listsTheFocusedGroupsThatFoundSomethingInTheFixedOrder) {
    UnifiedSearch search;
    search.setSource(SearchGroup::historical, answering({SearchHit::historical(note("h1", "Nicaea"))}));
    search.setSource(SearchGroup::commentaries, answering({SearchHit::commentary(note("c1", "Romans 8:28-31"))}));
    search.setSource(SearchGroup::dictionaries, answering({}));
    search.setSource(SearchGroup::sermons, [](std::string_view, std::size_t) -> std::vector<SearchHit> {
        throw std::runtime_error("the index is gone");
    });

    EXPECT_EQ(groupsOf(search.search("grace")), (std::vector{SearchGroup::commentaries, SearchGroup::historical}));
    const std::vector<SearchGroup> focus = {SearchGroup::historical, SearchGroup::sermons};
    EXPECT_EQ(groupsOf(search.search("grace", focus)), (std::vector{SearchGroup::historical}));
    EXPECT_TRUE(search.search("grace", allSearchGroups, 0).empty());
    EXPECT_FALSE(search.hasSource(SearchGroup::scripture));
    search.setSource(SearchGroup::historical, nullptr);
    EXPECT_FALSE(search.hasSource(SearchGroup::historical));
}

TEST(UnifiedSearch, keepsEachGroupToItsOwnHitsItsLimitAndUniqueIds) {
    UnifiedSearch search;
    // A source that files a hit under another group, repeats an id and returns too many.
    search.setSource(SearchGroup::commentaries,
                     answering({SearchHit::commentary(note("c1", "a")), SearchHit::dictionary(note("d1", "b")),
                                SearchHit::commentary(note("c1", "again")), SearchHit::commentary(note("c2", "c")),
                                SearchHit::commentary(note("c3", "d"))}));
    auto results = search.search("grace", allSearchGroups, 2);
    ASSERT_EQ(results.size(), 1u);
    ASSERT_EQ(results[0].hits.size(), 2u);
    EXPECT_EQ(results[0].hits[0].id(), "c1");
    EXPECT_EQ(results[0].hits[1].id(), "c2");
    EXPECT_EQ(results[0].hits[0].title(), "Matthew Henry's Concise Commentary — a");
    EXPECT_EQ(rawValue(results[0].hits[0].kind()), "commentary");
}

TEST(UnifiedSearch, theBibleAndSermonSourcesAnswerFromTheirOwnIndexes) {
    testing::TemporaryFolder folder;
    folder.write("KJV.txt", "Joh 3:16|For God so loved the world\nJoh 3:17|For God sent not his Son\n");
    auto loader = std::make_shared<scripture::BibleLoader>(scripture::BibleResourceBundle({folder.path()}));

    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = "Loved by God";
    sermon.notes = "God so loved the world that he gave.";
    sermon.modifiedAt = model::DateTime{std::chrono::seconds{1'700'000'000}};
    auto index = std::make_shared<SermonSearchIndex>();
    std::vector<model::SermonNote> library = {sermon};
    index->refresh(library);

    UnifiedSearch search;
    search.setSource(SearchGroup::scripture, UnifiedSearch::bibleSource(loader));
    search.setSource(SearchGroup::sermons, UnifiedSearch::sermonSource(index, [&](const model::Uuid& id) {
                         return id == sermon.id ? &library[0] : nullptr;
                     }));

    auto byReference = search.search("John 3:16");
    ASSERT_EQ(groupsOf(byReference), (std::vector{SearchGroup::scripture}));
    EXPECT_EQ(byReference[0].hits[0].title(), "John 3:16 (KJV)");
    EXPECT_EQ(byReference[0].hits[0].verse()->id, "KJV-Joh 3:16");

    auto byWords = search.search("loved");
    ASSERT_EQ(groupsOf(byWords), (std::vector{SearchGroup::scripture, SearchGroup::sermons}));
    EXPECT_EQ(byWords[1].hits[0].sermonHit()->sermonID, sermon.id);
    EXPECT_EQ(byWords[1].hits[0].title(), "Loved by God");
}

TEST(SearchGroup, readsItsRawValuesBack) {
    for (SearchGroup group : allSearchGroups)
        EXPECT_EQ(searchGroupFromRawValue(rawValue(group)), group);
    EXPECT_EQ(searchGroupFromRawValue("Sermons"), SearchGroup::sermons);
    EXPECT_FALSE(searchGroupFromRawValue("sermon").has_value());
}

} // namespace quillon::search
