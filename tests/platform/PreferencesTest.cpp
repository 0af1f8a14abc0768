#include "platform/Preferences.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillon::platform {
namespace {

using testing::TemporaryFolder;
namespace fs = std::filesystem;

TEST(Preferences, positiveNumbersWinElseTheDefault) {
    auto preferences = Preferences::inMemory();
    const std::string key = "Quillon.timing.undoCoalesceInterval";
    struct Case {
        nlohmann::json stored;
        double expected;
    };
    for (const Case& c :
         {Case{nullptr, 0.9}, Case{0, 0.9}, Case{-1, 0.9}, Case{"2", 0.9}, Case{1.5, 1.5}, Case{3, 3.0}}) {
        if (c.stored.is_null())
            preferences.remove(key);
        else
            preferences.set(key, c.stored);
        EXPECT_DOUBLE_EQ(preferences.positiveNumber(key, 0.9), c.expected) << c.stored.dump();
    }
}

TEST(Preferences, changesPersistAcrossInstances) {
    TemporaryFolder folder;
    auto file = folder / "config" / "Quillon" / "preferences.json";
    {
        Preferences preferences(file);
        preferences.set("Quillon.pinnedSermonIds", {"A", "B"});
        preferences.set("Quillon.sampleSermonsHidden", true);
        preferences.set("Quillon.selectedSermonId", "A");
        preferences.remove("Quillon.selectedSermonId");
    }
    Preferences again(file);
    EXPECT_EQ(again.stringList("Quillon.pinnedSermonIds"), (std::vector<std::string>{"A", "B"}));
    EXPECT_TRUE(again.boolean("Quillon.sampleSermonsHidden", false));
    EXPECT_FALSE(again.contains("Quillon.selectedSermonId"));
    EXPECT_EQ(again.string("Quillon.selectedSermonId", "none"), "none");
}

TEST(Preferences, backgroundWritesEndWithTheNewestValues) {
    TemporaryFolder folder;
    auto file = folder / "config" / "preferences.json";
    {
        Preferences preferences(file);
        preferences.writeInBackground();
        for (int width = 1; width <= 50; ++width)
            preferences.set("Quillon.topicColumnWidth", width);
        preferences.flush();
        EXPECT_EQ(Preferences(file).positiveNumber("Quillon.topicColumnWidth", 0), 50);
        // What is still waiting when the preferences go is written before they are gone.
        preferences.set("Quillon.selectedSermonId", "B");
        preferences.remove("Quillon.topicColumnWidth");
    }
    Preferences again(file);
    EXPECT_EQ(again.string("Quillon.selectedSermonId"), "B");
    EXPECT_FALSE(again.contains("Quillon.topicColumnWidth"));
}

TEST(Preferences, corruptFileIsMovedAsideAndDefaultsUsed) {
    TemporaryFolder folder;
    for (const char* garbage : {"{not json", "[1, 2, 3]", "\xff\xfe\x00"}) {
        auto file = folder.write("p/preferences.json", garbage);
        testing::LogCapture log;
        Preferences preferences(file);
        EXPECT_FALSE(preferences.contains("anything"));
        EXPECT_FALSE(fs::exists(file));
        EXPECT_TRUE(log.contains("moved it to"));
        bool keptAside = false;
        for (const auto& entry : fs::directory_iterator(folder / "p")) {
            if (entry.path().filename().string().starts_with("preferences.json.corrupt-")) {
                keptAside = testing::readText(entry.path()) == std::string(garbage);
                fs::remove(entry.path());
            }
        }
        EXPECT_TRUE(keptAside) << garbage;
        preferences.set("Quillon.trashRetentionDays", 7);
        EXPECT_EQ(Preferences(file).positiveNumber("Quillon.trashRetentionDays", 30), 7);
        fs::remove(file);
    }
}

} // namespace
} // namespace quillon::platform
