#include "speech/TranscriptionEndpoint.h"

#include "intelligence/HttpExchange.h"
#include "speech/TranscriptionError.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>

namespace quillon::speech {

using nlohmann::json;

namespace {

constexpr std::string_view route = "/audio/transcriptions";
constexpr std::chrono::milliseconds probeReplyLimit{5000};
constexpr const char* boundary = "----QuillonRecordingBoundary7d1c";

void appendLittleEndian(std::string& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out += static_cast<char>((value >> (8 * i)) & 0xFF);
}

std::string formField(const std::string& name, const std::string& value) {
    return fmt::format("--{}\r\nContent-Disposition: form-data; name=\"{}\"\r\n\r\n{}\r\n", boundary, name, value);
}

/// Where to end a piece: the quietest 20 ms in its last five seconds, so words are not cut in two.
std::size_t quietCut(const std::vector<std::int16_t>& samples) {
    constexpr std::size_t window = AudioDecoder::sampleRate / 50;
    constexpr std::size_t searched = 5 * AudioDecoder::sampleRate;
    if (samples.size() < searched + window)
        return samples.size();
    std::size_t best = samples.size();
    long long quietest = -1;
    for (std::size_t start = samples.size() - searched; start + window <= samples.size(); start += window) {
        long long energy = 0;
        for (std::size_t i = start; i < start + window; ++i)
            energy += std::abs(static_cast<int>(samples[i]));
        if (quietest < 0 || energy < quietest) {
            quietest = energy;
            best = start + window / 2;
        }
    }
    return best;
}

} // namespace

TranscriptionEndpoint::TranscriptionEndpoint(TranscriptionSettings settings)
    : m_settings(std::move(settings)), m_endpoint(intelligence::LocalModelEndpoint::parse(m_settings.endpoint)) {
    // The preacher may have pasted the whole route rather than the server's base address.
    if (m_endpoint && m_endpoint->basePath.ends_with(route))
        m_endpoint->basePath.resize(m_endpoint->basePath.size() - route.size());
}

std::optional<std::string> TranscriptionEndpoint::target() const {
    if (!m_endpoint)
        return std::nullopt;
    return m_endpoint->target(route);
}

std::string TranscriptionEndpoint::failure(const std::string& what) const {
    return fmt::format("The transcription server at {} {}.", m_settings.endpoint, what);
}

bool TranscriptionEndpoint::answers() const {
    if (!m_endpoint)
        return false;
    try {
        // Any HTTP answer, even "method not allowed" for a GET, shows a server is listening.
        intelligence::sendHttpExchange(
            *m_endpoint,
            {"GET", *target(), {}, m_settings.connectTimeout, std::min(m_settings.replyTimeout, probeReplyLimit)});
        return true;
    } catch (const intelligence::HttpFailure&) {
        return false;
    }
}

std::string TranscriptionEndpoint::wavFile(const std::vector<std::int16_t>& samples) {
    const auto dataBytes = static_cast<std::uint32_t>(samples.size() * sizeof(std::int16_t));
    std::string file = "RIFF";
    appendLittleEndian(file, 36 + dataBytes, 4);
    file += "WAVEfmt ";
    appendLittleEndian(file, 16, 4);
    appendLittleEndian(file, 1, 2); // PCM
    appendLittleEndian(file, 1, 2); // mono
    appendLittleEndian(file, AudioDecoder::sampleRate, 4);
    appendLittleEndian(file, AudioDecoder::sampleRate * 2, 4);
    appendLittleEndian(file, 2, 2);
    appendLittleEndian(file, 16, 2);
    file += "data";
    appendLittleEndian(file, dataBytes, 4);
    for (std::int16_t sample : samples)
        appendLittleEndian(file, static_cast<std::uint16_t>(sample), 2);
    return file;
}

std::optional<std::vector<TranscriptSegment>>
TranscriptionEndpoint::segmentsOf(const std::string& reply, double offsetSeconds, double pieceLength) {
    json parsed = json::parse(reply, nullptr, false);
    if (!parsed.is_object())
        return std::nullopt;
    std::vector<TranscriptSegment> segments;
    if (parsed.contains("segments") && parsed["segments"].is_array()) {
        for (const json& entry : parsed["segments"]) {
            if (!entry.is_object() || !entry.contains("text") || !entry["text"].is_string())
                return std::nullopt;
            TranscriptSegment segment;
            segment.text = entry["text"].get<std::string>();
            const double start = entry.value("start", 0.0);
            const double end = entry.value("end", start);
            segment.startSeconds = offsetSeconds + std::clamp(start, 0.0, pieceLength);
            segment.endSeconds = offsetSeconds + std::clamp(end, start, pieceLength);
            segments.push_back(std::move(segment));
        }
        return segments;
    }
    if (!parsed.contains("text") || !parsed["text"].is_string())
        return std::nullopt;
    segments.push_back({parsed["text"].get<std::string>(), offsetSeconds, offsetSeconds + pieceLength});
    return segments;
}

std::vector<TranscriptSegment> TranscriptionEndpoint::sendPiece(const std::vector<std::int16_t>& samples,
                                                                double offsetSeconds) const {
    std::string body = formField("model", m_settings.model) + formField("language", "en") +
                       formField("response_format", "verbose_json") +
                       fmt::format("--{}\r\nContent-Disposition: form-data; name=\"file\"; filename=\"piece.wav\"\r\n"
                                   "Content-Type: audio/wav\r\n\r\n",
                                   boundary) +
                       wavFile(samples) + fmt::format("\r\n--{}--\r\n", boundary);
    intelligence::HttpExchange exchange{"POST", *target(), std::move(body), m_settings.connectTimeout,
                                        m_settings.replyTimeout};
    exchange.contentType = std::string("multipart/form-data; boundary=") + boundary;
    intelligence::HttpReply reply;
    try {
        reply = intelligence::sendHttpExchange(*m_endpoint, exchange);
    } catch (const intelligence::HttpFailure& failed) {
        switch (failed.kind()) {
        case intelligence::HttpFailure::Case::unreachable:
            throw TranscriptionError(failure("could not be reached"));
        case intelligence::HttpFailure::Case::timedOut:
            throw TranscriptionError(failure(fmt::format(
                "did not answer within {} seconds", std::chrono::duration<double>(m_settings.replyTimeout).count())));
        case intelligence::HttpFailure::Case::dropped:
            throw TranscriptionError(failure("closed the connection without answering"));
        } // no default case, so the compiler can warn about missing cases
    }
    if (reply.status != 200)
        throw TranscriptionError(failure(fmt::format("answered with HTTP status {}", reply.status)));
    const double length = static_cast<double>(samples.size()) / AudioDecoder::sampleRate;
    auto segments = segmentsOf(reply.body, offsetSeconds, length);
    if (!segments)
        throw TranscriptionError(failure("sent a reply Quillon could not read"));
    return *segments;
}

std::optional<Transcript> TranscriptionEndpoint::transcribe(AudioDecoder& audio, std::stop_token stop,
                                                            const TranscriptionProgress& progress) const {
    if (!m_endpoint)
        throw TranscriptionError(failure("is not an http:// address"));
    Transcript transcript;
    transcript.recognizer = m_settings.endpoint;
    const double total = audio.durationSeconds();
    const auto pieceSamples = static_cast<std::size_t>(pieceSeconds * AudioDecoder::sampleRate);

    std::vector<std::int16_t> piece;
    std::vector<std::int16_t> block;
    std::int64_t sent = 0;
    bool more = true;
    while (more || !piece.empty()) {
        more = more && audio.read(block);
        piece.insert(piece.end(), block.begin(), block.end());
        if (more && piece.size() < pieceSamples)
            continue;
        if (piece.empty())
            break;
        if (stop.stop_requested())
            return std::nullopt;
        const std::size_t cut = more ? quietCut(piece) : piece.size();
        std::vector<std::int16_t> rest(piece.begin() + static_cast<std::ptrdiff_t>(cut), piece.end());
        piece.resize(cut);
        const double offset = static_cast<double>(sent) / AudioDecoder::sampleRate;
        for (TranscriptSegment& segment : sendPiece(piece, offset)) {
            segment.text.erase(0, segment.text.find_first_not_of(" \t\r\n"));
            segment.text.erase(segment.text.find_last_not_of(" \t\r\n") + 1);
            if (!segment.text.empty())
                transcript.segments.push_back(std::move(segment));
        }
        sent += static_cast<std::int64_t>(piece.size());
        piece = std::move(rest);
        if (progress)
            progress(static_cast<double>(sent) / AudioDecoder::sampleRate, total);
        if (!more && piece.empty())
            break;
    }
    transcript.durationSeconds = static_cast<double>(sent) / AudioDecoder::sampleRate;
    return transcript;
}

} // namespace quillon::speech
