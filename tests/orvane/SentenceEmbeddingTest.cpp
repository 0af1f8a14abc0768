#include "orvane/SentenceEmbedding.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace orvane {
namespace {

/// Answers from a fixed table and records which sentences it was asked about.
class TableProvider : public SentenceEmbedding::Provider {
public:
    explicit TableProvider(std::map<std::string, std::vector<double>> table) : m_table(std::move(table)) {}
    std::optional<std::vector<double>> vector(std::string_view sentence) override {
        asked.emplace_back(sentence);
        const auto found = m_table.find(std::string(sentence));
        if (found == m_table.end())
            return std::nullopt;
        return found->second;
    }
    std::vector<std::string> asked;

private:
    std::map<std::string, std::vector<double>> m_table;
};

TEST(SentenceEmbedding, averagesTheVectorsOfTrimmedSentencesThatHaveOne) {
    auto provider = std::make_shared<TableProvider>(std::map<std::string, std::vector<double>>{
        {"Grace abounds.", {1, 0, 4}},
        {"Faith endures!", {3, 2, 0}},
    });
    const SentenceEmbedding embedding(provider);
    const auto vector = embedding.vector("  Grace abounds.\n\nFaith endures!  Nobody knows this one.  ");
    ASSERT_TRUE(vector);
    // The unknown sentence is skipped, so the mean is over two sentences, not three.
    EXPECT_EQ(*vector, (std::vector<double>{2, 1, 2}));
    EXPECT_EQ(provider->asked,
              (std::vector<std::string>{"Grace abounds.", "Faith endures!", "Nobody knows this one."}));
    EXPECT_EQ(embedding.match(), SearchHit::Match::sentence);
}

TEST(SentenceEmbedding, addsVectorsOfDifferentLengthOverTheFirstVectorsShape) {
    auto provider = std::make_shared<TableProvider>(std::map<std::string, std::vector<double>>{
        {"Long one.", {2, 2, 2}},
        {"Short one.", {4}},
    });
    const auto vector = SentenceEmbedding(provider).vector("Long one. Short one.");
    ASSERT_TRUE(vector);
    EXPECT_EQ(*vector, (std::vector<double>{3, 1, 1}));
}

TEST(SentenceEmbedding, givesNothingWithoutAProviderOrWithoutAnyVector) {
    EXPECT_FALSE(SentenceEmbedding(nullptr).vector("Grace abounds."));
    auto provider = std::make_shared<TableProvider>(std::map<std::string, std::vector<double>>{});
    const SentenceEmbedding embedding(provider);
    EXPECT_FALSE(embedding.vector("Nothing known here."));
    EXPECT_FALSE(embedding.vector("   \n  "));
    // This platform has no built-in sentence embedding; indexes fall back to lexical ranking.
    EXPECT_EQ(SentenceEmbedding::english(), nullptr);
}

} // namespace
} // namespace orvane
