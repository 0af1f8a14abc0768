#include "app/CommandMatching.h"

#include "app/CatalogueSearch.h"

#include <algorithm>
#include <cctype>

namespace quillon::app {

namespace {

char lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool startsWord(std::string_view name, std::size_t at) {
    return at == 0 || !std::isalnum(static_cast<unsigned char>(name[at - 1]));
}

} // namespace

std::optional<int> CommandMatching::score(std::string_view query, std::string_view name) {
    int total = 0;
    std::size_t from = 0;
    std::optional<std::size_t> previous;
    for (char typed : query) {
        if (typed == ' ')
            continue;
        std::size_t at = from;
        // Prefer the next word start holding the letter over an earlier letter inside a word.
        std::optional<std::size_t> wordStart;
        for (std::size_t i = from; i < name.size(); ++i)
            if (lower(name[i]) == lower(typed) && startsWord(name, i)) {
                wordStart = i;
                break;
            }
        while (at < name.size() && lower(name[at]) != lower(typed))
            ++at;
        if (at == name.size())
            return std::nullopt;
        if (wordStart && (!previous || at != *previous + 1))
            at = *wordStart;
        total += 1;
        if (startsWord(name, at))
            total += 8;
        if (previous && at == *previous + 1)
            total += 5;
        previous = at;
        from = at + 1;
    }
    return total * 4 - static_cast<int>(name.size() / 4);
}

std::vector<std::size_t> CommandMatching::rank(std::string_view query, const std::vector<std::string>& names) {
    std::vector<std::size_t> order;
    if (query.find_first_not_of(' ') == std::string_view::npos) {
        for (std::size_t i = 0; i < names.size(); ++i)
            order.push_back(i);
        return order;
    }
    std::vector<std::pair<int, std::size_t>> scored;
    for (std::size_t i = 0; i < names.size(); ++i)
        if (std::optional<int> value = score(query, names[i]))
            scored.emplace_back(*value, i);
    std::stable_sort(scored.begin(), scored.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    for (const auto& [value, index] : scored)
        order.push_back(index);
    if (!order.empty())
        return order;
    std::vector<orvane::IndexedDocument> documents;
    for (std::size_t i = 0; i < names.size(); ++i)
        documents.push_back({std::to_string(i), names[i], {}});
    for (const orvane::SearchHit& hit : CatalogueSearch(std::move(documents)).search(query, 20).hits)
        order.push_back(std::stoul(hit.documentID));
    return order;
}

} // namespace quillon::app
