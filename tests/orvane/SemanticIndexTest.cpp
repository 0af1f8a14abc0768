#include "orvane/SemanticIndex.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <thread>

namespace orvane {
namespace {

/// A tiny deterministic embedding: "light" points along +x, "dark" along −x and "water" along +y. A text without any
/// of these words has no vector.
class CompassEmbedding : public TextEmbedding {
public:
    SearchHit::Match match() const override { return SearchHit::Match::sentence; }
    std::optional<std::vector<double>> vector(std::string_view text) const override {
        std::vector<double> v{0, 0};
        bool any = false;
        for (std::size_t at = 0; at < text.size();) {
            const auto end = std::min(text.find_first_of(" .,", at), text.size());
            const auto word = text.substr(at, end - at);
            if (word == "light" || word == "dark" || word == "water") {
                any = true;
                (word == "water" ? v[1] : v[0]) += word == "dark" ? -1 : 1;
            }
            at = end + 1;
        }
        return any ? std::optional(v) : std::nullopt;
    }
};

std::vector<std::string> ids(const std::vector<SearchHit>& hits) {
    std::vector<std::string> result;
    for (const auto& hit : hits)
        result.push_back(hit.documentID);
    return result;
}

TEST(SemanticIndex, lexicalSearchReturnsOnlyDocumentsSharingATermInScoreThenIdOrder) {
    SemanticIndex index(nullptr, 0.55);
    index.upsert({
        {"c", "Grace", "grace and peace"},
        {"b", "Grace", "grace and peace"},
        {"a", "Grace", "grace and peace"},
        {"d", "Peace", "peace only"},
        {"e", "Hope", "nothing shared here"},
    });
    const auto hits = index.search("grace peace", 10);
    EXPECT_EQ(ids(hits), (std::vector<std::string>{"a", "b", "c", "d"}));
    EXPECT_DOUBLE_EQ(hits[0].score, 1.0);
    EXPECT_EQ(hits[0].title, "Grace");
    EXPECT_EQ(hits[0].match, SearchHit::Match::lexical);
    EXPECT_LT(hits[3].score, 1.0);
    EXPECT_GT(hits[3].score, 0.0);

    EXPECT_EQ(ids(index.search("grace", 2)), (std::vector<std::string>{"a", "b"}));
    for (const char* nothing : {"", "   \n", "the and", "unrelated"})
        EXPECT_TRUE(index.search(nothing, 10).empty()) << nothing;
    for (int limit : {0, -1})
        EXPECT_TRUE(index.search("grace", limit).empty()) << limit;
    EXPECT_TRUE(SemanticIndex(nullptr, 0.55).search("grace", 10).empty());
}

TEST(SemanticIndex, rareTermsOutrankCommonOnes) {
    SemanticIndex index(nullptr, 0.55);
    index.upsert({{"1", "Common", "faith"}, {"2", "Also", "faith"}, {"3", "Rare", "grace"}, {"4", "More", "faith"}});
    const auto hits = index.search("faith grace", 10);
    ASSERT_EQ(hits.size(), 4u);
    EXPECT_EQ(hits[0].documentID, "3");
}

TEST(SemanticIndex, upsertReplacesChangedDocumentsAndSkipsUnchangedOnes) {
    SemanticIndex index(nullptr, 0.55);
    index.upsert({{"1", "Advent", "waiting in hope"}, {"2", "Lent", "fasting"}});
    EXPECT_EQ(index.indexedDocumentWork(), 2u);

    index.upsert({{"1", "Advent", "waiting in hope"}, {"2", "Lent", "fasting"}});
    EXPECT_EQ(index.indexedDocumentWork(), 2u);

    index.upsert({{"2", "Lent", "prayer"}});
    EXPECT_EQ(index.indexedDocumentWork(), 3u);
    EXPECT_EQ(index.documentCount(), 2u);
    EXPECT_TRUE(index.search("fasting", 10).empty());
    EXPECT_EQ(ids(index.search("prayer", 10)), std::vector<std::string>{"2"});
    // The replaced document's old words have left the vocabulary, so they cannot be offered as corrections.
    EXPECT_TRUE(index.correctedSearch("fastingg", 10).corrections.empty());
}

TEST(SemanticIndex, removeDropsDocumentsAndTheirVocabulary) {
    SemanticIndex index(nullptr, 0.55);
    index.upsert({{"1", "Advent", "waiting"}, {"2", "Lent", "fasting"}, {"3", "Easter", "resurrection"}});
    index.remove({"2", "unknown", "2"});
    EXPECT_EQ(index.documentCount(), 2u);
    EXPECT_TRUE(index.search("fasting lent", 10).empty());
    EXPECT_EQ(ids(index.search("waiting resurrection", 10)), (std::vector<std::string>{"1", "3"}));
    EXPECT_TRUE(index.correctedSearch("fastng", 10).corrections.empty());
    // Ids still resolve to the right documents after the list was compacted.
    index.upsert({{"3", "Easter", "empty tomb"}});
    EXPECT_EQ(index.documentCount(), 2u);
    EXPECT_EQ(ids(index.search("tomb", 10)), std::vector<std::string>{"3"});
}

TEST(SemanticIndex, semanticPathMapsCosineAndFallsBackToLexicalWithoutVectors) {
    SemanticIndex index(std::make_shared<CompassEmbedding>(), 0.5);
    index.upsert({
        {"sun", "Sun", "light"},
        {"night", "Night", "dark"},
        {"sea", "Sea", "water"},
        {"dawn", "Dawn", "light water"},
        {"plain", "Plain", "grace abounds"},
    });

    const auto hits = index.search("light", 10);
    // "night" (cosine −1, score 0) and "sea" (orthogonal: exactly 0.5, not above the minimum) are no hits, and
    // "plain" has no vector and does not hold "light".
    ASSERT_EQ(ids(hits), (std::vector<std::string>{"sun", "dawn"}));
    EXPECT_DOUBLE_EQ(hits[0].score, 1.0);
    EXPECT_EQ(hits[0].match, SearchHit::Match::sentence);
    EXPECT_NEAR(hits[1].score, (std::sqrt(0.5) + 1) / 2, 1e-12);

    // A document without a vector is ranked lexically beside the semantic hits.
    const auto mixed = index.search("light grace", 10);
    ASSERT_EQ(ids(mixed), (std::vector<std::string>{"sun", "dawn", "plain"}));
    EXPECT_EQ(mixed[2].match, SearchHit::Match::lexical);
    // "light" is held by two of five documents, "grace" by one: weights ln(3.5) and ln(6).
    EXPECT_DOUBLE_EQ(mixed[2].score, std::log(6.0) / (std::log(3.5) + std::log(6.0)));

    // A query without a vector makes the whole search lexical.
    const auto lexical = index.search("abounds", 10);
    ASSERT_EQ(ids(lexical), std::vector<std::string>{"plain"});
    EXPECT_EQ(lexical[0].match, SearchHit::Match::lexical);
}

/// Counts how the index asks for vectors: each batch's size, and single texts (the queries) apart.
class CountingEmbedding : public CompassEmbedding {
public:
    std::vector<std::optional<std::vector<double>>> vectors(const std::vector<std::string>& texts) const override {
        batches.push_back(texts.size());
        return CompassEmbedding::vectors(texts);
    }
    mutable std::vector<std::size_t> batches;
};

TEST(SemanticIndex, upsertEmbedsOnlyTheChangedDocumentsInOneBatch) {
    auto embedding = std::make_shared<CountingEmbedding>();
    SemanticIndex index(embedding, 0.5);
    index.upsert({{"sun", "Sun", "light"}, {"night", "Night", "dark"}, {"sea", "Sea", "water"}});
    index.upsert({{"sun", "Sun", "light"}, {"night", "Night", "dark water"}, {"sea", "Sea", "water"}});
    index.upsert({{"sun", "Sun", "light"}});
    // The same id twice in one batch: the later text is the one embedded and kept.
    index.upsert({{"dawn", "Dawn", "dark"}, {"dawn", "Dawn", "light"}});
    EXPECT_EQ(embedding->batches, (std::vector<std::size_t>{3, 1, 2}));
    EXPECT_EQ(ids(index.search("light", 10)), (std::vector<std::string>{"dawn", "sun"}));
    EXPECT_EQ(index.documentCount(), 4u);
}

TEST(SemanticIndex, correctedSearchRetriesWithTheCorrectionAndItsSynonyms) {
    SemanticIndex index(nullptr, 0.55);
    index.upsert({
        {"1", "Seventy times seven", "forgiveness of a brother"},
        {"2", "Tender", "mercy endures"},
        {"3", "Harvest", "the fields are white"},
    });

    const auto corrected = index.correctedSearch("forgivness", 10);
    EXPECT_EQ(ids(corrected.hits), (std::vector<std::string>{"1", "2"}));
    EXPECT_EQ(corrected.corrections,
              (std::vector<QueryCorrection>{{"forgivness", "forgiveness", QueryCorrection::Kind::spelling}}));
    EXPECT_EQ(QueryCorrection::bannerText(corrected.corrections), "Showing results for forgiveness");

    // Found as typed: no retry, no corrections, no synonyms.
    const auto typed = index.correctedSearch("forgiveness", 10);
    EXPECT_EQ(ids(typed.hits), std::vector<std::string>{"1"});
    EXPECT_TRUE(typed.corrections.empty());

    for (const auto& [query, limit] :
         std::vector<std::pair<std::string, int>>{{"zzzzqqq", 10}, {"", 10}, {"  ", 10}, {"forgivness", 0}}) {
        const auto nothing = index.correctedSearch(query, limit);
        EXPECT_TRUE(nothing.hits.empty()) << query;
        EXPECT_TRUE(nothing.corrections.empty()) << query;
    }
}

TEST(SemanticIndex, operationsFromSeveralThreadsKeepTheIndexConsistent) {
    SemanticIndex index(nullptr, 0.55);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&index, t] {
            for (int i = 0; i < 50; ++i) {
                const auto id = std::to_string(t) + "-" + std::to_string(i);
                index.upsert({{id, "Title", "shared words " + id}});
                (void)index.search("shared", 5);
                if (i % 2 == 0)
                    index.remove({id});
            }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(index.documentCount(), 100u);
    EXPECT_EQ(index.search("shared", 1000).size(), 100u);
}

} // namespace
} // namespace orvane
