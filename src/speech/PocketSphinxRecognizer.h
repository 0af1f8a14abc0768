#pragma once

#include "speech/AudioDecoder.h"
#include "speech/Transcript.h"
#include "speech/TranscriptionProgress.h"

#include <filesystem>
#include <optional>
#include <stop_token>

namespace quillon::speech {

/// On-device recognition with pocketsphinx and a US English model folder (acoustic model "en-us",
/// "en-us.lm.bin", "cmudict-en-us.dict"). The audio is decoded utterance by utterance, cut where
/// the speaker pauses (and at the latest every half minute), so the decoder's memory stays small
/// however long the recording is. Not safe to share between threads.
class PocketSphinxRecognizer {
public:
    /// A pause at least this long starts a new segment.
    static constexpr double pauseSeconds = 0.6;

    /// Throws TranscriptionError when the model is missing or the decoder cannot start.
    explicit PocketSphinxRecognizer(const std::filesystem::path& modelFolder);
    ~PocketSphinxRecognizer();
    PocketSphinxRecognizer(const PocketSphinxRecognizer&) = delete;
    PocketSphinxRecognizer& operator=(const PocketSphinxRecognizer&) = delete;

    /// True when every file the decoder needs is in `modelFolder`.
    static bool isInstalled(const std::filesystem::path& modelFolder);

    /// Everything `audio` still holds; nothing when `stop` was requested first.
    std::optional<Transcript> transcribe(AudioDecoder& audio, std::stop_token stop,
                                         const TranscriptionProgress& progress = {});

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace quillon::speech
