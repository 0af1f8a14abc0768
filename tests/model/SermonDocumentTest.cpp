#include "model/SermonDocument.h"
#include "model/SermonCoding.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillon::model {
namespace {

SermonNote sampleSermon(std::string title) {
    SermonNote sermon;
    sermon.id = Uuid::random();
    sermon.title = std::move(title);
    sermon.date = *parseDateTime("2025-03-09T14:30:00Z");
    sermon.createdAt = sermon.date;
    sermon.modifiedAt = sermon.date;
    sermon.notes = "Notes";
    return sermon;
}

TEST(SermonDocument, safeFileNameSplitsAtTheTenCharactersAndTrims) {
    struct Case {
        const char* title;
        const char* expected;
    };
    for (const Case& c :
         {Case{"Grace/Truth", "Grace-Truth"}, Case{" \n Why? Because: \"Love\" \t", "Why- Because- -Love-"},
          Case{"a\\b%c*d|e<f>g", "a-b-c-d-e-f-g"}, Case{"Plain", "Plain"}, Case{"  ", ""}})
        EXPECT_EQ(safeFileName(c.title), c.expected) << c.title;
}

TEST(SermonDocument, documentIsSortedAndReadsBackAsOneSermon) {
    testing::TemporaryFolder folder;
    SermonNote sermon = sampleSermon("Faith: the Substance");
    sermon.series = "Hebrews";
    auto file = writeSermonDocument(sermon, folder.path());
    EXPECT_EQ(file.filename(), "Faith- the Substance.quillet");
    std::string text = testing::readText(file);
    EXPECT_LT(text.find("\"createdAt\""), text.find("\"id\""));
    EXPECT_LT(text.find("\"series\""), text.find("\"speaker\""));
    EXPECT_EQ(readSermonImportFile(file), std::vector<SermonNote>{sermon});
    EXPECT_EQ(writeSermonDocument(sampleSermon(" / "), folder.path()).filename(), "-.quillet");
    EXPECT_EQ(writeSermonDocument(sampleSermon(""), folder.path()).filename(), "Untitled Sermon.quillet");
}

TEST(SermonDocument, archiveReadsExportRecordElseBareArrayElseNothing) {
    std::vector<SermonNote> sermons{sampleSermon("One"), sampleSermon("Two")};
    const std::string archive = encodeArchive(sermons, *parseDateTime("2025-04-01T00:00:00Z"));
    EXPECT_EQ(readArchive(archive), sermons);
    auto json = OrderedJSON::parse(archive);
    EXPECT_EQ(json["version"], 1);
    EXPECT_EQ(json["appIdentifier"].get<std::string>().size(), 13u);
    EXPECT_EQ(readArchive(json["sermons"].dump()), sermons);
    json["version"] = 7; // never examined
    EXPECT_EQ(readArchive(json.dump()), sermons);
    for (const char* other : {"", "{}", "{\"version\": 1}", "42", "not json", "[{\"id\": 1}]"})
        EXPECT_TRUE(readArchive(other).empty()) << other;
}

TEST(SermonDocument, archiveIsWrittenUnderItsFixedNameAndImportFilesDispatchByExtension) {
    testing::TemporaryFolder folder;
    std::vector<SermonNote> sermons{sampleSermon("One")};
    auto file = writeArchive(sermons, sermons[0].date, folder.path());
    ASSERT_TRUE(file);
    EXPECT_EQ(file->filename(), "Quillon.vrnsermons");
    EXPECT_EQ(readSermonImportFile(*file), sermons);
    EXPECT_FALSE(writeArchive(sermons, sermons[0].date, folder / "missing"));
    auto broken = folder.write("broken.quillet", "{}");
    EXPECT_THROW(readSermonImportFile(broken), DecodingError);
    EXPECT_TRUE(readSermonImportFile(folder.write("other.json", "{}")).empty());
}

} // namespace
} // namespace quillon::model
