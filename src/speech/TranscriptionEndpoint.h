#pragma once

#include "intelligence/LocalModelEndpoint.h"
#include "speech/AudioDecoder.h"
#include "speech/Transcript.h"
#include "speech/TranscriptionProgress.h"
#include "speech/TranscriptionSettings.h"

#include <optional>
#include <stop_token>
#include <string>

namespace quillon::speech {

/// A transcription server on this computer speaking the OpenAI-compatible
/// `/v1/audio/transcriptions` route (whisper.cpp's server, a llama.cpp-style gateway). The
/// recording is sent in pieces of about half a minute, cut at the quietest moment near each
/// boundary, so no request holds more than a piece and progress can be told between them.
class TranscriptionEndpoint {
public:
    /// Longest piece sent in one request.
    static constexpr double pieceSeconds = 30;

    explicit TranscriptionEndpoint(TranscriptionSettings settings);

    /// The request target of the transcription route ("/v1/audio/transcriptions"); nothing when
    /// the setting is not an http:// address.
    std::optional<std::string> target() const;

    /// True when the server answers at all within the connect and probe limits.
    bool answers() const;

    /// Everything `audio` still holds; nothing when `stop` was requested first. Throws
    /// TranscriptionError naming the server when it cannot be reached, does not answer in time,
    /// answers with an error status or with something that is not a transcription.
    std::optional<Transcript> transcribe(AudioDecoder& audio, std::stop_token stop,
                                         const TranscriptionProgress& progress = {}) const;

    /// A 16 kHz mono 16-bit WAV file holding `samples`.
    static std::string wavFile(const std::vector<std::int16_t>& samples);

    /// The segments of a reply: "verbose_json" segments with their times, else the plain "text"
    /// as one segment; times are moved by `offsetSeconds`. Nothing when the reply is not JSON
    /// with either.
    static std::optional<std::vector<TranscriptSegment>> segmentsOf(const std::string& reply, double offsetSeconds,
                                                                    double pieceLength);

private:
    std::vector<TranscriptSegment> sendPiece(const std::vector<std::int16_t>& samples, double offsetSeconds) const;
    std::string failure(const std::string& what) const;

    TranscriptionSettings m_settings;
    std::optional<intelligence::LocalModelEndpoint> m_endpoint;
};

} // namespace quillon::speech
