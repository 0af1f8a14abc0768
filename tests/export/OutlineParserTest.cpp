#include "ExportTestSupport.h"

#include "export/LibraryReferences.h"
#include "export/OutlineParser.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace quillon::exports {

namespace {

/// The outline as text: "T:" topics, "S:" sub-topics, "R:" passages with version, "D:" details.
std::vector<std::string> shape(const model::SermonNote& sermon) {
    std::vector<std::string> lines;
    for (const auto& topic : sermon.topics) {
        lines.push_back("T:" + topic.title);
        if (!topic.details.empty())
            lines.push_back("D:" + topic.details);
        for (const auto& sub : topic.subTopics) {
            lines.push_back("S:" + sub.title);
            for (const auto& s : sub.scriptures)
                lines.push_back("R:" + s.bookName + " " + std::to_string(s.chapter) + ":" +
                                std::to_string(s.startVerse) + "-" + std::to_string(s.endVerse) + " " +
                                std::string(model::rawValue(s.version)));
            if (!sub.details.empty())
                lines.push_back("D:" + sub.details);
        }
    }
    return lines;
}

} // namespace

TEST(OutlineParser, readsTheDiagnosticOutlineAsOneTopic) {
    const auto sermon =
        OutlineParser(testing::fakeRecognizer()).parse("I. Grace\nA. Promise\nJohn 3:16\nApplication line");
    EXPECT_EQ(shape(sermon),
              (std::vector<std::string>{"T:Grace", "S:Promise", "R:John 3:16-16 KJV", "D:Application line"}));
    EXPECT_TRUE(sermon.title.empty());
}

TEST(OutlineParser, tellsTopicsFromSubTopicsByTheirMarkers) {
    struct Case {
        std::string text;
        std::vector<std::string> expected;
    };
    const std::vector<Case> cases{
        {"1. Faith\n2) Hope\na. Anchor", {"T:Faith", "T:Hope", "S:Anchor"}},
        // C follows B, so it is a sub-point; the later "C." with no sub-points before it is topic 100.
        {"I. One\nA. a\nB. b\nC. c\nII. Two\nC. Hundred", {"T:One", "S:a", "S:b", "S:c", "T:Two", "T:Hundred"}},
        {"IV. Late start\nV. Next", {"T:Late start", "T:Next"}},
        {"IIII. Not roman", {"D:IIII. Not roman"}},
        {"I. One\nIC. Not roman either\nMMXXV. The year", {"T:One", "D:IC. Not roman either", "T:The year"}},
        {"I. One\nIi.Touching\nVIII)", {"T:One", "D:Ii.Touching", "T:"}},
    };
    for (const auto& c : cases) {
        auto sermon = OutlineParser(testing::fakeRecognizer()).parse("Title\n" + c.text);
        auto lines = shape(sermon);
        if (sermon.topics.empty())
            lines.push_back("D:" + sermon.notes);
        EXPECT_EQ(lines, c.expected) << c.text;
    }
}

TEST(OutlineParser, takesTheNamedVersionAndKeepsKjvOtherwise) {
    const auto sermon =
        OutlineParser(testing::fakeRecognizer())
            .parse("I. Word\nA. Light\nJohn 1:4-5 (NKJV)\nPsalm 119:105 - asv\nRomans 8:1 [LSV]\n"
                   "1 John 1:9\nJohn 3:16 nkjv\nB. Other translations\nJohn 3:16 ESV\nRomans 8:1 (NIV)\n"
                   "John 3:16KJV\nWelcome to FBC\nNKJV: John 3:16\nJohn 3:16 esv");
    EXPECT_EQ(shape(sermon),
              (std::vector<std::string>{
                  "T:Word", "S:Light", "R:John 1:4-5 NKJV", "R:Psalm 119:105-105 ASV", "R:Romans 8:1-1 LSV",
                  "R:1 John 1:9-9 KJV", "R:John 3:16-16 NKJV", "S:Other translations", "R:John 3:16-16 KJV",
                  "R:Romans 8:1-1 KJV", "R:John 3:16-16 NKJV", "R:John 3:16-16 KJV",
                  "D:" + OutlineParser::missingVersionNote("ESV", "John 3:16") + "\n" +
                      OutlineParser::missingVersionNote("NIV", "Romans 8:1") + "\nJohn 3:16KJV\nWelcome to FBC\n" +
                      OutlineParser::missingVersionNote("ESV", "John 3:16")}));
    EXPECT_EQ(OutlineParser::missingVersionNote("ESV", "Luke 15:22-24"),
              "ESV is not in this build of Quillon, so Luke 15:22-24 is attached in KJV.");
}

