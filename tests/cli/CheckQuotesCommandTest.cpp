#include "cli/LibraryRun.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace quillon::cli {
namespace {

model::SermonSubTopic subTopicQuoting(const std::string& title, const std::string& details,
                                      model::BibleVersion version) {
    model::SermonScripture scripture;
    scripture.id = model::Uuid::random();
    scripture.bookName = "John";
    scripture.chapter = 3;
    scripture.startVerse = 16;
    scripture.endVerse = 16;
    scripture.version = version;
    model::SermonSubTopic subTopic;
    subTopic.id = model::Uuid::random();
    subTopic.title = title;
    subTopic.details = details;
    subTopic.scriptures = {scripture};
    return subTopic;
}

class CheckQuotesCommandTest : public testing::LibraryRun {
protected:
    std::string add(std::vector<model::SermonSubTopic> subTopics) {
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = "The gift";
        topic.subTopics = std::move(subTopics);
        model::SermonNote sermon;
        sermon.id = model::Uuid::random();
        sermon.title = "So loved";
        sermon.topics = {topic};
        put(sermon);
        return sermon.id.text();
    }
};

TEST_F(CheckQuotesCommandTest, aFaithfulQuotationPassesWhateverItsCaseAndPunctuation) {
    const std::string id = add({subTopicQuoting("Given",
                                                "Jesus said “FOR GOD so loved the world, that he gave his only "
                                                "begotten Son” and \"whosoever believeth in him\".",
                                                model::BibleVersion::kjv)});
    const auto checked = run({"check-quotes", id});
    EXPECT_EQ(checked.status, 0) << checked.err;
    EXPECT_EQ(checked.out, "Every quotation matches the verses attached beside it.\n");
    EXPECT_EQ(run({"--json", "check-quotes", id}).out, "[]\n");
}

TEST_F(CheckQuotesCommandTest, misquotesAndTranslationsWithoutTextAreReportedInOutlineOrder) {
    const std::string id = add({
        subTopicQuoting("Given", "“For God so loved the world” — or, as some say, “For God so loved the church”.",
                        model::BibleVersion::kjv),
        subTopicQuoting("Kept", "“For God so loved the world”", model::BibleVersion::nkjv),
        subTopicQuoting("", "“For God so loved the world”", model::BibleVersion::amp),
    });
    const auto checked = run({"check-quotes", id});
    EXPECT_EQ(checked.status, 0) << checked.err;
    EXPECT_EQ(checked.out,
              "Given: “For God so loved the church”\n"
              "  “For God so loved the church” does not appear in the verses attached to “Given”.\n"
              "Kept: “For God so loved the world”\n"
              "  “Kept” quotes NKJV, which is not included in this edition, so the wording could not be checked.\n"
              "this subtopic: “For God so loved the world”\n"
              "  “this subtopic” quotes AMP, which is not included in this edition, so the wording could not be "
              "checked.\n");

    const auto json = nlohmann::json::parse(run({"--json", "check-quotes", id}).out);
    ASSERT_EQ(json.size(), 3u);
    EXPECT_EQ(json[0]["quotation"], "For God so loved the church");
    EXPECT_EQ(json[1]["message"],
              "“Kept” quotes NKJV, which is not included in this edition, so the wording could not be checked.");
    EXPECT_EQ(run({"check-quotes", "no-such-sermon"}).status, 1);
}

} // namespace
} // namespace quillon::cli
