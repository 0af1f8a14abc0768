#include "app/InterfaceState.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace quillon::app {
namespace {

TEST(InterfaceState, columnWidthsAreCappedAboveAndDefaultedAtZero) {
    struct Case {
        nlohmann::json stored;
        double topic;
        double subtopic;
        double scripture;
    };
    const std::vector<Case> cases{
        {400, 165, 195, 165},
        {180, 165, 180, 165},
        {165, 165, 165, 165},
        {100, 100, 100, 100},
        {0, InterfaceState::defaultTopicColumnWidth, InterfaceState::defaultSubtopicColumnWidth,
         InterfaceState::defaultScriptureColumnWidth},
        {-20, InterfaceState::defaultTopicColumnWidth, InterfaceState::defaultSubtopicColumnWidth,
         InterfaceState::defaultScriptureColumnWidth},
        {"wide", InterfaceState::defaultTopicColumnWidth, InterfaceState::defaultSubtopicColumnWidth,
         InterfaceState::defaultScriptureColumnWidth},
    };
    for (const auto& c : cases) {
        auto preferences = platform::Preferences::inMemory();
        preferences.set(InterfaceState::topicColumnWidthKey, c.stored);
        preferences.set(InterfaceState::subtopicColumnWidthKey, c.stored);
        preferences.set(InterfaceState::scriptureColumnWidthKey, c.stored);
        const auto state = InterfaceState::read(preferences);
        EXPECT_EQ(state.topicColumnWidth, c.topic) << c.stored;
        EXPECT_EQ(state.subtopicColumnWidth, c.subtopic) << c.stored;
        EXPECT_EQ(state.scriptureColumnWidth, c.scripture) << c.stored;
    }
}

TEST(InterfaceState, readsLayoutAndModesAndFallsBackOnUnknownValues) {
    auto preferences = platform::Preferences::inMemory();
    EXPECT_EQ(InterfaceState::read(preferences), InterfaceState{});

    preferences.set(InterfaceState::layoutStyleKey, "modernOutline");
    preferences.set(InterfaceState::readingModeKey, true);
    preferences.set(InterfaceState::compactLayoutKey, true);
    preferences.set(InterfaceState::scriptureSearchQueryKey, "shepherd");
    auto state = InterfaceState::read(preferences);
    EXPECT_EQ(state.layoutStyle, AppLayoutStyle::modernOutline);
    EXPECT_TRUE(state.readingMode);
    EXPECT_TRUE(state.compactLayout);
    EXPECT_EQ(state.scriptureSearchQuery, "shepherd");

    preferences.set(InterfaceState::layoutStyleKey, "gallery");
    EXPECT_EQ(InterfaceState::read(preferences).layoutStyle, AppLayoutStyle::classic);
}

TEST(InterfaceState, recentFilesKeepTheNewestFirstWithoutRepeatsWithinTheLimit) {
    auto preferences = platform::Preferences::inMemory();
    preferences.set(InterfaceState::recentSermonLimitKey, 3);
    preferences.set(InterfaceState::recentSermonFilesKey, {"a", "b", "c", "d", "e"});
    auto state = InterfaceState::read(preferences);
    EXPECT_EQ(state.recentSermonFiles, (std::vector<std::string>{"a", "b", "c"}));
    state.rememberRecentFile("c");
    EXPECT_EQ(state.recentSermonFiles, (std::vector<std::string>{"c", "a", "b"}));
    state.rememberRecentFile("new");
    EXPECT_EQ(state.recentSermonFiles, (std::vector<std::string>{"new", "c", "a"}));

    preferences.set(InterfaceState::recentSermonLimitKey, 0);
    EXPECT_EQ(InterfaceState::read(preferences).recentSermonLimit, 10);
}

} // namespace
} // namespace quillon::app
