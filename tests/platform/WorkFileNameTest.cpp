#include "platform/WorkFileName.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sys/wait.h>
#include <unistd.h>

namespace quillon::platform {
namespace {

using testing::TemporaryFolder;
namespace fs = std::filesystem;

/// A process id that has run and is gone (reaped at once).
pid_t finishedProcess() {
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(0);
    ::waitpid(child, nullptr, 0);
    return child;
}

/// A work-file name made by `pid` on this computer.
std::string madeBy(pid_t pid, std::string_view name, std::string_view suffix) {
    std::string own = workFileName::beside(name, suffix);
    // ".<name>.<host>-<pid>-<random><suffix>": put `pid` in place of this process's.
    char hex[16];
    std::snprintf(hex, sizeof hex, "%x", static_cast<unsigned>(::getpid()));
    const std::string ownPid = "-" + std::string(hex) + "-";
    std::snprintf(hex, sizeof hex, "%x", static_cast<unsigned>(pid));
    own.replace(own.find(ownPid), ownPid.size(), "-" + std::string(hex) + "-");
    return own;
}

TEST(WorkFileName, tellsALeftoverOfAGoneProcessFromWorkInProgress) {
    const pid_t gone = finishedProcess();
    const std::string live = workFileName::beside("sermon.json", ".tmp");
    EXPECT_TRUE(live.starts_with(".sermon.json."));
    EXPECT_TRUE(live.ends_with(".tmp"));
    EXPECT_NE(workFileName::beside("sermon.json", ".tmp"), live);
    EXPECT_EQ(live.size(), std::string(".sermon.json.").size() + workFileName::maximumTagBytes + 4);

    struct Case {
        std::string name;
        bool abandoned;
    };
    const std::vector<Case> cases{
        {madeBy(gone, "sermon.json", ".tmp"), true},
        {madeBy(gone, "Quillon Backup 2025-03-09 14-30-00.quillonbackup", ".partial"), true},
        {live, false},
        {madeBy(1, "sermon.json", ".tmp"), false}, // still running
        // Another computer's work in a synced folder: its process ids mean nothing here.
        {".sermon.json.0bad-1-00000000ff.tmp", false},
        {madeBy(gone, "sermon.json", ".tmp").substr(1), false}, // not hidden
        {".sermon.json.tmp", false},
        {".x.y", false},
        {".", false},
        {"", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(workFileName::isAbandoned(c.name), c.abandoned) << c.name;
}

TEST(WorkFileName, removesOnlyAbandonedFilesAndFolders) {
    TemporaryFolder folder;
    const pid_t gone = finishedProcess();
    folder.write("sermon.json", "{}");
    folder.write(madeBy(gone, "sermon.json", ".tmp"), "half");
    folder.write(madeBy(gone, "Backup.quillonbackup", ".partial") + "/sermons.json", "[]");
    const std::string inProgress = workFileName::beside("other.json", ".tmp");
    folder.write(inProgress, "still being written");

    EXPECT_EQ(workFileName::removeAbandoned(folder.path()), 2);
    std::set<std::string> left;
    for (const auto& entry : fs::directory_iterator(folder.path()))
        left.insert(entry.path().filename().string());
    EXPECT_EQ(left, (std::set<std::string>{"sermon.json", inProgress}));
    EXPECT_EQ(workFileName::removeAbandoned(folder / "missing"), 0);
}

} // namespace
} // namespace quillon::platform
