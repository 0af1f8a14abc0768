#include "app/SettingsCatalogue.h"
#include "app/CatalogueSearch.h"
#include "app/SettingsSearch.h"
#include "platform/Preferences.h"
#include "preach/PreachPace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace quillon::app {
namespace {

bool finds(const std::vector<std::string>& keys, const std::string& key) {
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

TEST(SettingsSearch, FindsSettingsByWordsPrefixesAndMisspellings) {
    struct Case {
        std::string query;
        std::string firstKey;
    };
    const std::vector<Case> cases = {
        {"pace", preach::PreachPace::proseWordsPerMinuteKey},
        {"pase", preach::PreachPace::proseWordsPerMinuteKey},
        {"pac", preach::PreachPace::proseWordsPerMinuteKey},
        {"trash", "Quillon.trashRetentionDays"},
        {"trahs", "Quillon.trashRetentionDays"},
        {"undo", "Quillon.timing.undoCoalesceInterval"},
        {"model servr address", "Quillon.intelligence.endpoint"},
        {"sync folder", "Quillon.storage.syncFolder"},
        {"pairing", "Quillon.suiteMesh.requirePairing"},
    };
    SettingsSearch search;
    for (const Case& c : cases) {
        const std::vector<std::string> keys = search.keys(c.query);
        ASSERT_FALSE(keys.empty()) << c.query;
        EXPECT_TRUE(finds(std::vector(keys.begin(), keys.begin() + std::min<std::size_t>(keys.size(), 3)), c.firstKey))
            << c.query << " found " << keys.front();
    }
    EXPECT_EQ(search.banner("pase"), "Showing results for pace");
    EXPECT_EQ(search.banner("pace"), "");
    EXPECT_TRUE(search.keys("").empty());
    EXPECT_TRUE(search.keys("zzzzqqq").empty());
    EXPECT_TRUE(search.keys("   ").empty());
}

TEST(SettingsCatalogue, EveryKeyIsListedOnceWithLabelAndExplanation) {
    std::set<std::string> keys;
    for (const SettingDescription& setting : SettingsCatalogue::all()) {
        EXPECT_TRUE(keys.insert(setting.key).second) << setting.key;
        EXPECT_NE(std::string(setting.label), "");
        EXPECT_NE(std::string(setting.explanation), "");
        EXPECT_EQ(std::string(setting.explanation).find('\n'), std::string::npos);
    }
    EXPECT_EQ(SettingsCatalogue::groups().front(), "Storage");
}

TEST(SettingsCatalogue, RefusesInvalidValuesWithASentenceAndKeepsTheOldValue) {
    struct Case {
        std::string key;
        std::string text;
        std::string refusal;
    };
    const std::vector<Case> cases = {
        {preach::PreachPace::proseWordsPerMinuteKey, "fast",
         "Starting pace (words a minute) must be a number from 60 to 260."},
        {preach::PreachPace::proseWordsPerMinuteKey, "400", "Starting pace (words a minute) must be from 60 to 260."},
        {"Quillon.trashRetentionDays", "2.5", "Keep trashed sermons for (days) must be a whole number from 1 to 3650."},
        {"Quillon.intelligence.endpoint", "localhost:8080",
         "Model server address must be a web address such as http://127.0.0.1:8080/v1."},
        {"vantalink.calvaneAddress", "calvane",
         "Calvane address must be a host and a port, such as 192.168.1.20:7318."},
        {"vantalink.port", "70000", "Mesh port must be from 0 to 65535."},
        {"Quillon.storage.syncFolder", "Dropbox", "Sync folder must be a folder’s full path, starting with /."},
        {"Quillon.layoutStyle", "grid", "Outline layout must be classic or modernOutline."},
        {"Quillon.compactLayout", "maybe", "Compact layout is either on or off."},
        {"Quillon.screens.openlp.address", "hall pc",
         "OpenLP address must be a computer’s name or address, with “:” and a port if it needs one."},
        {preach::PreachPace::proseWordsPerMinuteKey, "nan",
         "Starting pace (words a minute) must be a number from 60 to 260."},
    };
    for (const Case& c : cases) {
        platform::Preferences preferences = platform::Preferences::inMemory();
        preferences.set(c.key, "kept");
        const SettingDescription* setting = SettingsCatalogue::find(c.key);
        ASSERT_NE(setting, nullptr) << c.key;
        EXPECT_EQ(SettingsCatalogue::apply(preferences, *setting, c.text).value_or(""), c.refusal) << c.text;
        EXPECT_EQ(preferences.string(c.key), "kept");
    }
}

TEST(SettingsCatalogue, StoresTypedValuesAsTheirReadersExpect) {
    platform::Preferences preferences = platform::Preferences::inMemory();
    auto apply = [&](const char* key, const char* text) {
        return SettingsCatalogue::apply(preferences, *SettingsCatalogue::find(key), text);
    };
    EXPECT_FALSE(apply(preach::PreachPace::proseWordsPerMinuteKey, " 142 "));
    EXPECT_EQ(preach::PreachPace::fromPreferences(preferences).wordsPerMinute, 142);
    EXPECT_FALSE(apply(preach::PreachPace::measuredFromRecordingKey, "on"));
    EXPECT_TRUE(preferences.boolean(preach::PreachPace::measuredFromRecordingKey, false));
    EXPECT_FALSE(apply("Quillon.intelligence.endpoint", "http://127.0.0.1:9/v1"));
    EXPECT_EQ(SettingsCatalogue::displayed(preferences, *SettingsCatalogue::find("Quillon.intelligence.endpoint")),
              "http://127.0.0.1:9/v1");
    EXPECT_FALSE(apply("Quillon.screens.bibleSync.trustedSpeakers", " Xiphos, ,192.168.1.9 "));
    EXPECT_EQ(preferences.stringList("Quillon.screens.bibleSync.trustedSpeakers"),
              (std::vector<std::string>{"Xiphos", "192.168.1.9"}));
    EXPECT_EQ(SettingsCatalogue::displayed(preferences,
                                           *SettingsCatalogue::find("Quillon.screens.bibleSync.trustedSpeakers")),
              "Xiphos, 192.168.1.9");
    EXPECT_FALSE(apply(preach::PreachPace::proseWordsPerMinuteKey, ""));
    EXPECT_FALSE(preferences.contains(preach::PreachPace::proseWordsPerMinuteKey));
}

TEST(CatalogueSearch, RanksTitleWordsAndBreaksNoTies) {
    CatalogueSearch search({{"a", "Preach Preview", "How long the sermon takes"},
                            {"b", "Exports", "Word, PDF and slides of a sermon"},
                            {"c", "The trash", "Bring back a sermon"}});
    auto hits = search.search("sermon", 10).hits;
    ASSERT_EQ(hits.size(), 3u);
    EXPECT_EQ(hits[0].documentID, "a");
    EXPECT_EQ(search.search("preveiw", 10).hits.at(0).documentID, "a");
    EXPECT_EQ(search.search("sermon", 0).hits.size(), 0u);
    EXPECT_TRUE(CatalogueSearch({}).search("anything", 5).hits.empty());
}

} // namespace
} // namespace quillon::app
