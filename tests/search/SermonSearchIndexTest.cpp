#include "search/SermonSearchIndex.h"

#include "orvane/QueryCorrection.h"

#include <gtest/gtest.h>

#include <chrono>

using namespace std::string_literals;

namespace quillon::search {
namespace {

using namespace std::chrono_literals;

model::SermonNote sermon(std::string title, std::string notes, std::vector<std::string> tags = {}) {
    model::SermonNote note;
    note.id = model::Uuid::random();
    note.title = std::move(title);
    note.notes = std::move(notes);
    note.tags = std::move(tags);
    note.modifiedAt = model::DateTime{1'700'000'000s};
    return note;
}

model::SermonScripture scripture(std::string book, int chapter, int start, int end) {
    model::SermonScripture passage;
    passage.bookName = std::move(book);
    passage.chapter = chapter;
    passage.startVerse = start;
    passage.endVerse = end;
    return passage;
}

std::vector<std::string> hitIDs(const orvane::CorrectedSearch& search) {
    std::vector<std::string> ids;
    for (const auto& hit : search.hits)
        ids.push_back(hit.documentID);
    return ids;
}

TEST(SermonSearchIndex, documentTextJoinsTheOutlineInOrderWithoutEmptyPieces) {
    auto note = sermon("The Vine", "Abide in me", {"discipleship", "", "john"});
    model::SermonTopic first;
    first.title = "The true vine";
    first.details = "";
    model::SermonSubTopic fruit;
    fruit.title = "";
    fruit.details = "Fruit that lasts";
    fruit.scriptures = {scripture("John", 15, 1, 8), scripture("Galatians", 5, 22, 22)};
    first.subTopics = {fruit};
    model::SermonTopic second;
    second.title = "Pruning";
    second.details = "Pain with purpose";
    note.topics = {first, second};

    const auto document = SermonSearchIndex::document(note);
    EXPECT_EQ(document.id, note.id.text());
    EXPECT_EQ(document.title, "The Vine");
    EXPECT_EQ(document.text, "Abide in me. The true vine. Fruit that lasts. John 15:1-8. Galatians 5:22. "
                             "Pruning. Pain with purpose. discipleship. john");

    const auto empty = SermonSearchIndex::document(sermon("Only a title", ""));
    EXPECT_EQ(empty.text, "");
}

TEST(SermonSearchIndex, findsSermonsByTitleOutlineAndTags) {
    auto bare = sermon("Shepherd Psalm", "");
    auto tagged = sermon("Waiting", "Candles and carols", {"Advent"});
    auto outlined = sermon("Streams", "");
    model::SermonTopic topic;
    topic.title = "Living water";
    outlined.topics = {topic};
    const std::vector<model::SermonNote> library{bare, tagged, outlined};

    SermonSearchIndex index;
    index.refresh(library);
    EXPECT_EQ(hitIDs(index.search("shepherd", 10)), std::vector<std::string>{bare.id.text()});
    EXPECT_EQ(hitIDs(index.search("advent", 10)), std::vector<std::string>{tagged.id.text()});
    EXPECT_EQ(hitIDs(index.search("water", 10)), std::vector<std::string>{outlined.id.text()});

    const auto corrected = index.search("shepherdd", 10);
    EXPECT_EQ(hitIDs(corrected), std::vector<std::string>{bare.id.text()});
    EXPECT_EQ(orvane::QueryCorrection::bannerText(corrected.corrections), "Showing results for shepherd");
}

TEST(SermonSearchIndex, refreshDoesNoIndexWorkWhenNothingChanged) {
    std::vector<model::SermonNote> library{sermon("Grace", "unearned favour"), sermon("Faith", "assurance")};
    SermonSearchIndex index;
    index.refresh(library);
    const auto operations = index.indexOperationCount();
    const auto work = index.index().indexedDocumentWork();
    EXPECT_EQ(work, 2u);

    index.refresh(library);
    index.refresh(std::vector<model::SermonNote>(library));
    EXPECT_EQ(index.indexOperationCount(), operations);
    EXPECT_EQ(index.index().indexedDocumentWork(), work);
}

TEST(SermonSearchIndex, aChangedSermonIsReindexedAndADeletedOneDisappears) {
    std::vector<model::SermonNote> library{sermon("Grace", "unearned favour"), sermon("Faith", "assurance"),
                                           sermon("Hope", "anchor")};
    SermonSearchIndex index;
    index.refresh(library);

    library[0].notes = "amazing love";
    library[0].modifiedAt += 5s;
    index.refresh(library);
    EXPECT_TRUE(index.search("unearned", 10).hits.empty());
    EXPECT_EQ(hitIDs(index.search("amazing", 10)), std::vector<std::string>{library[0].id.text()});
    // The other two documents were offered again but not re-tokenised.
    EXPECT_EQ(index.index().indexedDocumentWork(), 4u);

    // A new date alone is enough to run the refresh; the unchanged text costs no tokenising.
    const auto operations = index.indexOperationCount();
    library[1].modifiedAt += 1s;
    index.refresh(library);
    EXPECT_GT(index.indexOperationCount(), operations);
    EXPECT_EQ(index.index().indexedDocumentWork(), 4u);

    library.erase(library.begin() + 2);
    index.refresh(library);
    EXPECT_TRUE(index.search("anchor", 10).hits.empty());
    EXPECT_EQ(index.index().documentCount(), 2u);

    // Emptying the library walks the smaller (new) set and removes everything.
    index.refresh({});
    EXPECT_EQ(index.index().documentCount(), 0u);
    EXPECT_TRUE(index.search("amazing", 10).hits.empty());
}

TEST(SermonSearchIndex, fingerprintFollowsIdsDatesAndLibraryOrder) {
    const std::vector<model::SermonNote> library{sermon("A", ""), sermon("B", "")};
    const auto base = SermonSearchIndex::fingerprint(library);
    EXPECT_EQ(SermonSearchIndex::fingerprint(library), base);

    auto later = library;
    later[1].modifiedAt += 1s;
    auto reordered = std::vector<model::SermonNote>{library[1], library[0]};
    auto shorter = std::vector<model::SermonNote>{library[0]};
    // Content is not part of the fingerprint: edits always move modifiedAt.
    auto retitled = library;
    retitled[0].title = "Other";
    EXPECT_NE(SermonSearchIndex::fingerprint(later), base);
    EXPECT_NE(SermonSearchIndex::fingerprint(reordered), base);
    EXPECT_NE(SermonSearchIndex::fingerprint(shorter), base);
    EXPECT_EQ(SermonSearchIndex::fingerprint(retitled), base);
}

TEST(SermonSearchIndex, brokenTextNeitherBreaksIndexingNorSearching) {
    auto broken = sermon("Grace \xff\xfe", "Mercy \xc3 endures\0 forever"s, {"\xe2\x82"});
    auto emptyTitle = sermon("", "");
    const std::vector<model::SermonNote> library{broken, emptyTitle};
    SermonSearchIndex index;
    index.refresh(library);
    EXPECT_EQ(hitIDs(index.search("endures", 10)), std::vector<std::string>{broken.id.text()});
    EXPECT_EQ(hitIDs(index.search("grace", 10)), std::vector<std::string>{broken.id.text()});
    for (const char* query : {"\xff", "\xc3", "", "...", "\xe2\x82"})
        EXPECT_TRUE(index.search(query, 10).hits.empty()) << query;
}

} // namespace
} // namespace quillon::search
