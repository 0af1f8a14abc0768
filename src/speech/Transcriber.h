#pragma once

#include "speech/Transcript.h"
#include "speech/TranscriptionProgress.h"
#include "speech/TranscriptionSettings.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace quillon::speech {

class PocketSphinxRecognizer;

/// Turns a recording into text: the transcription server first when one is set, and pocketsphinx
/// whenever the server is not set, cannot be reached, is too slow or answers with an error, the
/// same rules the model server follows. The server's failure is logged, never shown. Use from one
/// thread at a time.
class Transcriber {
public:
    explicit Transcriber(TranscriptionSettings settings);
    ~Transcriber();

    const TranscriptionSettings& settings() const { return m_settings; }

    /// Nothing when a recogniser can be used; else the sentence that says what to install or
    /// start (no server and no model: not installed; a server set that does not answer and no
    /// model: it did not answer).
    std::optional<std::string> unavailableReason() const;

    /// The transcript of `file`; nothing when `stop` was requested. Throws TranscriptionError
    /// when the file cannot be read or no recogniser can be used.
    std::optional<Transcript> transcribe(const std::filesystem::path& file, std::stop_token stop = {},
                                         const TranscriptionProgress& progress = {});

private:
    std::optional<Transcript> transcribeOnDevice(const std::filesystem::path& file, std::stop_token stop,
                                                 const TranscriptionProgress& progress);

    TranscriptionSettings m_settings;
    /// Loaded on first use and kept: loading the model costs more than a short recording.
    std::unique_ptr<PocketSphinxRecognizer> m_onDevice;
};

} // namespace quillon::speech
