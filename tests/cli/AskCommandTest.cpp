#include "cli/LibraryRun.h"

#include "intelligence/AskYourLibrary.h"
#include "platform/Preferences.h"
#include "support/StubModelServer.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <utility>
#include <vector>

namespace quillon::cli {
namespace {

using testing::StubModelServer;
using Behaviour = StubModelServer::Behaviour;

const std::string closedEndpoint = "http://127.0.0.1:1/v1";
const std::string unreachable = "Quillon could not reach the local model server at " + closedEndpoint + ".\n";

/// A library of only the sermons a test writes, with the model pointed at a port nothing listens on.
class AskCommandTest : public testing::LibraryRun {
protected:
    AskCommandTest() { usePreference("Quillon.intelligence.endpoint", closedEndpoint); }

    void usePreference(const std::string& key, nlohmann::json value) {
        platform::Preferences(folder / "config" / "Quillon" / "preferences.json").set(key, std::move(value));
    }
    void add(const std::string& title, const std::string& notes) {
        model::SermonNote sermon;
        sermon.id = model::Uuid::random();
        sermon.title = title;
        sermon.notes = notes;
        put(sermon);
    }
};

TEST_F(AskCommandTest, aTinyLibraryStillOffersTheSermonThatMatches) {
    // With one or two sermons every document holds the question's word, and the word must still weigh more than
    // nothing.
    struct Case {
        std::vector<std::pair<std::string, std::string>> sermons;
        std::string question;
        std::vector<std::string> offered;
        std::vector<std::string> notOffered;
    };
    const std::vector<Case> cases = {
        {{{"The greatest of these", "Love is patient, love is kind."}},
         "love",
         {"\nSermon \"The greatest of these\": Love is patient, love is kind.\n"},
         {}},
        {{{"The greatest of these", "Love is patient, love is kind."},
          {"Love one another", "A new command: love one another."},
          {"Daily bread", "Give us this day our daily bread."}},
         "love",
         {"\nSermon \"The greatest of these\": ", "\nSermon \"Love one another\": "},
         {"Daily bread"}},
        {{{"The greatest of these", "Grace came first. Love is patient, love is kind."}},
         "What have I taught about love?",
         // The matching sentence, not the opening one; and verses, although no verse holds every word of the question.
         {"\nSermon \"The greatest of these\": Love is patient, love is kind.\n", " (KJV): "},
         {}},
        {{{"Love", ""}}, "love", {"\nSermon \"Love\": "}, {}},
    };
    for (const Case& test : cases) {
        std::filesystem::remove_all(library());
        for (const auto& [title, notes] : test.sermons)
            add(title, notes);
        const auto asked = run({"ask", test.question});
        EXPECT_EQ(asked.status, 0) << asked.err;
        EXPECT_TRUE(asked.out.starts_with(std::string(intelligence::AskYourLibrary::unsummarised) + "\n" + unreachable))
            << asked.out;
        for (const std::string& text : test.offered)
            EXPECT_NE(asked.out.find(text), std::string::npos) << test.question << ":\n" << asked.out;
        for (const std::string& text : test.notOffered)
            EXPECT_EQ(asked.out.find(text), std::string::npos) << test.question << ":\n" << asked.out;
    }
}

TEST_F(AskCommandTest, versesAreNamedWithTheBooksFullName) {
    add("Brotherly love", "Taught of God to love one another.");
    const auto asked = run({"--json", "ask", "What have I taught about brotherly love?"});
    ASSERT_EQ(asked.status, 0) << asked.err;
    const auto json = nlohmann::json::parse(asked.out);
    ASSERT_FALSE(json["sources"].empty());
    for (const auto& source : json["sources"]) {
        const std::string line = source.get<std::string>();
        EXPECT_TRUE(line.starts_with("Sermon \"") || line.find(" (KJV): ") != std::string::npos) << line;
        EXPECT_FALSE(line.starts_with("1The ")) << line;
    }
}

TEST_F(AskCommandTest, nothingMatchingSaysSoWithoutAskingTheModel) {
    StubModelServer server;
    usePreference("Quillon.intelligence.endpoint", server.endpoint());
    add("The greatest of these", "Love is patient, love is kind.");
    EXPECT_EQ(run({"ask", "zzqxv"}).out, std::string(intelligence::AskYourLibrary::nothingMatches) + "\n");
    EXPECT_TRUE(server.chatMessages().empty());
}

TEST_F(AskCommandTest, aModelThatFindsNoAnswerLeavesTheSourcesUnsummarised) {
    StubModelServer server;
    usePreference("Quillon.intelligence.endpoint", server.endpoint());
    add("The greatest of these", "Love is patient, love is kind.");

    server.queueChat(Behaviour::reply("0 || Love waits and is kind."));
    const auto answered = run({"ask", "love"});
    EXPECT_TRUE(answered.out.starts_with(std::string("[Generated] ") +
                                         intelligence::AskYourLibrary::pointsIntroduction +
                                         "\n\nLove waits and is kind.\n  — The greatest of these\n"))
        << answered.out;

    for (const char* reply : {"none", "7 || A point from a source that was never offered."}) {
        server.queueChat(Behaviour::reply(reply));
        const auto unanswered = run({"ask", "love"});
        EXPECT_TRUE(unanswered.out.starts_with(std::string(intelligence::AskYourLibrary::unsummarised) +
                                               "\n\nSermon \"The greatest of these\": "))
            << reply << ":\n"
            << unanswered.out;
        EXPECT_EQ(unanswered.out.find("[Generated]"), std::string::npos) << reply;
    }
}

TEST_F(AskCommandTest, theVersesOfferedAreAboutWhatWasAskedNotAboutTheAsking) {
    add("Come away and rest", "Rest is a gift before it is a discipline. Sabbath is rest received.");
    const auto json = nlohmann::json::parse(run({"--json", "ask", "What have I taught about rest?"}).out);
    std::string sources;
    for (const auto& source : json["sources"])
        sources += source.get<std::string>() + "\n";
    EXPECT_NE(sources.find("Sermon \"Come away and rest\""), std::string::npos) << sources;
    EXPECT_NE(sources.find("(KJV): "), std::string::npos) << sources;
    EXPECT_EQ(sources.find("Joab"), std::string::npos) << sources;
    EXPECT_EQ(sources.find("taught"), std::string::npos) << sources;
}

} // namespace
} // namespace quillon::cli
