#include "cli/Commands.h"
#include "cli/LibraryRun.h"

#include "model/SermonCoding.h"
#include "model/SermonDocument.h"
#include "platform/AtomicFile.h"
#include "platform/Preferences.h"
#include "store/SermonNotesManager.h"
#include "support/SermonFixtures.h"

#include <gtest/gtest.h>

#include <sstream>

namespace quillon::cli {
namespace {

namespace fs = std::filesystem;
using model::SermonNote;
using testing::makeSermon;

/// These tests count the sermons they put there, so the sample sermons stay out.
class LibraryCommandTest : public testing::LibraryRun {
protected:
    using CliRun = Result;
    fs::path sermonFile(const model::Uuid& id) const { return library() / "Sermons" / (id.text() + ".json"); }
    std::size_t filesInLibrary() const {
        std::error_code ignored;
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(library() / "Sermons", ignored), fs::directory_iterator()));
    }
};

TEST_F(LibraryCommandTest, listOfAFreshLibrary) {
    EXPECT_EQ(run({"list"}).out, "No sermons yet in " + (library() / "Sermons").string() +
                                     ".\nCreate one with: quillon new --title \"Title\"\n");
    CliRun json = run({"list", "--json"});
    EXPECT_EQ(json.status, 0);
    EXPECT_EQ(json.out, "[]\n");
    EXPECT_EQ(json.err, "");
}

TEST_F(LibraryCommandTest, listPutsPinnedFirstThenTheLatestChangeAndLeavesHiddenOut) {
    auto old = put(makeSermon("Old", testing::at(2024, 1, 1)));
    auto recent = put(makeSermon("Recent", testing::at(2025, 1, 1)));
    auto pinned = put(makeSermon("Pinned", testing::at(2023, 1, 1)));
    auto hidden = put(makeSermon("Hidden", testing::at(2025, 6, 1)));
    {
        platform::Preferences preferences(folder / "config" / "Quillon" / "preferences.json");
        preferences.set(store::SermonNotesManager::pinnedSermonsKey, {pinned.id.text()});
        preferences.set(store::SermonNotesManager::hiddenSermonsKey, {hidden.id.text()});
    }

    EXPECT_EQ(run({"list"}).out, pinned.id.text() + "  2023-01-01T00:00:00Z  pinned  Pinned\n" + recent.id.text() +
                                     "  2025-01-01T00:00:00Z  -       Recent\n" + old.id.text() +
                                     "  2024-01-01T00:00:00Z  -       Old\n");
    std::string all = run({"list", "--all"}).out;
    EXPECT_EQ(all.substr(all.find('\n') + 1, 36), hidden.id.text()) << "after the pinned one: the latest change";
    EXPECT_EQ(run({"--json", "list"}).out.substr(0, 100),
              "[\n  {\n    \"id\": \"" + pinned.id.text() +
                  "\",\n    \"title\": \"Pinned\",\n    \"modifiedAt\": \"20");
}

TEST_F(LibraryCommandTest, showPrintsTheOutlineOrExactlyTheStoredJson) {
    auto sermon = put(makeSermon("Grace"));
    CliRun text = run({"show", sermon.id.text()});
    EXPECT_EQ(text.status, 0);
    EXPECT_EQ(text.out, "Grace\n"
                        "ID:        " +
                            sermon.id.text() +
                            "\n"
                            "Date:      2025-03-16\n"
                            "Speaker:   Ann Lee\n"
                            "Tags:      grace\n"
                            "Created:   2025-03-01T00:00:00Z\n"
                            "Modified:  2025-03-09T14:30:00Z\n"
                            "\n"
                            "1. The love of God\n"
                            "   Broad and deep.\n"
                            "   1.1 Given\n"
                            "       Love gives first.\n"
                            "       1.1.1 John 3:16-17 (KJV)\n"
                            "\n"
                            "Notes:\n"
                            "For God so loved the world.\n");

    // Members this version does not model are part of the stored JSON too.
    std::string stored = platform::readFile(sermonFile(sermon.id));
    stored.insert(stored.rfind('}'), ",\n  \"mood\" : {\"a\": [1, true, null]}\n");
    folder.write("library/Sermons/" + sermon.id.text() + ".json", stored);
    std::string lowerCasePrefix = sermon.id.text().substr(0, 8);
    for (auto& c : lowerCasePrefix)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (const auto& id : {sermon.id.text(), lowerCasePrefix}) {
        CliRun json = run({"show", id, "--json"});
        EXPECT_EQ(json.status, 0) << json.err;
        EXPECT_EQ(json.out, stored.back() == '\n' ? stored : stored + "\n");
    }
}

