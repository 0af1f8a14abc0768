#include "../export/ExportTestSupport.h"

#include "LibraryRun.h"
#include "cli/Cli.h"
#include "model/SermonCoding.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace quillon::cli {

namespace {

class ExportCommandTest : public testing::LibraryRun {
protected:
    model::SermonNote seedSample() { return put(testing::sampleSermon()); }
};

} // namespace

TEST_F(ExportCommandTest, writesEachFormatAndPrintsThePath) {
    const auto sermon = seedSample();
    const auto output = folder / "out";
    std::filesystem::create_directories(output);
    const std::vector<std::pair<std::string, std::string>> formats{
        {"docx", "PK"}, {"pptx", "PK"}, {"md", "# Grace & Truth"}, {"rtf", "{\\rtf1"}, {"pdf", "%PDF-"}};
    for (const auto& [format, start] : formats) {
        const auto outcome = run({"export", sermon.id.text(), "--format", format, "-o", output.string()});
        const auto expected = output / ("Grace & Truth." + format);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.out, expected.string() + "\n");
        EXPECT_TRUE(testing::readText(expected).starts_with(start)) << format;
    }
    const auto named = output / "chosen name.docx";
    EXPECT_EQ(run({"export", sermon.id.text().substr(0, 8), "--format", "docx", "-o", named.string()}).out,
              named.string() + "\n");
}

TEST_F(ExportCommandTest, findsTheSermonInTheSyncFolderChosenInPreferences) {
    const auto sermon = testing::sampleSermon();
    const auto synced = folder / "synced";
    folder.write("synced/Sermons/" + sermon.id.text() + ".json", model::encodeSermonFile(sermon));
    folder.write("config/Quillon/preferences.json",
                 R"({"Quillon.sampleSermonsHidden": true, "Quillon.storage.syncFolder": ")" + synced.string() + "\"}");
    const auto target = folder / "from sync.md";
    std::ostringstream out, err;
    EXPECT_EQ(runCli({"export", sermon.id.text(), "--format", "md", "-o", target.string()}, out, err), 0) << err.str();
    EXPECT_TRUE(testing::readText(target).starts_with("# Grace & Truth"));
}

TEST_F(ExportCommandTest, reportsFailuresWithASentence) {
    const auto sermon = seedSample();
    struct Case {
        std::vector<std::string> arguments;
        std::string err;
    };
    const std::vector<Case> cases{
        {{"export", sermon.id.text(), "--format", "docx", "-o", "/nonexistent/x.docx"},
         "Export Failed\nQuillon could not create the Word document.\n"},
        {{"export", "not-an-id", "--format", "md"}, "No sermon has the id “not-an-id”.\n"},
        {{"export", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F", "--format", "md"},
         "No sermon has the id “E621E1F8-C36C-495A-93FC-0C247A3E6E5F”.\n"},
    };
    for (const auto& c : cases) {
        const auto outcome = run(c.arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, c.err);
    }
    EXPECT_EQ(run({"export", sermon.id.text(), "--format", "odt"}).status, 1);
}

} // namespace quillon::cli
