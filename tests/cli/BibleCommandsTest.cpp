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
    auto missing = run({"ref", "John 3:16–18"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "No scripture reference found in “John 3:16–18”.\n");
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
