#include "scripture/ScriptureReference.h"

#include "orvane/ScriptureReference.h"

#include <algorithm>

namespace quillon::scripture {

std::optional<int> ScriptureReference::firstVerse() const {
    if (!verses || verses->empty())
        return std::nullopt;
    return *std::min_element(verses->begin(), verses->end());
}

std::optional<int> ScriptureReference::lastVerse() const {
    if (!verses || verses->empty())
        return std::nullopt;
    return *std::max_element(verses->begin(), verses->end());
}

orvane::ScriptureReference ScriptureReference::shared() const {
    orvane::ScriptureReference reference{book.name, chapter, firstVerse(), std::nullopt};
    auto last = lastVerse();
    if (last && last != reference.startVerse)
        reference.endVerse = last;
    return reference;
}

std::string ScriptureReference::description() const {
    return shared().description();
}

} // namespace quillon::scripture
