#pragma once

#include "app/AppLayoutStyle.h"
#include "platform/Preferences.h"

#include <string>
#include <vector>

namespace quillon::app {

/// The desk's look that survives a restart, each part under its own preference key.
///
/// Column widths have an upper cap only: a stored width above it is taken as the cap. A stored
/// width of zero, a negative one or anything that is not a number means the column's default.
struct InterfaceState {
    static constexpr const char* recentSermonFilesKey = "Quillon.recentSermonFiles";
    static constexpr const char* recentSermonLimitKey = "Quillon.recentSermonLimit";
    static constexpr const char* scriptureSearchQueryKey = "Quillon.scriptureSearchQuery";
    static constexpr const char* topicColumnWidthKey = "Quillon.topicColumnWidth";
    static constexpr const char* subtopicColumnWidthKey = "Quillon.subtopicColumnWidth";
    static constexpr const char* scriptureColumnWidthKey = "Quillon.scriptureColumnWidth";
    static constexpr const char* compactLayoutKey = "Quillon.compactLayout";
    static constexpr const char* readingModeKey = "Quillon.readingMode";
    static constexpr const char* layoutStyleKey = "Quillon.layoutStyle";

    static constexpr int defaultRecentSermonLimit = 10;
    static constexpr double topicColumnWidthCap = 165;
    static constexpr double subtopicColumnWidthCap = 195;
    static constexpr double scriptureColumnWidthCap = 165;
    static constexpr double defaultTopicColumnWidth = 150;
    static constexpr double defaultSubtopicColumnWidth = 180;
    static constexpr double defaultScriptureColumnWidth = 150;

    /// Most recent first, never longer than `recentSermonLimit`.
    std::vector<std::string> recentSermonFiles;
    int recentSermonLimit = defaultRecentSermonLimit;
    std::string scriptureSearchQuery;
    double topicColumnWidth = defaultTopicColumnWidth;
    double subtopicColumnWidth = defaultSubtopicColumnWidth;
    double scriptureColumnWidth = defaultScriptureColumnWidth;
    bool compactLayout = false;
    bool readingMode = false;
    AppLayoutStyle layoutStyle = AppLayoutStyle::classic;

    /// Reads every key; absent or unusable values give the defaults above.
    static InterfaceState read(const platform::Preferences& preferences);

    /// A width as it is kept: above `cap` becomes `cap`; zero, negative or not finite is `fallback`.
    static double columnWidth(double stored, double cap, double fallback);

    /// Puts `file` first, removes an earlier mention of it and trims to the limit.
    void rememberRecentFile(const std::string& file);

    bool operator==(const InterfaceState&) const = default;
};

} // namespace quillon::app
