#include "intelligence/Distinctiveness.h"

#include "orvane/LexicalTokenizer.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace quillon::intelligence::distinctiveness {

std::vector<std::size_t> sentences(const std::vector<std::string>& texts, std::size_t count) {
    std::vector<std::vector<std::string>> words;
    std::map<std::string, int> documentFrequency;
    for (const std::string& text : texts) {
        std::vector<std::string> tokens = orvane::LexicalTokenizer::tokens(text, 3, true);
        std::set<std::string> distinct(tokens.begin(), tokens.end());
        for (const std::string& word : distinct)
            ++documentFrequency[word];
        words.push_back(std::move(tokens));
    }
    double total = static_cast<double>(texts.size());
    std::vector<std::pair<double, std::size_t>> scored;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        // A sentence of one or two content words is rarely worth lifting out.
        if (words[i].size() < 3)
            continue;
        double score = 0;
        for (const std::string& word : words[i])
            score += std::log((total + 1) / documentFrequency[word]);
        scored.emplace_back(score / std::sqrt(static_cast<double>(words[i].size())), i);
    }
    std::stable_sort(scored.begin(), scored.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<std::size_t> chosen;
    for (std::size_t i = 0; i < scored.size() && chosen.size() < count; ++i)
        chosen.push_back(scored[i].second);
    std::sort(chosen.begin(), chosen.end());
    return chosen;
}

std::vector<std::string> repeatedWords(const std::string& text, std::size_t count) {
    std::map<std::string, std::pair<int, std::size_t>> seen; // word → (count, first position)
    std::size_t position = 0;
    for (const std::string& word : orvane::LexicalTokenizer::tokens(text, 4, true)) {
        if (std::all_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; }))
            continue;
        auto [entry, inserted] = seen.try_emplace(word, 0, position++);
        ++entry->second.first;
    }
    std::vector<std::pair<std::string, std::pair<int, std::size_t>>> ranked(seen.begin(), seen.end());
    std::sort(ranked.begin(), ranked.end(), [](const auto& a, const auto& b) {
        return a.second.first != b.second.first ? a.second.first > b.second.first : a.second.second < b.second.second;
    });
    std::vector<std::string> words;
    for (const auto& [word, figures] : ranked) {
        if (figures.first < 2 || words.size() >= count)
            break;
        words.push_back(word);
    }
    return words;
}

} // namespace quillon::intelligence::distinctiveness
