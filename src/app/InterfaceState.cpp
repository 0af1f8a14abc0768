#include "app/InterfaceState.h"

#include <algorithm>
#include <cmath>

namespace quillon::app {

double InterfaceState::columnWidth(double stored, double cap, double fallback) {
    if (!std::isfinite(stored) || stored <= 0)
        return fallback;
    return std::min(stored, cap);
}

InterfaceState InterfaceState::read(const platform::Preferences& preferences) {
    InterfaceState state;
    state.recentSermonLimit =
        static_cast<int>(preferences.positiveNumber(recentSermonLimitKey, defaultRecentSermonLimit));
    if (state.recentSermonLimit < 1)
        state.recentSermonLimit = defaultRecentSermonLimit;
    state.recentSermonFiles = preferences.stringList(recentSermonFilesKey);
    if (state.recentSermonFiles.size() > static_cast<std::size_t>(state.recentSermonLimit))
        state.recentSermonFiles.resize(static_cast<std::size_t>(state.recentSermonLimit));
    state.scriptureSearchQuery = preferences.string(scriptureSearchQueryKey);
    // positiveNumber already turns zero, negative and non-numbers into the fallback; the cap is ours.
    state.topicColumnWidth = columnWidth(preferences.positiveNumber(topicColumnWidthKey, defaultTopicColumnWidth),
                                         topicColumnWidthCap, defaultTopicColumnWidth);
    state.subtopicColumnWidth =
        columnWidth(preferences.positiveNumber(subtopicColumnWidthKey, defaultSubtopicColumnWidth),
                    subtopicColumnWidthCap, defaultSubtopicColumnWidth);
    state.scriptureColumnWidth =
        columnWidth(preferences.positiveNumber(scriptureColumnWidthKey, defaultScriptureColumnWidth),
                    scriptureColumnWidthCap, defaultScriptureColumnWidth);
    state.compactLayout = preferences.boolean(compactLayoutKey, false);
    state.readingMode = preferences.boolean(readingModeKey, false);
    state.layoutStyle =
        appLayoutStyleFromRawValue(preferences.string(layoutStyleKey, "classic")).value_or(AppLayoutStyle::classic);
    return state;
}

void InterfaceState::rememberRecentFile(const std::string& file) {
    std::erase(recentSermonFiles, file);
    recentSermonFiles.insert(recentSermonFiles.begin(), file);
    if (recentSermonFiles.size() > static_cast<std::size_t>(recentSermonLimit))
        recentSermonFiles.resize(static_cast<std::size_t>(recentSermonLimit));
}

} // namespace quillon::app
