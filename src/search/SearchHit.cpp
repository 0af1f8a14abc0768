#include "search/SearchHit.h"

#include "scripture/BibleBook.h"

namespace quillon::search {

SearchGroup SearchHit::group() const {
    switch (m_kind) {
    case Kind::scripture:
        return SearchGroup::scripture;
    case Kind::commentary:
        return SearchGroup::commentaries;
    case Kind::dictionary:
        return SearchGroup::dictionaries;
    case Kind::historical:
        return SearchGroup::historical;
    case Kind::sermon:
        return SearchGroup::sermons;
    }
    return SearchGroup::scripture;
}

const std::string& SearchHit::id() const {
    return std::visit([](const auto& hit) -> const std::string& { return hit.id; }, m_hit);
}

std::string SearchHit::title() const {
    if (const auto* found = verse()) {
        const quillon::scripture::BibleBook* book =
            quillon::scripture::bibleBookWithAbbreviation(found->verse.bookAbbreviation);
        return (book ? book->name : found->verse.bookAbbreviation) + " " + std::to_string(found->verse.chapter) + ":" +
               std::to_string(found->verse.verse) + " (" + std::string(model::rawValue(found->version)) + ")";
    }
    if (const auto* entry = referenceWork())
        return entry->heading.empty() ? entry->work : entry->work + " — " + entry->heading;
    return sermonHit()->title;
}

std::string_view rawValue(SearchHit::Kind kind) {
    switch (kind) {
    case SearchHit::Kind::scripture:
        return "scripture";
    case SearchHit::Kind::commentary:
        return "commentary";
    case SearchHit::Kind::dictionary:
        return "dictionary";
    case SearchHit::Kind::historical:
        return "historical";
    case SearchHit::Kind::sermon:
        return "sermon";
    }
    return "scripture";
}

} // namespace quillon::search
