#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::mesh {

/// Every kind of Vantalink message; the raw value of each is its name.
enum class SermonStudioMessageType {
    hello,
    heartbeat,
    studioStatus,
    requestScripture,
    nextVerse,
    previousVerse,
    scriptureAnnouncement,
    scriptureCleared,
    scriptureDisplayed,
    scriptureFaded,
    pairChallenge,
    pairResponse,
    pairRejected,
    pairAccepted,
    toolRequest,
    toolResponse,
    unknown,
};

std::string_view rawValue(SermonStudioMessageType type);
/// A raw value not in the list is `unknown`.
SermonStudioMessageType messageTypeFromRawValue(std::string_view text);

/// The Vantalink envelope: JSON {"type", "payload" (string to string), "timestamp"}, the timestamp
/// in seconds since 2001-01-01T00:00:00Z as the sibling applications write it.
struct SermonStudioMessage {
    SermonStudioMessageType type = SermonStudioMessageType::unknown;
    std::map<std::string, std::string> payload;
    std::chrono::system_clock::time_point timestamp;

    /// The payload's value for `key`, empty when absent.
    std::string field(const std::string& key) const;

    std::string encode() const;
    /// Nothing when the body is not a JSON object with a "type" text, a "payload" of texts and,
    /// if present, a numeric "timestamp".
    static std::optional<SermonStudioMessage> decode(std::string_view body);

    /// 4-byte big-endian length followed by the encoded body.
    std::string frame() const;
};

/// The largest body a frame may announce; a larger one, or an empty one, closes the connection.
inline constexpr std::uint32_t maximumFrameLength = 10'000'000;

/// The 4-byte big-endian header for a body of `length` bytes.
std::string frameHeader(std::uint32_t length);
/// The length a header announces, or nothing when it is 0 or above the maximum.
std::optional<std::uint32_t> acceptedFrameLength(const unsigned char (&header)[4]);

/// Seconds since 2001-01-01T00:00:00Z and back.
double secondsSinceReferenceDate(std::chrono::system_clock::time_point time);
std::chrono::system_clock::time_point fromSecondsSinceReferenceDate(double seconds);

} // namespace quillon::mesh