TEST_F(LibraryCommandTest, idsThatNameNoSingleSermonAreUserErrors) {
    auto first = put(makeSermon("First"));
    auto second = first;
    second.id = model::Uuid::parse(first.id.text().substr(0, 30) + "FFFFFF").value();
    if (second.id == first.id)
        second.id = model::Uuid::parse(first.id.text().substr(0, 30) + "000000").value();
    put(second);
    struct Case {
        std::string id;
        std::string error;
    } cases[] = {
        {"nope", "No sermon has the id “nope”.\n"},
        {"", "No sermon has the id “”.\n"},
        {first.id.text().substr(0, 3), "No sermon has the id “" + first.id.text().substr(0, 3) + "”.\n"},
        {first.id.text().substr(0, 30),
         "The id “" + first.id.text().substr(0, 30) + "” matches more than one sermon.\n"},
    };
    for (const auto& command : {"show", "duplicate", "document"})
        for (const auto& c : cases) {
            CliRun result = run({command, c.id});
            EXPECT_EQ(result.status, 1) << command << " " << c.id;
            EXPECT_EQ(result.out, "");
            EXPECT_EQ(result.err, c.error);
        }
    EXPECT_EQ(filesInLibrary(), 2u);
}

TEST_F(LibraryCommandTest, newCreatesASermonFromItsOptions) {
    CliRun created = run({"new", "--title", "Hope", "--speaker", "Ann", "--date", "2025-04-20", "--series", "Easter"});
    ASSERT_EQ(created.status, 0) << created.err;
    ASSERT_EQ(created.out.size(), 37u);
    auto id = model::Uuid::parse(created.out.substr(0, 36));
    ASSERT_TRUE(id);
    SermonNote stored = model::decodeSermonFile(platform::readFile(sermonFile(*id)));
    EXPECT_EQ(stored.title, "Hope");
    EXPECT_EQ(stored.speaker, "Ann");
    EXPECT_EQ(stored.series, "Easter");
    EXPECT_EQ(stored.date, testing::at(2025, 4, 20));
    EXPECT_EQ(stored.createdAt, stored.modifiedAt);
    EXPECT_TRUE(stored.topics.empty());

    CliRun minimal = run({"new", "--title", "Plain", "--json"});
    ASSERT_EQ(minimal.status, 0);
    auto json = nlohmann::json::parse(minimal.out);
    stored = model::decodeSermonFile(
        platform::readFile(sermonFile(model::Uuid::parse(json["id"].get<std::string>()).value())));
    EXPECT_EQ(stored.speaker, "");
    EXPECT_FALSE(stored.series);
}

TEST_F(LibraryCommandTest, newRefusesBadInputWithASentenceAndWritesNothing) {
    struct Case {
        std::vector<std::string> arguments;
        std::string error;
    } cases[] = {
        {{"new", "--title", "  "}, "A sermon needs a title.\n"},
        {{"new", "--title", "Bad \xff title"}, "The title is not valid UTF-8 text.\n"},
        {{"new", "--title", "T", "--speaker", "\xc3"}, "The speaker is not valid UTF-8 text.\n"},
        {{"new", "--title", "T", "--date", "2025-02-30"},
         "The date “2025-02-30” is not a day of the form YYYY-MM-DD.\n"},
        {{"new", "--title", "T", "--date", "20250101"}, "The date “20250101” is not a day of the form YYYY-MM-DD.\n"},
        {{"new", "--title", "T", "--date", "2025-1-01"}, "The date “2025-1-01” is not a day of the form YYYY-MM-DD.\n"},
    };
    for (const auto& c : cases) {
        CliRun result = run(c.arguments);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, c.error);
    }
    CliRun missingTitle = run({"new"});
    EXPECT_EQ(missingTitle.status, 1);
    EXPECT_NE(missingTitle.err.find("--title is required"), std::string::npos) << missingTitle.err;
    EXPECT_EQ(filesInLibrary(), 0u);
}

