#include "orvane/LexicalTokenizer.h"

#include "orvane/UnicodeText.h"

#include <array>

namespace orvane {
namespace {

constexpr std::array<std::string_view, 174> stopWordList = {
    "a",       "about",     "above",      "after",      "again",   "against", "all",     "am",      "an",
    "and",     "any",       "are",        "aren't",     "as",      "at",      "be",      "because", "been",
    "before",  "being",     "below",      "between",    "both",    "but",     "by",      "can't",   "cannot",
    "could",   "couldn't",  "did",        "didn't",     "do",      "does",    "doesn't", "doing",   "don't",
    "down",    "during",    "each",       "few",        "for",     "from",    "further", "had",     "hadn't",
    "has",     "hasn't",    "have",       "haven't",    "having",  "he",      "he'd",    "he'll",   "he's",
    "her",     "here",      "here's",     "hers",       "herself", "him",     "himself", "his",     "how",
    "how's",   "i",         "i'd",        "i'll",       "i'm",     "i've",    "if",      "in",      "into",
    "is",      "isn't",     "it",         "it's",       "its",     "itself",  "let's",   "me",      "more",
    "most",    "mustn't",   "my",         "myself",     "no",      "nor",     "not",     "of",      "off",
    "on",      "once",      "only",       "or",         "other",   "ought",   "our",     "ours",    "ourselves",
    "out",     "over",      "own",        "same",       "shan't",  "she",     "she'd",   "she'll",  "she's",
    "should",  "shouldn't", "so",         "some",       "such",    "than",    "that",    "that's",  "the",
    "their",   "theirs",    "them",       "themselves", "then",    "there",   "there's", "these",   "they",
    "they'd",  "they'll",   "they're",    "they've",    "this",    "those",   "through", "to",      "too",
    "under",   "until",     "up",         "very",       "was",     "wasn't",  "we",      "we'd",    "we'll",
    "we're",   "we've",     "were",       "weren't",    "what",    "what's",  "when",    "when's",  "where",
    "where's", "which",     "while",      "who",        "who's",   "whom",    "why",     "why's",   "with",
    "won't",   "would",     "wouldn't",   "you",        "you'd",   "you'll",  "you're",  "you've",  "your",
    "yours",   "yourself",  "yourselves",
};

bool isAllDigits(std::string_view token, bool ascii) {
    if (ascii) {
        for (char c : token)
            if (c < '0' || c > '9')
                return false;
        return true;
    }
    for (const std::string& character : UnicodeText::characters(token))
        if (!UnicodeText::isNumber(character))
            return false;
    return true;
}

} // namespace

const StringSet& LexicalTokenizer::stopWords() {
    static const StringSet words = setOf(stopWordList);
    return words;
}

void LexicalTokenizer::forEachToken(std::string_view text, std::size_t minimumLength, bool removingStopWords,
                                    const std::function<void(std::string_view)>& visit) {
    const StringSet& stops = stopWords();
    std::string token;
    UnicodeText::forEachWord(text, [&](std::string_view word) {
        const bool ascii = UnicodeText::isAscii(word);
        if (ascii) {
            token.assign(word);
            for (char& c : token)
                if (c >= 'A' && c <= 'Z')
                    c = static_cast<char>(c + ('a' - 'A'));
        } else {
            token = UnicodeText::folded(word);
        }
        const bool asciiToken = ascii || UnicodeText::isAscii(token);
        std::size_t length = asciiToken ? token.size() : UnicodeText::characterCount(token);
        if (length >= 3) {
            if (token.ends_with("'s")) {
                token.resize(token.size() - 2);
                length -= 2;
            } else if (token.ends_with("\u2019s")) {
                token.resize(token.size() - 4);
                length -= 2;
            }
        }
        if (token.empty())
            return;
        if (isAllDigits(token, asciiToken)) {
            visit(token);
            return;
        }
        if (length < minimumLength)
            return;
        if (removingStopWords && stops.contains(std::string_view(token)))
            return;
        visit(token);
    });
}

std::vector<std::string> LexicalTokenizer::tokens(std::string_view text, std::size_t minimumLength,
                                                  bool removingStopWords) {
    std::vector<std::string> result;
    forEachToken(text, minimumLength, removingStopWords, [&](std::string_view token) { result.emplace_back(token); });
    return result;
}

} // namespace orvane
