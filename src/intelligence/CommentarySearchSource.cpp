#include "intelligence/CommentarySearchSource.h"

#include "scripture/ReferenceParser.h"

namespace quillon::intelligence {

namespace {

// About two lines of the result list.
constexpr std::size_t snippetBytes = 160;

/// The start of a note, cut between words and never inside a character, with "…" when cut.
std::string snippetOf(const std::string& text) {
    if (text.size() <= snippetBytes)
        return text;
    std::size_t cut = text.rfind(' ', snippetBytes);
    if (cut == std::string::npos || cut < snippetBytes / 2) {
        cut = snippetBytes;
        while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
            --cut;
    }
    return text.substr(0, cut) + "…";
}

} // namespace

search::UnifiedSearch::Source commentarySearchSource(std::shared_ptr<const CommentaryLibrary> library) {
    return [library = std::move(library)](std::string_view query, std::size_t limit) {
        std::vector<search::SearchHit> hits;
        const auto reference = scripture::parse(query);
        if (!reference)
            return hits;
        for (const Commentary& commentary : library->commentaries())
            for (const CommentaryEntry& entry : library->entries(commentary, *reference)) {
                if (hits.size() >= limit)
                    return hits;
                hits.push_back(search::SearchHit::commentary(
                    search::ReferenceWorkHit{"commentary-" + commentary.moduleName + "-" + entry.label, commentary.name,
                                             entry.label, snippetOf(entry.text)}));
            }
        return hits;
    };
}

} // namespace quillon::intelligence
