#pragma once

#include <string>

namespace quillon::platform {
class Preferences;
}

namespace quillon::preach {

/// The rates an estimate uses: prose words a minute, and the speeds of Scripture reading and of
/// lists as fractions of it.
struct PreachPace {
    static constexpr const char* proseWordsPerMinuteKey = "Quillon.pace.proseWordsPerMinute";
    static constexpr const char* scriptureFactorKey = "Quillon.pace.scriptureFactor";
    static constexpr const char* listFactorKey = "Quillon.pace.listFactor";
    static constexpr const char* measuredFromRecordingKey = "Quillon.pace.measuredFromRecording";

    double wordsPerMinute = 130;
    double scriptureFactor = 0.75;
    double listFactor = 0.8;
    /// True when the preacher has chosen to have the pace measured from recorded sermons; until
    /// the first recording `wordsPerMinute` is still the starting pace.
    bool measured = false;

    bool operator==(const PreachPace&) const = default;

    /// The stored settings (each used only when greater than 0). "Measured from recording" on marks
    /// the pace as measured; a learned pace, once there is one, replaces the starting pace.
    static PreachPace fromPreferences(const platform::Preferences& preferences);

    /// As above, then a speaker's own words-a-minute override, when that speaker has one, replaces
    /// the pace for sermons by that speaker.
    static PreachPace forSpeaker(const platform::Preferences& preferences, const std::string& speaker);

    /// The settings' explanation of where the pace comes from.
    std::string explanation() const;
};

/// The prompt shown when the preacher records how long a sermon took.
inline constexpr const char* recordingPrompt =
    "How many minutes did this sermon actually take to preach? Future estimates learn from this.";

} // namespace quillon::preach
