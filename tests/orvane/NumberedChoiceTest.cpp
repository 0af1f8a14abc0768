#include "orvane/NumberedChoice.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using Choice = NumberedChoice::Choice;

TEST(NumberedChoice, formatNumbersFromZeroWithoutATrailingLineFeed) {
    EXPECT_EQ(NumberedChoice::format({"Grace", "Peace"}), "0. Grace\n1. Peace");
    EXPECT_EQ(NumberedChoice::format({}), "");
}

TEST(NumberedChoice, parseReadsNumbersAndNotesLineByLine) {
    struct Case {
        const char* name;
        const char* reply;
        bool allowRepeats;
        std::vector<Choice> expected;
    };
    const Case cases[] = {
        {"number and note", "2 ||  The prodigal son fits.  ", false, {{2, "The prodigal son fits."}}},
        {"no separator gives an empty note", "1. Some words here", false, {{1, ""}}},
        {"first occurrence wins", "2 || first\n2 || second\n0 || third", false, {{2, "first"}, {0, "third"}}},
        {"repeats allowed", "2 || first\n2 || second", true, {{2, "first"}, {2, "second"}}},
        {"later separators stay in the note", "3 || a || b ", false, {{3, "a || b"}}},
        {"first digit run of the head", "Source #12b || why", false, {{12, "why"}}},
        {"lines without digits are skipped", "NONE\n\n  || orphan\n4 || kept", false, {{4, "kept"}}},
        {"digits only in the note do not count", "point || see 3", false, {}},
        {"numbers too large for an int", "99999999999999 || huge\n5 || fine", false, {{5, "fine"}}},
        {"carriage returns are blanks", "1 || note\r\n", false, {{1, "note"}}},
        {"out-of-range numbers are the caller's business", "7 || beyond", false, {{7, "beyond"}}},
        {"empty reply", "", false, {}},
    };
    for (const Case& test : cases)
        EXPECT_EQ(NumberedChoice::parse(test.reply, 3, test.allowRepeats), test.expected) << test.name;
}

} // namespace
} // namespace orvane