TEST_F(LibraryCommandTest, importAppliesTheChosenModeAndReportsTheCount) {
    auto mine = put(makeSermon("Mine"));
    auto theirs = mine;
    theirs.title = "Theirs";
    auto fresh = makeSermon("Fresh");
    const auto archive = folder / "incoming.vrnsermons";
    platform::writeFileAtomically(archive, model::encodeArchive({theirs, fresh}, testing::at(2025, 5, 1)));

    EXPECT_EQ(run({"import", archive.string()}).out, "Imported\n1 sermon\n");
    EXPECT_EQ(run({"import", archive.string(), "--mode", "skip"}).out,
              "Nothing Imported\nEvery sermon in “incoming.vrnsermons” is already in your library.\n");
    EXPECT_EQ(run({"import", archive.string(), "--mode", "copies"}).out, "Imported\n2 sermons\n");
    EXPECT_EQ(filesInLibrary(), 4u);
    EXPECT_EQ(run({"import", archive.string(), "--mode", "replace", "--json"}).out,
              "{\n  \"title\": \"Imported\",\n  \"detail\": \"2 sermons\",\n  \"kind\": \"toast\",\n  "
              "\"imported\": 2\n}\n");
    EXPECT_EQ(model::decodeSermonFile(platform::readFile(sermonFile(mine.id))).title, "Theirs");

    const auto document = model::writeSermonDocument(makeSermon("Shared"), folder.path());
    EXPECT_EQ(run({"import", document.string()}).out, "Imported\n1 sermon\n");
}

TEST_F(LibraryCommandTest, importOfAnOutlineDocumentAddsOneDraft) {
    const auto outline = folder.write("Grace.txt", "I. Grace\nA. Promise\nJohn 3:16\nApplication line\n");
    auto result = run({"import", outline.string()});
    ASSERT_EQ(result.status, 0) << result.err;
    const std::string prefix = "Imported\n1 sermon\n";
    ASSERT_EQ(result.out.substr(0, prefix.size()), prefix);
    auto id = model::Uuid::parse(result.out.substr(prefix.size(), 36));
    ASSERT_TRUE(id);
    SermonNote stored = model::decodeSermonFile(platform::readFile(sermonFile(*id)));
    ASSERT_EQ(stored.topics.size(), 1u);
    ASSERT_EQ(stored.topics[0].subTopics.size(), 1u);
    const auto& subTopic = stored.topics[0].subTopics[0];
    EXPECT_EQ(subTopic.details, "Application line");
    ASSERT_EQ(subTopic.scriptures.size(), 1u);
    EXPECT_EQ(subTopic.scriptures[0].bookName, "John");
    EXPECT_EQ(subTopic.scriptures[0].startVerse, 16);

    EXPECT_EQ(run({"import", folder.write("empty.docx", "not a zip").string()}).status, 1);
}

TEST_F(LibraryCommandTest, importOfAFileWithoutSermonsIsAUserError) {
    const auto garbage = folder.write("garbage.vrnsermons", "\x01\x02 not json");
    const auto brokenDocument = folder.write("broken.quillet", "{\"id\": 3}");
    struct Case {
        std::vector<std::string> arguments;
        std::string errorStart;
    } cases[] = {
        {{"import", garbage.string()}, "Import Failed\nFailed to import garbage.vrnsermons\n"},
        {{"import", brokenDocument.string()}, "Import Failed\nFailed to import broken.quillet\n"},
        {{"import", (folder / "absent").string()}, "Import Failed\nFailed to import absent\n"},
        {{"import", folder.path().string()}, "Import Failed\nFailed to import " + folder.path().filename().string()},
        {{"import", garbage.string(), "--mode", "merge"}, "quillon: --mode: merge not in {skip,replace,copies}"},
    };
    for (const auto& c : cases) {
        CliRun result = run(c.arguments);
        EXPECT_EQ(result.status, 1) << c.errorStart;
        EXPECT_EQ(result.err.substr(0, c.errorStart.size()), c.errorStart);
    }
    EXPECT_EQ(filesInLibrary(), 0u);
}

