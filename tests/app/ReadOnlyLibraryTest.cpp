// A library the desk may read but not write (a read-only mount, a folder without write
// permission): it opens with every sermon, an edit says it was not saved, the files stay as they
// were, and the kept change is written once the library can be written again.
#include "ControllerHarness.h"

#include "app/ControllerTexts.h"
#include "platform/AtomicFile.h"
#include "support/LogCapture.h"
#include "support/PrivateMountNamespace.h"

#include <gtest/gtest.h>

#include <sys/mount.h>
#include <unistd.h>

namespace quillon::app {
namespace {

namespace fs = std::filesystem;

/// Takes write access to `library` away and gives it back.
struct Lock {
    std::function<bool()> take;
    std::function<bool()> giveBack;
};

Lock readOnlyMount(const fs::path& library) {
    return {[library] {
                return ::mount(library.c_str(), library.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0 &&
                       ::mount(nullptr, library.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr) == 0;
            },
            [library] { return ::umount(library.c_str()) == 0; }};
}

Lock withoutWritePermission(const fs::path& library) {
    auto setAll = [library](fs::perms perms) {
        std::error_code error;
        for (const char* folder : {"Sermons", "Media", ""})
            fs::permissions(library / folder, perms, error);
        return !error;
    };
    return {[setAll] { return setAll(fs::perms(0555)); }, [setAll] { return setAll(fs::perms(0755)); }};
}

std::string snapshot(const fs::path& folder) {
    std::string all;
    for (const auto& entry : fs::directory_iterator(folder))
        all += entry.path().filename().string() + "=" + platform::readFile(entry.path()) + "\n";
    return all;
}

/// The scenario; returns the problems found.
std::string editAReadOnlyLibrary(quillon::testing::ControllerHarness& desk, const Lock& lock) {
    std::string problems;
    auto check = [&problems](bool condition, const std::string& problem) {
        if (!condition)
            problems += problem + "\n";
    };
    const fs::path sermons = desk.folder / "library" / "Sermons";
    const std::string before = snapshot(sermons);
    if (!lock.take())
        return "could not make the library read-only";

    auto& controller = desk.open();
    check(desk.manager->sermons().size() == 2, "the desk did not load both sermons");
    const model::Uuid id = desk.manager->sermons().front().id;
    const std::string title = desk.manager->sermons().front().title;
    {
        quillon::testing::LogCapture log;
        check(controller.addTopic(id, "Kept in memory").has_value(), "the edit was refused");
        check(log.contains("error: Failed to save sermon \"" + title + "\""), "the failed save was not logged");
    }
    const auto& toast = desk.listener.messages.back();
    check(toast.title == "Topic Added" && toast.detail == notSavedDetail(title),
          "the edit claimed a save: " + toast.title + " / " + toast.detail);
    check(snapshot(sermons) == before, "a sermon file changed in the read-only library");

    if (!lock.giveBack())
        return problems + "could not make the library writable again";
    check(controller.addTopic(id, "Written later").has_value(), "the second edit was refused");
    check(desk.listener.messages.back().detail != notSavedDetail(title), "the writable library did not save");
    desk.open();
    const auto* reopened = desk.manager->sermon(id);
    check(reopened && reopened->topics.size() == 3, "the change kept in memory was lost");
    return problems;
}

void seedTwoSermons(quillon::testing::ControllerHarness& desk) {
    desk.seed(quillon::testing::makeSermon("Grace"));
    desk.seed(quillon::testing::makeSermon("Hope"));
    fs::create_directories(desk.folder / "library" / "Media");
}

TEST(ReadOnlyLibrary, opensReportsUnsavedEditsAndLosesNothing) {
    quillon::testing::ControllerHarness desk;
    seedTwoSermons(desk);
    const fs::path library = desk.folder / "library";
    if (::geteuid() != 0) {
        EXPECT_EQ(editAReadOnlyLibrary(desk, withoutWritePermission(library)), "");
        return;
    }
    // Permissions do not stop root; a read-only bind mount in a namespace of its own does.
    const auto problems =
        quillon::testing::inPrivateMountNamespace([&] { return editAReadOnlyLibrary(desk, readOnlyMount(library)); });
    if (!problems)
        GTEST_SKIP() << "no private mount namespace here, and permissions do not stop root";
    EXPECT_EQ(*problems, "");
}

} // namespace
} // namespace quillon::app
