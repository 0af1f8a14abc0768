#include "mesh/SermonStudioMessage.h"

#include "model/JsonWriter.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>

namespace quillon::mesh {

namespace {

constexpr std::array<std::string_view, 17> rawValues = {"hello",
                                                        "heartbeat",
                                                        "studioStatus",
                                                        "requestScripture",
                                                        "nextVerse",
                                                        "previousVerse",
                                                        "scriptureAnnouncement",
                                                        "scriptureCleared",
                                                        "scriptureDisplayed",
                                                        "scriptureFaded",
                                                        "pairChallenge",
                                                        "pairResponse",
                                                        "pairRejected",
                                                        "pairAccepted",
                                                        "toolRequest",
                                                        "toolResponse",
                                                        "unknown"};

// 2001-01-01T00:00:00Z in Unix seconds.
constexpr std::int64_t referenceDateUnixSeconds = 978'307'200;

} // namespace

std::string_view rawValue(SermonStudioMessageType type) {
    return rawValues[static_cast<std::size_t>(type)];
}

SermonStudioMessageType messageTypeFromRawValue(std::string_view text) {
    for (std::size_t i = 0; i < rawValues.size(); ++i)
        if (rawValues[i] == text)
            return static_cast<SermonStudioMessageType>(i);
    return SermonStudioMessageType::unknown;
}

double secondsSinceReferenceDate(std::chrono::system_clock::time_point time) {
    using namespace std::chrono;
    return duration<double>(time.time_since_epoch()).count() - static_cast<double>(referenceDateUnixSeconds);
}

std::chrono::system_clock::time_point fromSecondsSinceReferenceDate(double seconds) {
    using namespace std::chrono;
    // The clock counts nanoseconds in 64 bits (about 292 years either side of 1970); a peer's time
    // beyond a century of the reference date is nonsense and must not overflow it.
    if (!std::isfinite(seconds) || std::abs(seconds) > 4e9)
        seconds = 0;
    auto sinceEpoch = duration<double>(seconds + static_cast<double>(referenceDateUnixSeconds));
    return system_clock::time_point(duration_cast<system_clock::duration>(sinceEpoch));
}

std::string SermonStudioMessage::field(const std::string& key) const {
    auto found = payload.find(key);
    return found == payload.end() ? std::string() : found->second;
}

namespace {

/// Appends the message body, written field by field rather than through a JSON document: a passage
/// of many verses is sent to every peer, and building and escaping a document for it cost more than
/// the network. Members in name order ("payload", "timestamp", "type"), as peers have always seen them.
void appendBody(const SermonStudioMessage& message, std::string& out) {
    std::size_t payloadSize = 0;
    for (const auto& [key, value] : message.payload)
        payloadSize += key.size() + value.size() + 8;
    out.reserve(out.size() + payloadSize + 96);
    // Invalid UTF-8 is replaced, not refused: a payload copied from a broken file must not stop the bridge.
    model::JsonWriter writer(out, model::JsonWriter::compact);
    writer.beginObject();
    writer.key("payload");
    writer.beginObject();
    for (const auto& [key, value] : message.payload) {
        writer.key(key);
        writer.string(value);
    }
    writer.endObject();
    writer.key("timestamp");
    writer.floating(secondsSinceReferenceDate(message.timestamp));
    writer.key("type");
    writer.string(rawValue(message.type));
    writer.endObject();
}

} // namespace

std::string SermonStudioMessage::encode() const {
    std::string body;
    appendBody(*this, body);
    return body;
}

std::optional<SermonStudioMessage> SermonStudioMessage::decode(std::string_view body) {
    // Anything but an object fails fast, so a 10 MB frame of junk costs no full JSON parse.
    auto first = body.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos || body[first] != '{')
        return std::nullopt;
    auto json = nlohmann::json::parse(body, nullptr, false);
    if (json.is_discarded() || !json.is_object())
        return std::nullopt;
    auto type = json.find("type");
    auto payload = json.find("payload");
    if (type == json.end() || !type->is_string() || payload == json.end() || !payload->is_object())
        return std::nullopt;
    SermonStudioMessage message;
    message.type = messageTypeFromRawValue(type->get<std::string>());
    for (const auto& [key, value] : payload->items()) {
        if (!value.is_string())
            return std::nullopt;
        message.payload[key] = value.get<std::string>();
    }
    if (auto timestamp = json.find("timestamp"); timestamp != json.end()) {
        if (!timestamp->is_number())
            return std::nullopt;
        message.timestamp = fromSecondsSinceReferenceDate(timestamp->get<double>());
    } else {
        message.timestamp = fromSecondsSinceReferenceDate(0);
    }
    return message;
}

std::string frameHeader(std::uint32_t length) {
    return {static_cast<char>(length >> 24 & 0xff), static_cast<char>(length >> 16 & 0xff),
            static_cast<char>(length >> 8 & 0xff), static_cast<char>(length & 0xff)};
}

std::optional<std::uint32_t> acceptedFrameLength(const unsigned char (&header)[4]) {
    std::uint32_t length = std::uint32_t{header[0]} << 24 | std::uint32_t{header[1]} << 16 |
                           std::uint32_t{header[2]} << 8 | std::uint32_t{header[3]};
    if (length == 0 || length > maximumFrameLength)
        return std::nullopt;
    return length;
}

std::string SermonStudioMessage::frame() const {
    std::string frame(4, '\0');
    appendBody(*this, frame);
    frame.replace(0, 4, frameHeader(static_cast<std::uint32_t>(frame.size() - 4)));
    return frame;
}

} // namespace quillon::mesh
