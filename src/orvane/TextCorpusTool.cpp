#include "orvane/TextCorpusTool.h"

#include "orvane/LexicalTokenizer.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <set>

namespace orvane {

namespace {

std::string lowered(const std::string& text) {
    std::string result;
    icu::UnicodeString::fromUTF8(text).toLower(icu::Locale::getRoot()).toUTF8String(result);
    return result;
}

} // namespace

TextCorpusTool::TextCorpusTool(std::string name, std::string purpose, std::vector<Entry> entries, int maximumPassages)
    : m_name(std::move(name)), m_purpose(std::move(purpose)), m_entries(std::move(entries)),
      m_maximumPassages(maximumPassages) {
    for (const Entry& entry : m_entries)
        m_lowered.push_back(lowered(entry.text));
}

ToolResult TextCorpusTool::lookup(const std::string& query) const {
    std::vector<std::string> tokens = LexicalTokenizer::tokens(query, 2, true);
    // A word typed twice counts once: the count is of distinct query words found.
    std::sort(tokens.begin(), tokens.end());
    tokens.erase(std::unique(tokens.begin(), tokens.end()), tokens.end());
    if (tokens.empty() || m_maximumPassages <= 0)
        return ToolResult::empty();

    std::vector<std::pair<int, std::size_t>> ranked; // count, position
    for (std::size_t position = 0; position < m_entries.size(); ++position) {
        int count = 0;
        for (const std::string& token : tokens)
            count += m_lowered[position].find(token) != std::string::npos;
        if (count > 0)
            ranked.emplace_back(count, position);
    }
    std::stable_sort(ranked.begin(), ranked.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    ToolResult result;
    for (const auto& [count, position] : ranked) {
        if (static_cast<int>(result.passages.size()) >= m_maximumPassages)
            break;
        result.passages.push_back({m_entries[position].source, m_entries[position].text});
    }
    return result;
}

} // namespace orvane
