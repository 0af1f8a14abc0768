#pragma once

#include <functional>

namespace quillon::speech {

/// Told how far a transcription has come: seconds of the recording heard so far and its length
/// (0 when the file does not say). Called on the transcribing thread.
using TranscriptionProgress = std::function<void(double heardSeconds, double totalSeconds)>;

} // namespace quillon::speech
