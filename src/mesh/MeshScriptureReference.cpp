#include "mesh/MeshScriptureReference.h"

#include "orvane/ScriptureReference.h"
#include "scripture/ReferenceParser.h"

#include <algorithm>
#include <charconv>

namespace quillon::mesh {

namespace {

std::optional<int> positiveNumber(const std::string& text) {
    int value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 1)
        return std::nullopt;
    return value;
}

bool isValid(const MeshScriptureReference& reference) {
    if (reference.book.empty() || reference.chapter < 1)
        return false;
    if (!reference.startVerse)
        return !reference.endVerse;
    return !reference.endVerse || *reference.endVerse >= *reference.startVerse;
}

} // namespace

std::string MeshScriptureReference::description() const {
    return orvane::ScriptureReference{book, chapter, startVerse, endVerse}.description();
}

std::optional<MeshScriptureReference>
MeshScriptureReference::fromPayload(const std::map<std::string, std::string>& payload) {
    auto value = [&](const char* key) {
        auto found = payload.find(key);
        return found == payload.end() ? std::string() : found->second;
    };
    if (!value("book").empty() && !value("chapter").empty()) {
        MeshScriptureReference reference;
        reference.book = value("book");
        auto chapter = positiveNumber(value("chapter"));
        if (!chapter)
            return std::nullopt;
        reference.chapter = *chapter;
        if (!value("startVerse").empty() && !(reference.startVerse = positiveNumber(value("startVerse"))))
            return std::nullopt;
        if (!value("endVerse").empty() && !(reference.endVerse = positiveNumber(value("endVerse"))))
            return std::nullopt;
        if (isValid(reference))
            return reference;
        return std::nullopt;
    }
    return parse(value("reference"));
}

std::optional<MeshScriptureReference> MeshScriptureReference::parse(const std::string& text) {
    // The library's parser validates the book and chapter and spells the book out in full.
    auto parsed = scripture::parse(text);
    if (!parsed)
        return std::nullopt;
    // A list may name a verse past the chapter's end ("Ps 23:23, 6"); peers are told only the
    // verses the chapter has, as a typed range would give them.
    auto last = parsed->lastVerse();
    if (last && parsed->firstVerse())
        last = std::min(*last, std::max(*parsed->firstVerse(), parsed->book.verseCount(parsed->chapter)));
    MeshScriptureReference reference{parsed->book.name, parsed->chapter, parsed->firstVerse(), last};
    if (reference.endVerse == reference.startVerse)
        reference.endVerse.reset();
    return reference;
}

} // namespace quillon::mesh
