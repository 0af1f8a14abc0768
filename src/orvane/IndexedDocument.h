#pragma once

#include <string>

namespace orvane {

/// A plain document of a search index; `id` is unique within one index.
struct IndexedDocument {
    std::string id;
    std::string title;
    std::string text;

    bool operator==(const IndexedDocument&) const = default;
};

/// The text that is embedded and tokenised for a document. The title is written twice on purpose, so that it
/// weighs more than any single sentence of the body.
inline std::string compositeText(const std::string& title, const std::string& text) {
    std::string composite;
    composite.reserve(title.size() * 2 + text.size() + 4);
    composite.append(title).append(". ").append(title).append(". ").append(text);
    return composite;
}

inline std::string compositeText(const IndexedDocument& document) {
    return compositeText(document.title, document.text);
}

} // namespace orvane
