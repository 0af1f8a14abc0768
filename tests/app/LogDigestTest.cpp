#include "app/LogDigest.h"
#include "orvane/IntelligenceError.h"

#include <gtest/gtest.h>

namespace quillon::app {
namespace {

const char* const sampleLog = "2026-11-23T19:01:00+0000 [info] Quillon started\n"
                              "2026-11-23T19:02:00+0000 [error] Failed to save sermon \"Grace\": disk full\n"
                              "not a log line\n"
                              "\n"
                              "2026-11-23T19:03:00+0000 [warning] Slow disk\n"
                              "2026-11-23T19:04:00+0000 [error] Could not reach the model server\n"
                              "2026-11-23T19:05:00+0000 [critical] Failed to save sermon \"Grace\": disk full\r\n"
                              "2026-11-23T19:06:00+0000 [loud] odd level\n";

TEST(LogDigest, ReadsLinesAndGroupsErrorsWithCountsAndLatestTime) {
    const std::vector<LogLine> lines = parseLog(sampleLog);
    ASSERT_EQ(lines.size(), 7u);
    EXPECT_EQ(lines[0].level, "info");
    EXPECT_EQ(lines[1].message, "Failed to save sermon \"Grace\": disk full");
    EXPECT_EQ(lines[2].level, "");
    EXPECT_EQ(lines[2].message, "not a log line");
    EXPECT_EQ(lines[4].severity(), 4);
    EXPECT_EQ(lines[6].level, "");
    const std::vector<ErrorGroup> groups = groupErrors(lines);
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0], (ErrorGroup{"Failed to save sermon \"Grace\": disk full", 2, "2026-11-23T19:05:00+0000"}));
    EXPECT_EQ(groups[1].count, 1);
    EXPECT_TRUE(parseLog("").empty());
    EXPECT_TRUE(groupErrors({}).empty());
}

TEST(ErrorSummary, KeepsOnlyASummaryThatQuotesLinesItWasGiven) {
    const std::vector<LogLine> lines = parseLog(sampleLog);
    const ErrorDigest digest =
        ErrorSummary::digestFrom("The disk is full, so sermons could not be saved.\nLINE: 1\nLINE: 9", lines);
    EXPECT_EQ(digest.summary, "The disk is full, so sermons could not be saved.");
    ASSERT_EQ(digest.quotedLines.size(), 1u);
    EXPECT_NE(digest.quotedLines[0].find("disk full"), std::string::npos);
    for (const char* reply : {"The disk is full.", "LINE: 1", "Nothing.\nLINE: 0", "Full.\nLINE: x"})
        EXPECT_THROW(ErrorSummary::digestFrom(reply, lines), orvane::IntelligenceError) << reply;
    EXPECT_EQ(ErrorSummary().fallback(lines).groups.size(), 2u);
    EXPECT_NE(ErrorSummary::prompt(ErrorSummary::recentErrors(lines)).find("3. 2026-11-23T19:05:00+0000 [critical]"),
              std::string::npos);
}

} // namespace
} // namespace quillon::app
