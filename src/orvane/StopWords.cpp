#include "orvane/StopWords.h"

#include "orvane/UnicodeText.h"
#include "orvane/WordTable.h"

#include <array>

namespace orvane {
namespace {

constexpr std::array<std::string_view, 195> stopWordList = {
    "about",     "above",      "across",  "after",  "again",      "against",  "all",      "also",      "although",
    "amen",      "among",      "amongst", "and",    "any",        "anything", "are",      "around",    "back",
    "because",   "been",       "before",  "behind", "being",      "below",    "beside",   "between",   "beyond",
    "bible",     "both",       "but",     "came",   "can",        "chapter",  "chapters", "christ",    "come",
    "could",     "did",        "does",    "done",   "doth",       "down",     "during",   "each",      "even",
    "ever",      "every",      "for",     "from",   "gave",       "get",      "give",     "given",     "god",
    "gods",      "going",      "got",     "had",    "has",        "hath",     "have",     "having",    "her",
    "here",      "hers",       "herself", "him",    "himself",    "his",      "how",      "however",   "into",
    "its",       "itself",     "jesus",   "just",   "know",       "known",    "let",      "like",      "lord",
    "lords",     "made",       "make",    "many",   "may",        "mine",     "more",     "most",      "much",
    "must",      "myself",     "need",    "never",  "none",       "nor",      "not",      "nothing",   "now",
    "off",       "one",        "only",    "onto",   "other",      "others",   "our",      "ours",      "ourselves",
    "out",       "over",       "own",     "preach", "preaching",  "said",     "saith",    "say",       "says",
    "scripture", "scriptures", "see",     "seen",   "sermon",     "shall",    "she",      "should",    "since",
    "some",      "something",  "still",   "such",   "take",       "tell",     "than",     "that",      "the",
    "thee",      "their",      "theirs",  "them",   "themselves", "then",     "there",    "therefore", "these",
    "they",      "thine",      "thing",   "things", "think",      "this",     "those",    "thou",      "though",
    "through",   "throughout", "thy",     "time",   "toward",     "towards",  "two",      "under",     "unless",
    "until",     "unto",       "upon",    "use",    "verse",      "verses",   "very",     "want",      "was",
    "way",       "well",       "went",    "were",   "what",       "when",     "where",    "whether",   "which",
    "while",     "who",        "whom",    "why",    "will",       "with",     "within",   "without",   "would",
    "ye",        "yet",        "you",     "your",   "yours",      "yourself",
};

const WordTable& stopTable() {
    static const WordTable table = wordTableOf(stopWordList);
    return table;
}

} // namespace

const StringSet& StopWords::words() {
    static const StringSet list = setOf(stopWordList);
    return list;
}

bool StopWords::isMeaningful(std::string_view word, std::size_t minimumLength) {
    std::string kept;
    std::size_t length = 0;
    if (UnicodeText::isAscii(word)) {
        for (char c : word) {
            if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
                kept.push_back(c);
            } else if (c >= 'A' && c <= 'Z') {
                kept.push_back(static_cast<char>(c + ('a' - 'A')));
            }
        }
        length = kept.size();
    } else {
        for (const std::string& character : UnicodeText::characters(UnicodeText::lowercased(word))) {
            if (UnicodeText::isLetter(character) || UnicodeText::isNumber(character)) {
                kept += character;
                ++length;
            }
        }
    }
    if (length < minimumLength)
        return false;
    return !stopTable().contains(kept);
}

} // namespace orvane
