#include "scripture/ScriptureLink.h"
#include "scripture/GeneratedScriptureReference.h"
#include "scripture/ReferenceParser.h"

#include <gtest/gtest.h>

using namespace quillon;
using namespace quillon::scripture;

TEST(ScriptureLink, buildsAndReadsBackTheScripturesIdentifier) {
    auto id = *model::Uuid::parse("e621e1f8-c36c-495a-93fc-0c247a3e6e5f");
    EXPECT_EQ(scriptureLink(id), "quillscripture://E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    EXPECT_EQ(scriptureFromLink(scriptureLink(id)), id);
    EXPECT_EQ(scriptureFromLink("quillscripture://e621e1f8-c36c-495a-93fc-0c247a3e6e5f/"), id);
    for (const char* other : {"", "quillscripture://", "https://E621E1F8-C36C-495A-93FC-0C247A3E6E5F",
                              "quillscripture://not-a-uuid", "QUILLSCRIPTURE://E621E1F8-C36C-495A-93FC-0C247A3E6E5F"})
        EXPECT_FALSE(scriptureFromLink(other).has_value()) << other;
}

TEST(GeneratedScriptureReference, describesItsFieldsAndReadsPartialReplies) {
    auto schema = GeneratedScriptureReference::generationSchema();
    EXPECT_EQ(schema["properties"]["book"]["description"],
              "The book of the Bible, spelled out in full, e.g. Philippians");
    EXPECT_EQ(schema["properties"]["chapter"]["description"], "The chapter number");
    EXPECT_EQ(schema["properties"]["startVerse"]["description"], "The first verse, or omit for a whole chapter");
    EXPECT_EQ(schema["properties"]["endVerse"]["description"], "The last verse of a range, or omit for a single verse");

    auto partial = GeneratedScriptureReference::fromJSON(nlohmann::ordered_json::parse(R"({"book":"John"})"));
    EXPECT_EQ(partial.book, "John");
    EXPECT_FALSE(partial.completed().has_value());

    auto whole = GeneratedScriptureReference::fromJSON(
        nlohmann::ordered_json::parse(R"({"book":"John","chapter":3,"startVerse":16,"endVerse":"18"})"));
    ASSERT_TRUE(whole.completed().has_value());
    EXPECT_EQ(whole.completed()->description(), "John 3:16");
    EXPECT_FALSE(GeneratedScriptureReference::fromJSON(nlohmann::ordered_json::parse("[1]")).book.has_value());
}

TEST(ScriptureReference, libraryReferencePrintsThroughTheSharedForm) {
    EXPECT_EQ(parse("John 3:18-16")->shared().description(), "John 3:16-18");
    EXPECT_EQ(parse("ps 23")->description(), "Psalms 23");
    EXPECT_EQ(parse("John 3:16")->shared(), (orvane::ScriptureReference{"John", 3, 16, std::nullopt}));
}
