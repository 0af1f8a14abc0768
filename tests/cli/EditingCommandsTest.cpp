#include "LibraryRun.h"

#include "model/SermonCoding.h"
#include "model/SermonDocument.h"
#include "platform/AtomicFile.h"
#include "support/SermonFixtures.h"

#include <nlohmann/json.hpp>

#include <cstdio>

namespace {

using quillon::model::SermonNote;
using quillon::testing::LibraryRun;

class EditingCommandsTest : public LibraryRun {
protected:
    EditingCommandsTest() {
        // No terminal to ask on, whoever runs the tests: confirmations must come from --yes.
        EXPECT_NE(std::freopen("/dev/null", "r", stdin), nullptr);
    }

    SermonNote seedSermon(const std::string& title) { return put(quillon::testing::makeSermon(title)); }
    SermonNote stored(const quillon::model::Uuid& id) const {
        return quillon::model::decodeSermonFile(
            quillon::platform::readFile(library() / "Sermons" / (id.text() + ".json")));
    }
};

TEST_F(EditingCommandsTest, eachEditPrintsTheControllersMessageAndAddressesItemsAsShowNumbersThem) {
    const auto sermon = seedSermon("Grace");
    const std::string id = sermon.id.text().substr(0, 8);

    struct Case {
        std::vector<std::string> arguments;
        std::string out;
    };
    const std::vector<Case> cases{
        {{"topic", "add", id, "Second"}, "Topic Added\nSaved locally\n"},
        {{"subtopic", "add", id, "2", "Under second"}, "Subtopic Added\nSaved locally\n"},
        {{"scripture", "add", id, "2.1", "rom 8 28-30", "--version", "ASV"}, "Scripture Added\nSaved locally\n"},
        {{"scripture", "add", id, "2.1", "ps 23"}, "Scripture Added\nSaved locally\n"},
        {{"scripture", "move", id, "2.1.2", "--to", "1"}, "Moved\nSaved locally\n"},
        {{"topic", "rename", id, "1", "First"}, "Renamed\nSaved locally\n"},
        {{"topic", "move", id, "2", "--to", "1"}, "Moved\nSaved locally\n"},
        {{"details", id, "1.1", "--text", "Held fast"}, "Details Saved\nSaved locally\n"},
        {{"set", id, "--series", "Romans", "--tags", "hope, joy", "--colour", "#aa0000"},
         "Sermon Updated\nSaved locally\n"},
        {{"tag", "peace", id}, "Tag Applied\n“peace” applied to 1 sermon.\n"},
        {{"pin", id}, "Pinned\n“Grace” is pinned to the top of the list.\n"},
    };
    for (const auto& c : cases) {
        const auto result = run(c.arguments);
        EXPECT_EQ(result.status, 0) << c.arguments[0] << ": " << result.err;
        EXPECT_EQ(result.out, c.out) << c.arguments[0];
    }

    const auto saved = stored(sermon.id);
    ASSERT_EQ(saved.topics.size(), 2u);
    EXPECT_EQ(saved.topics[0].title, "Second");
    EXPECT_EQ(saved.topics[1].title, "First");
    const auto& scriptures = saved.topics[0].subTopics[0].scriptures;
    ASSERT_EQ(scriptures.size(), 2u);
    EXPECT_EQ(scriptures[0].bookName, "Psalms");
    EXPECT_EQ(scriptures[1].bookName, "Romans");
    EXPECT_EQ(scriptures[1].version, quillon::model::BibleVersion::asv);
    EXPECT_EQ(saved.topics[0].subTopics[0].details, "Held fast");
    EXPECT_EQ(saved.tags, (std::vector<std::string>{"hope", "joy", "peace"}));
    EXPECT_EQ(saved.textColorHex, "#AA0000");

    const auto shown = run({"show", id}).out;
    EXPECT_NE(shown.find("   1.1 Under second\n"), std::string::npos) << shown;
    EXPECT_NE(shown.find("       1.1.2 Romans 8:28-30 (ASV)\n"), std::string::npos) << shown;
}

TEST_F(EditingCommandsTest, jsonOutputNamesTheNewItemAndFailuresGoToStandardError) {
    const auto sermon = seedSermon("Grace");
    const auto added = run({"--json", "topic", "add", sermon.id.text(), "Third"});
    ASSERT_EQ(added.status, 0) << added.err;
    const auto object = nlohmann::json::parse(added.out);
    EXPECT_EQ(object["title"], "Topic Added");
    EXPECT_EQ(object["kind"], "toast");
    EXPECT_EQ(object["number"], "2");
    EXPECT_EQ(object["id"].get<std::string>().size(), 36u);

    struct Case {
        std::vector<std::string> arguments;
        std::string err;
    };
    const std::string id = sermon.id.text();
    const std::vector<Case> cases{
        {{"scripture", "add", id, "1.1", "grace and peace"},
         "Edit Failed\nQuillon could not read “grace and peace” as a scripture reference. Type a book, a chapter and "
         "verses, for example “John 3:16-18”.\n"},
        {{"scripture", "add", id, "1", "John 3:16"}, "“1” is a topic, not a subtopic.\n"},
        {{"topic", "rename", id, "9", "Nine"},
         "“Grace” has no outline item “9”. Run “quillon show " + id.substr(0, 8) + "” to see the numbers.\n"},
        {{"set", id, "--colour", "teal"},
         "Edit Failed\n“teal” is not a colour; write it as #RRGGBB, for example "
         "#1F6FB2.\n"},
        {{"set", id}, "Say what to change: --title, --speaker, --series, --venue, --date, --tags or --colour.\n"},
        {{"cover", id, (folder / "missing.jpg").string()}, "Quillon could not read the image: "},
        {{"open", (folder / "nothing.quillet").string()}, "Open Failed\nCould not read nothing.quillet\n"},
    };
    for (const auto& c : cases) {
        const auto result = run(c.arguments);
        EXPECT_EQ(result.status, 1) << c.arguments[0];
        EXPECT_TRUE(result.err.starts_with(c.err)) << result.err;
    }
    EXPECT_EQ(stored(sermon.id).topics.size(), 2u);
}

TEST_F(EditingCommandsTest, deletingRefusesWithoutATerminalOrYesAndPrintsTheQuestion) {
    const auto sermon = seedSermon("Grace");
    const auto other = seedSermon("Hope");
    const std::string id = sermon.id.text();

    struct Case {
        std::vector<std::string> arguments;
        std::string question;
    };
    const std::vector<Case> cases{
        {{"topic", "delete", id, "1"},
         "“The love of God” will be deleted along with 1 subtopic and 1 scripture reference.\n"},
        {{"subtopic", "delete", id, "1.1"}, "“Given” will be deleted along with 1 scripture reference.\n"},
        {{"scripture", "delete", id, "1.1.1"}, "“John 3:16-17” will be removed from “Given”.\n"},
        {{"delete", id},
         "“Grace” will move to Trash. It can be restored from Setup > Trash… for 30 days, after which it is "
         "removed automatically.\n"},
        {{"delete", id, other.id.text()},
         "“Grace”, “Hope” — will move to Trash. Each can be restored from Setup > Trash… for 30 days.\n"},
    };
    for (const auto& c : cases) {
        const auto refused = run(c.arguments);
        EXPECT_EQ(refused.status, 1) << c.question;
        EXPECT_EQ(refused.out, c.question);
        EXPECT_EQ(refused.err, "Nothing was changed: confirm with --yes, or run this in a terminal.\n");
    }
    EXPECT_EQ(stored(sermon.id), sermon);
    EXPECT_TRUE(inLibrary(other.id));

    auto removed = run({"scripture", "delete", id, "1.1.1", "--yes"});
    EXPECT_EQ(removed.status, 0) << removed.err;
    EXPECT_EQ(removed.out, "“John 3:16-17” will be removed from “Given”.\nDeleted\nSaved locally\n");
    EXPECT_TRUE(stored(sermon.id).topics[0].subTopics[0].scriptures.empty());

    auto trashed = run({"delete", id, other.id.text().substr(0, 8), "--yes"});
    EXPECT_EQ(trashed.status, 0) << trashed.err;
    EXPECT_TRUE(trashed.out.ends_with("Moved to Trash\n2 sermons moved to Trash.\n")) << trashed.out;
    EXPECT_FALSE(inLibrary(sermon.id));
    EXPECT_FALSE(inLibrary(other.id));
}

TEST_F(EditingCommandsTest, restoreAsksBeforeReplacingAndTemplatesAreListed) {
    const auto sermon = seedSermon("Kept");
    const auto backup = run({"backup", (folder / "backups").string()});
    ASSERT_EQ(backup.status, 0) << backup.err;
    const std::string backupFolder = backup.out.substr(0, backup.out.size() - 1);
    ASSERT_EQ(run({"set", sermon.id.text(), "--title", "Changed"}).status, 0);

    const auto refused = run({"restore", backupFolder});
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(refused.out.starts_with("Restore sermons from “Quillon Backup ")) << refused.out;
    EXPECT_EQ(stored(sermon.id).title, "Changed");

    const auto restored = run({"restore", backupFolder, "--yes"});
    EXPECT_EQ(restored.status, 0) << restored.err;
    EXPECT_TRUE(restored.out.ends_with("Restore Complete\nRestored 1 sermon.\n")) << restored.out;
    EXPECT_EQ(stored(sermon.id).title, "Kept");

    const auto templates = run({"templates"});
    EXPECT_NE(templates.out.find("topical: Topical (Three Points) — Three supporting points under a single theme, "
                                 "each with its own scripture and application.\n"),
              std::string::npos)
        << templates.out;
    const auto help = run({"new", "--help"});
    EXPECT_NE(help.out.find("seriesKickoff: Series Kickoff — Opens a series"), std::string::npos) << help.out;
}

TEST_F(EditingCommandsTest, notesFromAnRtfFileKeepItAsTheRichTwin) {
    const auto sermon = seedSermon("Rich");
    const auto rtf = folder.write("notes.rtf", "{\\rtf1\\ansi {\\b Bold} start\\par Second line\\par}");
    const auto result = run({"notes", sermon.id.text(), "--file", rtf.string()});
    EXPECT_EQ(result.status, 0) << result.err;
    const auto saved = stored(sermon.id);
    EXPECT_EQ(saved.notesRTFData, quillon::platform::readFile(rtf));
    EXPECT_NE(saved.notes.find("Bold start"), std::string::npos) << saved.notes;
    EXPECT_NE(saved.notes.find("Second line"), std::string::npos) << saved.notes;

    const auto plain = folder.write("notes.txt", "Plain words");
    EXPECT_EQ(run({"notes", sermon.id.text(), "--file", plain.string()}).status, 0);
    EXPECT_EQ(stored(sermon.id).notes, "Plain words");
    EXPECT_EQ(stored(sermon.id).notesRTFData, std::nullopt);
}

TEST_F(EditingCommandsTest, everyEditingCommandAnswersWithOneJsonObjectNamingTheMessage) {
    const auto sermon = seedSermon("Grace");
    const std::string id = sermon.id.text();
    const auto cover = folder.write("cover.jpg", std::string("\xFF\xD8\xFF\xE0 not much of a picture", 26));
    auto elsewhere = sermon;
    elsewhere.title = "Grace, edited elsewhere";
    const auto document = quillon::model::writeSermonDocument(elsewhere, folder.path());
    const auto archive = folder.write("all.vrnsermons", quillon::model::encodeArchive({sermon}, {}));
    const auto other = seedSermon("Hope");

    struct Case {
        std::vector<std::string> arguments;
        std::string title;
    };
    const std::vector<Case> cases{
        {{"topic", "add", id, "Second"}, "Topic Added"},
        {{"topic", "rename", id, "2", "Later"}, "Renamed"},
        {{"topic", "move", id, "2", "--to", "1"}, "Moved"},
        {{"subtopic", "add", id, "1", "Under"}, "Subtopic Added"},
        {{"subtopic", "rename", id, "1.1", "Beneath"}, "Renamed"},
        {{"subtopic", "move", id, "2.1", "--topic", "1", "--to", "1"}, "Moved"},
        {{"scripture", "add", id, "1.1", "Romans 8:28"}, "Scripture Added"},
        {{"scripture", "move", id, "1.1.1", "--to", "2"}, "Moved"},
        {{"scripture", "version", id, "1.1.1", "ASV"}, "Scripture Updated"},
        {{"scripture", "highlight", id, "1.1.1", "2", "yellow"}, "Scripture Updated"},
        {{"scripture", "break", id, "1.1.1", "3"}, "Scripture Updated"},
        {{"scripture", "delete", id, "1.1.1", "--yes"}, "Deleted"},
        {{"subtopic", "delete", id, "1.1", "--yes"}, "Deleted"},
        {{"topic", "delete", id, "2", "--yes"}, "Deleted"},
        {{"details", id, "1", "--text", "Why it matters"}, "Details Saved"},
        {{"notes", id, "--text", "Begin with the prodigal."}, "Notes Saved"},
        {{"set", id, "--speaker", "Ann Lee"}, "Sermon Updated"},
        {{"cover", id, cover.string()}, "Cover Image Set"},
        {{"cover", id, "--remove"}, "Cover Image Removed"},
        {{"pin", id}, "Pinned"},
        {{"pin", id, "--off"}, "Unpinned"},
        {{"hide", id}, "Hidden"},
        {{"hide", id, "--off"}, "Shown"},
        {{"tag", "grace", id}, "Tag Applied"},
        {{"open", document.string()}, "Opened"},
        {{"import", archive.string()}, "Nothing Imported"},
        {{"delete", other.id.text(), "--yes"}, "Moved to Trash"},
    };
    for (const auto& c : cases) {
        auto arguments = c.arguments;
        arguments.push_back("--json");
        const auto result = run(arguments);
        EXPECT_EQ(result.status, 0) << c.title << ": " << result.err;
        const auto object = nlohmann::json::parse(result.out, nullptr, false);
        ASSERT_TRUE(object.is_object()) << c.title << ": " << result.out;
        EXPECT_EQ(object["title"], c.title) << result.out;
        EXPECT_EQ(object["kind"], "toast") << result.out;
        EXPECT_TRUE(object["detail"].is_string()) << result.out;
    }
    const auto saved = stored(sermon.id);
    EXPECT_EQ(saved.title, "Grace, edited elsewhere");
    EXPECT_EQ(saved.speaker, "Ann Lee");
    EXPECT_FALSE(inLibrary(other.id));
}

TEST_F(EditingCommandsTest, selftestPassesWithTheShippedBible) {
    const auto result = run({"selftest"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "Import parser: OK\nBible loader: OK\nArchive export: OK\n");
}

} // namespace
