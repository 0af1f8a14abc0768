#include "cli/Cli.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

namespace {

struct Run {
    int status;
    std::string out;
    std::string err;
};

/// Runs the command line with an empty user data folder, so only the shipped texts are read.
Run run(std::vector<std::string> arguments) {
    quillon::testing::TemporaryFolder data;
    setenv("XDG_DATA_HOME", data.path().c_str(), 1);
    std::ostringstream out, err;
    int status = quillon::cli::runCli(arguments, out, err);
    unsetenv("XDG_DATA_HOME");
    return {status, out.str(), err.str()};
}

} // namespace

TEST(RefCommand, printsTheReadingOrSaysWhyNot) {
    auto found = run({"ref", "first cor 13:4-6"});
    EXPECT_EQ(found.status, 0);
    EXPECT_EQ(found.out, "Book: 1 Corinthians\nChapter: 13\nVerses: 4, 5, 6\n");
    auto missing = run({"ref", "John 3:16-4:2"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "No scripture reference found in “John 3:16-4:2”.\n");
    // Pasted forms read everywhere the parser is used: no-break spaces, en dashes, tags.
    EXPECT_EQ(run({"ref", "John\u00a03:16\u2009–\u200918"}).out, "Book: John\nChapter: 3\nVerses: 16, 17, 18\n");
    EXPECT_EQ(run({"ref", "Jude 3 (ESV)"}).out, "Book: Jude\nChapter: 1\nVerses: 3\nTranslation: ESV\n");
}

TEST(RefCommand, explainsWhatTheNormalisingStepDid) {
    auto explained = run({"ref", "--explain", "Rom. 8:28 (NIV)"});
    EXPECT_EQ(explained.status, 0);
    EXPECT_EQ(explained.out, "Typed: “Rom. 8:28 (NIV)”\n"
                             "- Took off the translation tag “NIV”: Quillon has no NIV text, so the passage is shown "
                             "in the version chosen.\n"
                             "- Dropped the period after “Rom”.\n"
                             "Read as: “Rom 8:28”\n"
                             "Book: Romans\nChapter: 8\nVerses: 28\n");
    auto plain = run({"ref", "--explain", "John 3:16"});
    EXPECT_EQ(plain.out.substr(0, plain.out.find("Book:")),
              "Typed: “John 3:16”\nNothing needed normalising: the text is read as written.\nRead as: “John 3:16”\n");
    // Why a text was not read: the steps, then the usual sentence.
    auto refused = run({"ref", "--explain", "Jo 3:16."});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "Typed: “Jo 3:16.”\n- Removed “.” at the end.\nRead as: “Jo 3:16”\n");
    auto json = run({"--json", "ref", "--explain", "1 Jn 1:9 KJV"});
    EXPECT_NE(json.out.find("\"readAs\": \"1 John 1:9\""), std::string::npos) << json.out;
    EXPECT_NE(json.out.find("\"version\": \"KJV\""), std::string::npos) << json.out;
}

TEST(BibleCommand, readsPastedReferencesAndHonoursATranslationTag) {
    auto pasted = run({"bible", "Psalm 119:170\u00a0-\u00a01000"});
    EXPECT_EQ(pasted.status, 0);
    EXPECT_EQ(pasted.out.find("KJV-Psa 119:170\t"), 0u);
    EXPECT_NE(pasted.out.find("KJV-Psa 119:176\t"), std::string::npos);
    EXPECT_EQ(run({"bible", "John 3:16 ASV"}).out.substr(0, 13), "ASV-Joh 3:16\t");
    auto other = run({"bible", "John 3:16 NIV"});
    EXPECT_EQ(other.err, "Quillon has no NIV text; showing KJV.\n");
    EXPECT_EQ(other.out.substr(0, 13), "KJV-Joh 3:16\t");
    EXPECT_EQ(run({"bible", "NKJV: John 3:16"}).err, "The NKJV text is not available; showing KJV.\n");
    EXPECT_EQ(run({"bible", "John 3:16 NIV", "--versions", "ASV"}).err, "");
}

TEST(BibleCommand, printsOneResultPerLineAndListsVersions) {
    auto lookup = run({"bible", "John 3:16", "--versions", "KJV,asv"});
    EXPECT_EQ(lookup.status, 0);
    EXPECT_EQ(lookup.out.substr(0, lookup.out.find('\t') + 1), "KJV-Joh 3:16\t");
    EXPECT_NE(lookup.out.find("\nASV-Joh 3:16\t"), std::string::npos);
    EXPECT_EQ(run({"bible", "John 3", "--limit", "2"}).out.find("KJV-Joh 3:3"), std::string::npos);
    EXPECT_EQ(run({"bible", "John 3:16", "--versions", "XYZ"}).status, 1);
    auto versions = run({"bible", "versions"});
    EXPECT_NE(versions.out.find("KJV\tavailable\t"), std::string::npos);
    EXPECT_NE(versions.out.find("NKJV\tnot available\t"), std::string::npos);
    auto json = run({"--json", "bible", "Jude 1:25"});
    EXPECT_NE(json.out.find("\"id\": \"KJV-Jud 1:25\""), std::string::npos);
}
