#include "../export/ExportTestSupport.h"

#include "cli/Cli.h"
#include "model/SermonCoding.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace quillon::cli {

namespace {

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

Outcome run(const std::vector<std::string>& arguments) {
    std::ostringstream out;
    std::ostringstream err;
    const int status = runCli(arguments, out, err);
    return {status, out.str(), err.str()};
}

} // namespace

TEST(ExportCommand, writesEachFormatAndPrintsThePath) {
    testing::TemporaryFolder library;
    const auto sermon = testing::sampleSermon();
    library.write("Sermons/" + sermon.id.text() + ".json", model::encodeSermonFile(sermon));
    const std::vector<std::pair<std::string, std::string>> formats{
        {"docx", "PK"}, {"pptx", "PK"}, {"md", "# Grace & Truth"}, {"rtf", "{\\rtf1"}, {"pdf", "%PDF-"}};
    for (const auto& [format, start] : formats) {
        const auto outcome = run({"--library", library.path().string(), "export", sermon.id.text(), "--format", format,
                                  "-o", library.path().string()});
        const auto expected = library / ("Grace & Truth." + format);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.out, expected.string() + "\n");
        EXPECT_TRUE(testing::readText(expected).starts_with(start)) << format;
    }
    const auto named = library / "chosen name.docx";
    EXPECT_EQ(run({"--library", library.path().string(), "export", sermon.id.text(), "--format", "docx", "-o",
                   named.string()})
                  .out,
              named.string() + "\n");
}

TEST(ExportCommand, reportsFailuresWithASentence) {
    testing::TemporaryFolder library;
    const auto sermon = testing::sampleSermon();
    library.write("Sermons/" + sermon.id.text() + ".json", model::encodeSermonFile(sermon));
    const std::string root = library.path().string();
    struct Case {
        std::vector<std::string> arguments;
        std::string err;
    };
    const std::vector<Case> cases{
        {{"--library", root, "export", sermon.id.text(), "--format", "docx", "-o", "/nonexistent/x.docx"},
         "Export Failed\nQuillon could not create the Word document.\n"},
        {{"--library", root, "export", "not-an-id", "--format", "md"}, "“not-an-id” is not a sermon id.\n"},
        {{"--library", root, "export", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F", "--format", "md"},
         "Quillon could not find a sermon with the id E621E1F8-C36C-495A-93FC-0C247A3E6E5F.\n"},
    };
    for (const auto& c : cases) {
        const auto outcome = run(c.arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, c.err);
    }
    EXPECT_EQ(run({"--library", root, "export", sermon.id.text(), "--format", "odt"}).status, 1);
}

TEST(SelftestCommand, printsOneLinePerCheckAndFailsWhenOneNeedsAttention) {
    const auto outcome = run({"selftest"});
    std::istringstream lines(outcome.out);
    std::vector<std::string> printed;
    for (std::string line; std::getline(lines, line);)
        printed.push_back(line);
    ASSERT_GE(printed.size(), 3u);
    EXPECT_EQ(printed.front(), "Import parser: OK");
    EXPECT_EQ(printed.back(), "Archive export: OK");
    const bool bibleOk = printed[1] == "Bible loader: OK";
    EXPECT_EQ(outcome.status, bibleOk ? 0 : 1);
    if (!bibleOk) {
        EXPECT_EQ(printed[1], "Bible loader: needs attention");
        EXPECT_EQ(printed[2], "Self-test: the Bible loader returned no text for John 3:16.");
    }
}

} // namespace quillon::cli
