#include "orvane/LexicalTokenizer.h"

#include "orvane/AsciiText.h"
#include "orvane/UnicodeText.h"
#include "orvane/WordTable.h"

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

const WordTable& stopTable() {
    static const WordTable table = wordTableOf(stopWordList);
    return table;
}

bool isAllDigits(std::string_view token, bool ascii) {
    if (ascii) {
        for (char c : token)
            if (!ascii::isDigit(c))
                return false;
        return true;
    }
    for (const std::string& character : UnicodeText::characters(token))
        if (!UnicodeText::isNumber(character))
            return false;
    return true;
}

// Applies the token rules to one word of plain ASCII, perhaps with curly apostrophes (the only typographic marks
// a word can hold). It decides on the original bytes and writes the lowercase token only for a word that is kept.
template <bool pureAscii, typename Visit>
void acceptSimpleWord(std::string_view word, std::string& token, std::size_t minimumLength, const WordTable* stops,
                      Visit&& visit) {
    std::size_t bytes = word.size();
    std::size_t length = bytes;
    if (!pureAscii)
        for (char c : word)
            if (static_cast<unsigned char>(c) == 0xE2)
                length -= 2;
    if (length >= 3 && ascii::lower(word[bytes - 1]) == 's') {
        if (word[bytes - 2] == '\'') {
            bytes -= 2;
            length -= 2;
        } else if (!pureAscii && bytes >= 4 && word.substr(bytes - 4, 3) == "\u2019") {
            bytes -= 4;
            length -= 2;
        }
    }
    if (bytes == 0)
        return;
    word = word.substr(0, bytes);
    // Numbers are never too short and never stop words: "1 Cor 13" keeps its "1".
    if (!isAllDigits(word, true)) {
        if (length < minimumLength)
            return;
        if (stops != nullptr && stops->containsLowercased(word))
            return;
    }
    token.resize(bytes);
    for (std::size_t i = 0; i < bytes; ++i)
        token[i] = ascii::lower(word[i]);
    visit(std::string_view(token));
}

// Applies the token rules to a word holding other characters; `token` is scratch space reused across words.
template <typename Visit>
void acceptWord(std::string_view word, std::string& token, std::size_t minimumLength, const WordTable* stops,
                Visit&& visit) {
    if (ascii::isSimple(word)) {
        acceptSimpleWord<false>(word, token, minimumLength, stops, visit);
        return;
    }
    token = UnicodeText::folded(word);
    const bool asciiToken = UnicodeText::isAscii(token);
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
    if (!isAllDigits(token, asciiToken)) {
        if (length < minimumLength)
            return;
        if (stops != nullptr && stops->contains(token))
            return;
    }
    visit(std::string_view(token));
}

template <typename Visit>
void forEachTokenOf(std::string_view text, std::size_t minimumLength, bool removingStopWords, Visit&& visit) {
    const WordTable* stops = removingStopWords ? &stopTable() : nullptr;
    std::string token;
    if (UnicodeText::isAscii(text))
        ascii::forEachWord(
            text, [&](std::string_view word) { acceptSimpleWord<true>(word, token, minimumLength, stops, visit); });
    else if (ascii::isSimple(text))
        ascii::forEachWord(
            text, [&](std::string_view word) { acceptSimpleWord<false>(word, token, minimumLength, stops, visit); });
    else
        UnicodeText::forEachWord(text,
                                 [&](std::string_view word) { acceptWord(word, token, minimumLength, stops, visit); });
}

} // namespace

const StringSet& LexicalTokenizer::stopWords() {
    static const StringSet words = setOf(stopWordList);
    return words;
}

void LexicalTokenizer::forEachToken(std::string_view text, std::size_t minimumLength, bool removingStopWords,
                                    const std::function<void(std::string_view)>& visit) {
    forEachTokenOf(text, minimumLength, removingStopWords, visit);
}

std::vector<std::string> LexicalTokenizer::tokens(std::string_view text, std::size_t minimumLength,
                                                  bool removingStopWords) {
    std::vector<std::string> result;
    forEachTokenOf(text, minimumLength, removingStopWords, [&](std::string_view token) { result.emplace_back(token); });
    return result;
}

} // namespace orvane
