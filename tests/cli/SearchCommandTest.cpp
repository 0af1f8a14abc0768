#include "cli/LibraryRun.h"

#include "model/SermonCoding.h"
#include "platform/Preferences.h"
#include "support/LogCapture.h"
#include "support/SermonFixtures.h"
#include "support/StubModelServer.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>
#include <sstream>

namespace quillon::cli {
namespace {

/// The results are exact, so the sample sermons stay out of the library.
class SearchCommandTest : public testing::LibraryRun {
protected:
    SearchCommandTest() {
        auto forgiving = testing::makeSermon("Seventy Times Seven");
        forgiving.series = "Matthew";
        forgiving.notes = "Peter asked how often to forgive. Forgiveness has no ledger.";
        forgiving.tags = {"discipleship"};
        auto tender = testing::makeSermon("Tender Mercies");
        tender.notes = "His mercy is new every morning.";
        tender.tags = {};
        for (const auto& sermon : {forgiving, tender})
            put(sermon);
        m_forgiving = forgiving.id.text();
        m_tender = tender.id.text();
    }

    std::string m_forgiving;
    std::string m_tender;
};

TEST_F(SearchCommandTest, printsOneLinePerHitWithScoreTitleSubtitleAndSnippet) {
    const auto result = run({"search", "forgiveness", "ledger"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "1.00  Seventy Times Seven  —  Matthew · March 16, 2025  —  Forgiveness has no ledger.\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(run({"search", "zzzzqqq"}).out, "No sermons match “zzzzqqq”.\n");
}

TEST_F(SearchCommandTest, showsTheNoticeWhenTheQueryWasCorrected) {
    const auto result = run({"search", "forgivness"});
    EXPECT_EQ(result.status, 0);
    // Both the correction and its synonym "mercy" find a sermon; equal scores list in id order.
    const auto lines = result.out.substr(0, result.out.find('\n'));
    EXPECT_EQ(lines, "Showing results for forgiveness");
    EXPECT_NE(result.out.find("Seventy Times Seven"), std::string::npos);
    EXPECT_NE(result.out.find("Tender Mercies"), std::string::npos);
    const auto limited = run({"search", "forgivness", "--limit", "1"}).out;
    EXPECT_EQ(std::count(limited.begin(), limited.end(), '\n'), 2) << limited;
}

TEST_F(SearchCommandTest, searchesTheChosenGroupsAndListsThemInOrder) {
    const auto both = run({"search", "--in", "sermons, scripture", "--limit", "1", "mercy"});
    EXPECT_EQ(both.status, 0);
    EXPECT_EQ(both.out.substr(0, both.out.find('\n')), "Scripture"); // the fixed order, not the order named
    EXPECT_NE(both.out.find("\nSermons\n  Tender Mercies  —  His mercy is new every morning.\n"), std::string::npos)
        << both.out;
    const auto verse = run({"--json", "search", "--in", "scripture", "John 3:16"});
    const auto json = nlohmann::json::parse(verse.out);
    ASSERT_EQ(json["groups"].size(), 1u);
    EXPECT_EQ(json["groups"][0]["group"], "scripture");
    EXPECT_EQ(json["groups"][0]["hits"][0]["title"], "John 3:16 (KJV)");
    EXPECT_EQ(run({"search", "--in", "sermons", "zzzzqqq"}).out, "Nothing matches “zzzzqqq”.\n");
    const auto unknown = run({"search", "--in", "psalters", "grace"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_NE(unknown.err.find("Quillon does not know the search group “psalters”."), std::string::npos);
}

TEST_F(SearchCommandTest, jsonCarriesHitsAndCorrections) {
    const auto result = run({"--json", "search", "forgivness"});
    ASSERT_EQ(result.status, 0) << result.err;
    const auto json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["query"], "forgivness");
    EXPECT_EQ(json["banner"], "Showing results for forgiveness");
    EXPECT_EQ(json["corrections"],
              nlohmann::json::parse(R"([{"typed":"forgivness","used":"forgiveness","kind":"spelling"}])"));
    ASSERT_EQ(json["hits"].size(), 2u);
    const auto& first = json["hits"][0];
    EXPECT_EQ(first["id"], std::min(m_forgiving, m_tender));
    EXPECT_EQ(first["match"], "lexical");
    EXPECT_TRUE(first.contains("subtitle") && first.contains("snippet") && first.contains("matchTier"));

    const auto typed = nlohmann::json::parse(run({"--json", "search", "tender"}).out);
    EXPECT_TRUE(typed["banner"].is_null());
    EXPECT_TRUE(typed["corrections"].empty());
    EXPECT_EQ(typed["hits"][0]["matchTier"], "title");
}

TEST_F(SearchCommandTest, rejectsAMissingQueryAndANonPositiveLimit) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"search"}, {"search", "grace", "--limit", "0"}, {"search", "grace", "--limit", "many"}}) {
        const auto result = run(arguments);
        EXPECT_EQ(result.status, 1) << arguments.size();
        EXPECT_FALSE(result.err.empty());
    }
}

TEST_F(SearchCommandTest, rankByTheModelServersEmbeddingsOnlyWhenTurnedOnAndAnswering) {
    testing::StubModelServer server;
    platform::Preferences preferences(folder / "config" / "Quillon" / "preferences.json");
    preferences.set("Quillon.intelligence.endpoint", server.endpoint());
    auto matches = [this] {
        std::set<std::string> kinds;
        const auto json = nlohmann::json::parse(run({"--json", "search", "forgiveness"}).out);
        for (const auto& hit : json["hits"])
            kinds.insert(hit["match"].get<std::string>());
        return kinds;
    };
    auto embeddingRequests = [&server] {
        const auto requests = server.requests();
        return std::count_if(requests.begin(), requests.end(),
                             [](const auto& request) { return request.target == "/v1/embeddings"; });
    };

    EXPECT_EQ(matches(), std::set<std::string>{"lexical"});
    EXPECT_EQ(embeddingRequests(), 0) << "embeddings are off by default";

    preferences.set("Quillon.intelligence.embeddings", true);
    EXPECT_EQ(matches(), std::set<std::string>{"contextual"});
    // A probe, both sermons in one request, and the query.
    EXPECT_EQ(embeddingRequests(), 3);

    // The server is gone: one log line, and the search still answers, lexically, exactly as before.
    preferences.set("Quillon.intelligence.endpoint", "http://127.0.0.1:1/v1");
    testing::LogCapture log;
    const auto result = run({"search", "forgiveness", "ledger"});
    EXPECT_EQ(result.out, "1.00  Seventy Times Seven  —  Matthew · March 16, 2025  —  Forgiveness has no ledger.\n");
    const auto lines = log.lines();
    EXPECT_EQ(
        std::count_if(lines.begin(), lines.end(),
                      [](const std::string& line) { return line.find("gave no embeddings") != std::string::npos; }),
        1)
        << ::testing::PrintToString(lines);

    // A server that answers embeddings with an error counts as not answering.
    preferences.set("Quillon.intelligence.endpoint", server.endpoint());
    server.setEmbeddingsBehaviour(testing::StubModelServer::Behaviour::statusCode(500, "{}"));
    EXPECT_EQ(matches(), std::set<std::string>{"lexical"});
}

} // namespace
} // namespace quillon::cli
