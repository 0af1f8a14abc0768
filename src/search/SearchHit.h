#pragma once

#include "scripture/BibleSearchResult.h"
#include "search/ReferenceWorkHit.h"
#include "search/SearchGroup.h"
#include "search/SermonSearchDisplayHit.h"

#include <string>
#include <variant>

namespace quillon::search {

/// One hit of the unified search: a verse, a commentary note, a dictionary article, a historical
/// reference or a sermon, each carrying the hit of its source. (The ranking's own hit is
/// `orvane::SearchHit`; this is the search field's.)
class SearchHit {
public:
    enum class Kind { scripture, commentary, dictionary, historical, sermon };

    static SearchHit scripture(quillon::scripture::BibleSearchResult hit) { return {Kind::scripture, std::move(hit)}; }
    static SearchHit commentary(ReferenceWorkHit hit) { return {Kind::commentary, std::move(hit)}; }
    static SearchHit dictionary(ReferenceWorkHit hit) { return {Kind::dictionary, std::move(hit)}; }
    static SearchHit historical(ReferenceWorkHit hit) { return {Kind::historical, std::move(hit)}; }
    static SearchHit sermon(SermonSearchDisplayHit hit) { return {Kind::sermon, std::move(hit)}; }

    Kind kind() const { return m_kind; }
    /// The group the hit is listed under.
    SearchGroup group() const;
    /// Unique among all hits: the verse's "KJV-Joh 3:16", the work's or the sermon's display id.
    const std::string& id() const;
    /// The line the list shows: "John 3:16 (KJV)", the entry's heading, the sermon's title.
    std::string title() const;

    /// The source's hit when it is of that kind; null otherwise.
    const quillon::scripture::BibleSearchResult* verse() const {
        return std::get_if<quillon::scripture::BibleSearchResult>(&m_hit);
    }
    const ReferenceWorkHit* referenceWork() const { return std::get_if<ReferenceWorkHit>(&m_hit); }
    const SermonSearchDisplayHit* sermonHit() const { return std::get_if<SermonSearchDisplayHit>(&m_hit); }

    bool operator==(const SearchHit&) const = default;

private:
    using Hit = std::variant<quillon::scripture::BibleSearchResult, ReferenceWorkHit, SermonSearchDisplayHit>;
    SearchHit(Kind kind, Hit hit) : m_kind(kind), m_hit(std::move(hit)) {}

    Kind m_kind;
    Hit m_hit;
};

/// "scripture", "commentary", "dictionary", "historical", "sermon".
std::string_view rawValue(SearchHit::Kind kind);

} // namespace quillon::search
