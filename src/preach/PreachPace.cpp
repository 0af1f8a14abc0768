#include "preach/PreachPace.h"

#include "platform/Preferences.h"
#include "preach/PreachPaceLearner.h"
#include "preach/SpeakerProfile.h"

#include <fmt/format.h>

#include <cmath>

namespace quillon::preach {

PreachPace PreachPace::fromPreferences(const platform::Preferences& preferences) {
    PreachPace pace;
    pace.wordsPerMinute = preferences.positiveNumber(proseWordsPerMinuteKey, pace.wordsPerMinute);
    pace.scriptureFactor = preferences.positiveNumber(scriptureFactorKey, pace.scriptureFactor);
    pace.listFactor = preferences.positiveNumber(listFactorKey, pace.listFactor);
    // Turning the setting on is what marks the pace as measured: until the first recording the
    // starting pace stands in, and each recording then moves it towards the preacher's own.
    pace.measured = preferences.boolean(measuredFromRecordingKey, false);
    if (pace.measured)
        if (std::optional<double> learned = PreachPaceLearner::learnedPace(
                PreachPaceLearner::storedObservations(preferences), pace.scriptureFactor, pace.listFactor))
            pace.wordsPerMinute = *learned;
    return pace;
}

PreachPace PreachPace::forSpeaker(const platform::Preferences& preferences, const std::string& speaker) {
    PreachPace pace = fromPreferences(preferences);
    if (std::optional<SpeakerProfile> profile = SpeakerProfile::named(preferences, speaker))
        if (profile->wordsPerMinuteOverride && *profile->wordsPerMinuteOverride > 0 &&
            std::isfinite(*profile->wordsPerMinuteOverride)) {
            pace.wordsPerMinute = *profile->wordsPerMinuteOverride;
            pace.measured = false;
        }
    return pace;
}

std::string PreachPace::explanation() const {
    if (measured)
        return "Preach Preview will treat its estimate as based on how you actually speak.";
    return fmt::format("Estimated from a starting pace of {} words a minute. Record how long a sermon actually took "
                       "to teach the estimate your own pace.",
                       static_cast<long long>(std::lround(wordsPerMinute)));
}

} // namespace quillon::preach