TEST(OutlineParser, readsVeryLongLinesInOnePass) {
    // A manuscript saved as one paragraph, and lines that look like the start of a marker,
    // a version or a metadata label but run on for a megabyte.
    const std::string prose(1 << 20, 'a');
    OutlineParser parser(testing::fakeRecognizer());
    const auto sermon =
        parser.parse("I. Point\n" + prose + "\nIV" + prose + ".\nJohn 3:16 " + prose + "\nSpeaker" + prose + ": x");
    ASSERT_EQ(sermon.topics.size(), 1u);
    EXPECT_EQ(sermon.topics[0].details.size(), 4 * prose.size() + 3 + 2 + 1 + 10 + 7 + 3);
    EXPECT_TRUE(sermon.speaker.empty());
}

TEST(OutlineParser, putsLinesBeforeTheFirstTopicIntoTitleMetadataAndNotes) {
    const auto sermon = OutlineParser(testing::fakeRecognizer())
                            .parse("Living Hope\nSpeaker: Ada\nSeries: Peter\nTags: hope, joy\nA word of welcome.\n"
                                   "I. Hope\nGod gives it.\nJohn 3:16");
    EXPECT_EQ(sermon.title, "Living Hope");
    EXPECT_EQ(sermon.speaker, "Ada");
    EXPECT_EQ(sermon.series, "Peter");
    EXPECT_EQ(sermon.tags, (std::vector<std::string>{"hope", "joy"}));
    EXPECT_EQ(sermon.notes, "A word of welcome.");
    // A passage directly under a topic gets a sub-point named after it.
    EXPECT_EQ(shape(sermon),
              (std::vector<std::string>{"T:Hope", "D:God gives it.", "S:John 3:16", "R:John 3:16-16 KJV"}));
}

TEST(OutlineParser, survivesInputThatIsNoOutline) {
    OutlineParser parser(testing::fakeRecognizer());
    EXPECT_TRUE(parser.parse("").topics.empty());
    EXPECT_TRUE(parser.parse("\n\n\r\n").title.empty());
    const auto binary = parser.parse("\xFF\xFE\x00\x01I. x"s);
    EXPECT_LE(binary.topics.size(), 1u);
    const auto noRecognizer = OutlineParser(nullptr).parse("I. A\nJohn 3:16");
    EXPECT_EQ(shape(noRecognizer), (std::vector<std::string>{"T:A", "D:John 3:16"}));
}

} // namespace quillon::exports

namespace quillon::exports {

TEST(OutlineParser, recognisesReferencesWithTheLibraryParser) {
    const auto sermon = OutlineParser(libraryReferenceRecognizer())
                            .parse("I. Grace\nA. Promise\nJohn 3:16\nps 23 (NLT)\nfirst cor 13:4-7\nApplication line\n"
                                   "John 22:1\nLuke 15:22-24 ESV");
    EXPECT_EQ(shape(sermon),
              (std::vector<std::string>{"T:Grace", "S:Promise", "R:John 3:16-16 KJV", "R:Psalms 23:1-6 NLT",
                                        "R:1 Corinthians 13:4-7 KJV", "R:Luke 15:22-24 KJV",
                                        "D:Application line\nJohn 22:1\n" +
                                            OutlineParser::missingVersionNote("ESV", "Luke 15:22-24")}));
}

} // namespace quillon::exports
