#include "intelligence/CommentaryTool.h"
#include "scripture/BibleBook.h"
#include "scripture/ReferenceParser.h"

#include <gtest/gtest.h>

namespace quillon::intelligence {
namespace {

std::shared_ptr<const CommentaryLibrary> systemLibrary() {
    static auto library =
        std::make_shared<const CommentaryLibrary>(std::vector<std::filesystem::path>{"/usr/share/sword"});
    return library;
}

bool installed(const std::string& moduleName) {
    for (const Commentary& commentary : systemLibrary()->commentaries())
        if (commentary.moduleName == moduleName)
            return true;
    return false;
}

#define REQUIRE_MODULE(name)                                                                                           \
    if (!installed(name))                                                                                              \
    GTEST_SKIP() << name << " is not installed (scripts/bootstrap installs it)"

std::vector<std::string> sourcesOf(const orvane::ToolResult& result) {
    std::vector<std::string> sources;
    for (const orvane::Passage& passage : result.passages)
        sources.push_back(passage.source);
    return sources;
}

TEST(CommentaryTool, readsMatthewHenrysMisdeclaredIndexAtTheRightPlace) {
    REQUIRE_MODULE("MHCC");
    CommentaryTool tool(systemLibrary());
    EXPECT_EQ(tool.name(), "commentaries");
    orvane::ToolResult romans = tool.lookup("Romans 8:28");
    ASSERT_FALSE(romans.passages.empty());
    EXPECT_EQ(romans.passages[0].source, "Matthew Henry's Concise Commentary — Romans 8:28-31");
    EXPECT_TRUE(romans.passages[0].text.starts_with("Verses 28-31 That is good for the saints"))
        << romans.passages[0].text.substr(0, 80);
    // Markup is gone: no OSIS tags, no bold asterisks, single blanks.
    EXPECT_EQ(romans.passages[0].text.find('<'), std::string::npos);
    EXPECT_EQ(romans.passages[0].text.find('*'), std::string::npos);
    EXPECT_EQ(romans.passages[0].text.find("  "), std::string::npos);
}

TEST(CommentaryTool, aVerseFindsTheEntryWhoseRangeCoversIt) {
    REQUIRE_MODULE("MHCC");
    CommentaryTool henry("commentaries", "p", systemLibrary(), {{"MHCC", "Henry", true}}, 6);
    struct Case {
        const char* query;
        std::vector<std::string> sources;
    };
    const Case cases[] = {
        // Henry's note on John 3 is stored under verse 1 and runs until the next note at verse 22.
        {"John 3:16", {"Henry — John 3:1-21"}},
        {"John 3:21-22", {"Henry — John 3:1-21", "Henry — John 3:22-36"}},
        {"Romans 8:30", {"Henry — Romans 8:28-31"}},
        {"Romans 8:10-20", {"Henry — Romans 8:10-17", "Henry — Romans 8:18-25"}},
        {"rom 8",
         {"Henry — Romans 8:1-9", "Henry — Romans 8:10-17", "Henry — Romans 8:18-25", "Henry — Romans 8:26-27",
          "Henry — Romans 8:28-31", "Henry — Romans 8:32-39"}},
        {"Genesis 1:31", {"Henry — Genesis 1:31"}},
        {"Romans 8:99", {}},
        {"grace and peace", {}},
        {"", {}},
    };
    for (const Case& test : cases)
        EXPECT_EQ(sourcesOf(henry.lookup(test.query)), test.sources) << test.query;
    EXPECT_NE(henry.lookup("John 3:16").passages[0].text.find("God so loved the world"), std::string::npos);
}

TEST(CommentaryTool, everyBookOfTheBibleIsFoundInTheCommentary) {
    REQUIRE_MODULE("MHCC");
    Commentary henry{"MHCC", "Henry", true};
    for (const scripture::BibleBook& book : scripture::allBibleBooks()) {
        std::optional<scripture::ScriptureReference> reference = scripture::parse(book.name + " 1");
        ASSERT_TRUE(reference) << book.name;
        std::vector<CommentaryEntry> entries = systemLibrary()->entries(henry, *reference);
        EXPECT_FALSE(entries.empty()) << book.name;
        if (!entries.empty()) {
            EXPECT_TRUE(entries[0].label.starts_with(book.name + " 1:")) << entries[0].label;
        }
    }
}

TEST(CommentaryTool, worksAreConsultedInOrderAndCappedAtSix) {
    REQUIRE_MODULE("MHCC");
    REQUIRE_MODULE("Scofield");
    CommentaryTool tool(systemLibrary());
    ASSERT_GE(tool.commentaries().size(), 2u);
    EXPECT_EQ(tool.commentaries()[0].name, "Matthew Henry's Concise Commentary");
    EXPECT_EQ(tool.commentaries()[1].name, "Scofield Reference Notes");
    std::vector<std::string> john3 = sourcesOf(tool.lookup("John 3"));
    ASSERT_EQ(john3.size(), 6u); // Henry's two notes, then only four of Scofield's many
    EXPECT_EQ(john3[0], "Matthew Henry's Concise Commentary — John 3:1-21");
    EXPECT_TRUE(john3[2].starts_with("Scofield Reference Notes — ")) << john3[2];
    // Scofield's notes belong to single verses: Romans 8:28 does not pick up the note on 8:23.
    EXPECT_EQ(sourcesOf(tool.lookup("Romans 8:28")),
              std::vector<std::string>{"Matthew Henry's Concise Commentary — Romans 8:28-31"});
    std::vector<std::string> verse = sourcesOf(tool.lookup("John 3:16"));
    EXPECT_EQ(verse, (std::vector<std::string>{"Matthew Henry's Concise Commentary — John 3:1-21",
                                               "Scofield Reference Notes — John 3:16"}));
}

TEST(CommentaryTool, longEntriesAreCutAtAWord) {
    REQUIRE_MODULE("TDavid");
    CommentaryTool spurgeon("commentaries", "p", systemLibrary(), {{"TDavid", "Spurgeon", true}}, 6);
    orvane::ToolResult psalm = spurgeon.lookup("Psalm 23:1");
    ASSERT_FALSE(psalm.passages.empty());
    EXPECT_LE(psalm.passages[0].text.size(), 9010u);
    EXPECT_TRUE(psalm.passages[0].text.ends_with(" …"));
    EXPECT_TRUE(psalm.passages[0].text.starts_with("Psalm 23"));
}

TEST(CommentaryTool, aLibraryWithoutModulesFindsNothing) {
    auto empty = std::make_shared<const CommentaryLibrary>(std::vector<std::filesystem::path>{"/nonexistent/sword"});
    EXPECT_TRUE(empty->commentaries().empty());
    EXPECT_EQ(CommentaryTool(empty).lookup("John 3:16"), orvane::ToolResult::empty());
}

} // namespace
} // namespace quillon::intelligence
