#include "intelligence/Distinctiveness.h"

#include "orvane/LexicalTokenizer.h"
#include "orvane/ScriptureStemmer.h"
#include "orvane/SentenceTokenizer.h"
#include "orvane/StopWords.h"

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

namespace {

/// Words a preacher could tag any sermon with, so they tell one sermon from another not at all.
bool fitsAnySermon(const std::string& word) {
    static const std::set<std::string> words = {
        "able",   "again",  "always", "another", "answer", "anyone", "around",   "best",       "better", "call",
        "called", "church", "day",    "days",    "enough", "every",  "everyone", "everything", "first",  "good",
        "great",  "hear",   "heard",  "idea",    "keep",   "kind",   "last",     "life",       "little", "live",
        "lives",  "long",   "look",   "maybe",   "mean",   "means",  "next",     "often",      "part",   "people",
        "person", "place",  "point",  "points",  "read",   "real",   "really",   "right",      "same",   "someone",
        "start",  "story",  "sure",   "talk",    "today",  "true",   "turn",     "week",       "whole",  "word",
        "words",  "world",  "year",   "years",
    };
    return words.contains(word);
}

struct Theme {
    int weight = 0;
    std::set<std::size_t> sentences;
    std::size_t firstUse = 0;
    /// Surface forms and their weights.
    std::map<std::string, int> forms;
};

void countWords(std::map<std::string, Theme>& themes, const std::string& text, int weight, std::size_t& position,
                std::size_t sentence) {
    for (const std::string& word : orvane::LexicalTokenizer::tokens(text, 4, true)) {
        if (std::all_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; }) ||
            !orvane::StopWords::isMeaningful(word, 4) || fitsAnySermon(word))
            continue;
        // "forgiveness" belongs with "forgive", which the stemmer leaves apart.
        std::string_view root = word;
        if (root.size() >= 8 && root.ends_with("ness"))
            root.remove_suffix(4);
        std::string stem = orvane::ScriptureStemmer::stem(root);
        if (fitsAnySermon(stem))
            continue;
        auto [entry, inserted] = themes.try_emplace(stem);
        if (inserted)
            entry->second.firstUse = position;
        ++position;
        entry->second.weight += weight;
        entry->second.sentences.insert(sentence);
        entry->second.forms[word] += weight; // the form a heading uses is the one to show
    }
}

} // namespace

std::vector<std::string> themeWords(const std::vector<std::string>& headings, const std::string& body,
                                    std::size_t count) {
    std::map<std::string, Theme> themes;
    std::size_t position = 0;
    std::size_t sentence = 0;
    for (const std::string& heading : headings)
        countWords(themes, heading, 3, position, sentence++);
    for (const std::string& text : orvane::SentenceTokenizer::sentences(body))
        countWords(themes, text, 1, position, sentence++);

    std::vector<const Theme*> ranked;
    for (const auto& [stem, theme] : themes)
        if (theme.weight >= 2)
            ranked.push_back(&theme);
    std::sort(ranked.begin(), ranked.end(), [](const Theme* a, const Theme* b) {
        if (a->weight != b->weight)
            return a->weight > b->weight;
        if (a->sentences.size() != b->sentences.size())
            return a->sentences.size() > b->sentences.size();
        return a->firstUse < b->firstUse;
    });
    std::vector<std::string> words;
    for (const Theme* theme : ranked) {
        if (words.size() >= count)
            break;
        // The form used most ("forgiveness" over "forgive"), the shorter on a tie.
        auto best = std::max_element(theme->forms.begin(), theme->forms.end(), [](const auto& a, const auto& b) {
            return a.second != b.second ? a.second < b.second : a.first.size() > b.first.size();
        });
        words.push_back(best->first);
    }
    return words;
}

} // namespace quillon::intelligence::distinctiveness