TEST_F(LibraryCommandTest, exportArchiveAndDocumentWriteWhereTheyAreTold) {
    auto one = put(makeSermon("One: the \"first\""));
    auto two = put(makeSermon("Two"));

    const auto file = folder / "all.vrnsermons";
    CliRun archive = run({"export-archive", "-o", file.string()});
    EXPECT_EQ(archive.out, file.string() + "\n");
    EXPECT_EQ(model::readArchive(platform::readFile(file)).size(), 2u);
    CliRun intoFolder = run({"export-archive", "--output", folder.path().string(), "--json"});
    EXPECT_EQ(intoFolder.out, "{\n  \"path\": \"" + (folder / "Quillon.vrnsermons").string() + "\"\n}\n");
    CliRun nowhere = run({"export-archive", "-o", (folder / "missing" / "x.vrnsermons").string()});
    EXPECT_EQ(nowhere.status, 1);
    EXPECT_EQ(nowhere.err, "Quillon could not prepare the sermon archive.\n");

    CliRun document = run({"document", one.id.text(), "-o", folder.path().string()});
    EXPECT_EQ(document.out, (folder / "One- the -first-.quillet").string() + "\n");
    EXPECT_EQ(model::readSermonImportFile(folder / "One- the -first-.quillet").at(0), one);
    EXPECT_EQ(run({"document", two.id.text(), "-o", (folder / "missing").string()}).status, 1);
}

TEST_F(LibraryCommandTest, duplicateAddsACopyAndPrintsItsId) {
    auto original = put(makeSermon("Original"));
    CliRun result = run({"duplicate", original.id.text()});
    ASSERT_EQ(result.status, 0) << result.err;
    auto copyId = model::Uuid::parse(result.out.substr(0, 36)).value();
    EXPECT_EQ(result.out, copyId.text() + "\n");
    auto copy = model::decodeSermonFile(platform::readFile(sermonFile(copyId)));
    EXPECT_EQ(copy.title, "Original Copy");
    EXPECT_EQ(copy.notes, original.notes);
}

TEST_F(LibraryCommandTest, syncPrintsTheStatusLine) {
    put(makeSermon("Here"));
    folder.write("library/Sermons/" + model::Uuid::random().text() + ".json.nextcloud", "");
    EXPECT_EQ(run({"sync"}).out, "Sync checked — 1 sermon is still downloading into the sync folder\n");
    EXPECT_EQ(run({"sync", "--json"}).out, "{\n  \"status\": \"Sync checked — 1 sermon is still downloading into the "
                                           "sync folder\",\n  \"sermons\": 1,\n  \"usingSyncFolder\": false\n}\n");
}

TEST_F(LibraryCommandTest, withoutLibraryOptionTheSyncFolderPreferenceChoosesTheRoot) {
    const auto sync = folder / "sync";
    fs::create_directories(sync / "Sermons");
    platform::Preferences(folder / "config" / "Quillon" / "preferences.json")
        .set("Quillon.storage.syncFolder", sync.string());
    auto sermon = makeSermon("Synced");
    folder.write("sync/Sermons/" + sermon.id.text() + ".json", model::encodeSermonFile(sermon));

    std::ostringstream out, err;
    EXPECT_EQ(runCli({"sync"}, out, err), 0);
    EXPECT_EQ(out.str(), "Sync checked\n");
    out.str("");
    EXPECT_EQ(runCli({"list"}, out, err), 0);
    EXPECT_EQ(out.str(), sermon.id.text() + "  2025-03-09T14:30:00Z  -       Synced\n");
}

TEST_F(LibraryCommandTest, everyCommandExplainsItself) {
    for (const auto& command : allCommands()) {
        CliRun help = run({command->name(), "--help"});
        EXPECT_EQ(help.status, 0) << command->name();
        EXPECT_NE(help.out.find(command->description()), std::string::npos) << command->name();
        EXPECT_EQ(help.err, "");
    }
    EXPECT_FALSE(fs::exists(library() / "Sermons")) << "asking for help opens no library";
}

} // namespace
} // namespace quillon::cli
