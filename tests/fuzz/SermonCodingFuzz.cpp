// Sermon files, single-sermon documents and library archives come from other computers. Whatever
// they hold, reading never crashes, the two readers (parsed tree and nlohmann document) agree, and
// a sermon that was read writes back to bytes that read as the same sermon.
#include "FuzzInput.h"

#include "model/SermonCoding.h"
#include "model/SermonDocument.h"

#include <optional>

namespace {

using namespace quillon::model;
using quillon::fuzz::require;

std::optional<SermonNote> fromTree(std::string_view bytes) {
    try {
        return decodeSermonFile(bytes);
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

void checkSermonFile(std::string_view bytes) {
    const auto sermon = fromTree(bytes);
    std::optional<OrderedJSON> json;
    try {
        json = OrderedJSON::parse(bytes);
    } catch (const OrderedJSON::exception&) {
    }
    if (!json) {
        require(!sermon);
        return;
    }
    std::optional<SermonNote> fromDocument;
    try {
        fromDocument = decodeSermonNote(*json);
    } catch (const DecodingError&) {
    }
    // Only nesting deeper than the tree follows may part the two readers, and no sermon nests so.
    if (sermon || !fromDocument)
        require(sermon == fromDocument);
    if (!sermon)
        return;
    require(fromTree(encodeSermonFile(*sermon)) == sermon);
    // The document sorts members by name, unknown ones included, so it is compared in its own form.
    const std::string document = encodeSermonDocument(*sermon);
    const auto fromDocumentFile = fromTree(document);
    require(fromDocumentFile && encodeSermonDocument(*fromDocumentFile) == document);
}

void checkArchive(std::string_view bytes) {
    const auto sermons = readArchive(bytes);
    if (sermons.empty())
        return;
    const DateTime exportDate{std::chrono::seconds{1'700'000'000}};
    require(readArchive(encodeArchive(sermons, exportDate)) == sermons);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = quillon::fuzz::text(data, size);
    checkSermonFile(bytes);
    checkArchive(bytes);
    return 0;
}
