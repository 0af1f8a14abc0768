// What a Vantalink peer sends: a stream of frames, each a 4-byte big-endian length and a JSON
// envelope. The input is read as a connection reads it, header by header, and every envelope that
// decodes re-encodes to the same message and frames with the length it announces.
#include "FuzzInput.h"

#include "mesh/MeshScriptureReference.h"
#include "mesh/SermonStudioMessage.h"
#include "mesh/ToolAnswer.h"

#include <chrono>
#include <cstring>

namespace {

using namespace quillon::mesh;
using quillon::fuzz::require;

void checkMessage(std::string_view body) {
    const auto message = SermonStudioMessage::decode(body);
    if (!message)
        return;
    const auto again = SermonStudioMessage::decode(message->encode());
    require(again.has_value());
    require(again->type == message->type && again->payload == message->payload);
    require(std::chrono::abs(again->timestamp - message->timestamp) < std::chrono::milliseconds(1));

    const std::string frame = message->frame();
    unsigned char header[4];
    std::memcpy(header, frame.data(), 4);
    const auto length = acceptedFrameLength(header);
    require(length && *length == frame.size() - 4);

    // What the bridge reads out of the payloads it is handed.
    if (const auto reference = MeshScriptureReference::fromPayload(message->payload))
        require(reference->chapter > 0);
    if (const auto result = ToolAnswer::decode(message->field("result")))
        require(ToolAnswer::decode(*ToolAnswer::found(*result).result).has_value());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view stream = quillon::fuzz::text(data, size);
    while (stream.size() >= 4) {
        unsigned char header[4];
        std::memcpy(header, stream.data(), 4);
        stream.remove_prefix(4);
        const auto length = acceptedFrameLength(header);
        if (!length)
            return 0; // the connection closes
        if (*length > stream.size())
            return 0; // still waiting for the rest of the body
        checkMessage(stream.substr(0, *length));
        stream.remove_prefix(*length);
    }
    return 0;
}
