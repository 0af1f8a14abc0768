// Typed references arrive from the search box, imported documents, peers and model replies. A text
// that parses prints as a reference that parses again to the same passage.
#include "FuzzInput.h"

#include "intelligence/ReferenceRecogniser.h"
#include "mesh/MeshScriptureReference.h"
#include "scripture/ReferenceParser.h"
#include "scripture/ScriptureLink.h"

#include <algorithm>

namespace {

using namespace quillon;
using fuzz::require;

void checkReference(std::string_view text) {
    const auto reference = scripture::parse(text);
    if (!reference)
        return;
    require(reference->chapter >= 1);
    const auto again = scripture::parse(reference->description());
    require(again.has_value());
    require(again->book == reference->book && again->chapter == reference->chapter);
    // A description names first to last verse, and a range stops at the chapter's end, so a list
    // naming a verse the chapter lacks ("Ps 23:23, 6") describes the same verses the chapter has.
    const auto chapterPart = [&](std::optional<int> last) {
        const int end = std::max(reference->book.verseCount(reference->chapter), reference->firstVerse().value_or(0));
        return last ? std::optional<int>(std::min(*last, end)) : last;
    };
    require(again->firstVerse() == reference->firstVerse());
    require(chapterPart(again->lastVerse()) == chapterPart(reference->lastVerse()));
}

void checkMeshReference(const std::string& text) {
    const auto reference = mesh::MeshScriptureReference::parse(text);
    if (!reference)
        return;
    require(mesh::MeshScriptureReference::parse(reference->description()) == reference);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::text(data, size);
    checkReference(text);
    checkMeshReference(std::string(text));
    scripture::resolveBook(text);
    scripture::normaliseBookName(text);
    if (const auto scripture = scripture::scriptureFromLink(text))
        require(scripture::scriptureFromLink(scripture::scriptureLink(*scripture)) == scripture);
    using intelligence::ReferenceRecogniser;
    for (const auto& named : ReferenceRecogniser::referencesIn(text))
        require(ReferenceRecogniser::isWithin(named, named));
    return 0;
}
