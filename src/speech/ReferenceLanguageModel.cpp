#include "speech/ReferenceLanguageModel.h"

#include "scripture/BibleBook.h"

#include <array>
#include <cmath>
#include <map>
#include <set>
#include <sstream>
#include <vector>

namespace quillon::speech::referenceLanguageModel {

namespace {

constexpr std::array<std::string_view, 9> units = {"one", "two",   "three", "four", "five",
                                                   "six", "seven", "eight", "nine"};
constexpr std::array<std::string_view, 10> teens = {"ten",     "eleven",  "twelve",    "thirteen", "fourteen",
                                                    "fifteen", "sixteen", "seventeen", "eighteen", "nineteen"};
constexpr std::array<std::string_view, 8> tens = {"twenty", "thirty",  "forty",  "fifty",
                                                  "sixty",  "seventy", "eighty", "ninety"};

/// The words of a book's name as said: lower case, a leading digit as its ordinal word.
std::vector<std::string> spokenName(const std::string& name) {
    static const std::map<std::string, std::string> ordinals = {{"1", "first"}, {"2", "second"}, {"3", "third"}};
    std::istringstream stream(name);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        for (char& c : word)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        if (auto ordinal = ordinals.find(word); ordinal != ordinals.end())
            word = ordinal->second;
        words.push_back(word);
    }
    return words;
}

using Successors = std::map<std::string, std::set<std::string>>;

Successors grammar() {
    Successors next;
    std::vector<std::string> numbers;
    for (auto list : {std::span<const std::string_view>(units), std::span<const std::string_view>(teens),
                      std::span<const std::string_view>(tens)})
        for (std::string_view word : list)
            numbers.emplace_back(word);
    numbers.emplace_back("hundred");

    std::vector<std::vector<std::string>> books;
    for (const scripture::BibleBook& book : scripture::allBibleBooks())
        books.push_back(spokenName(book.name));
    // Preachers say "Psalm twenty three" far more often than "Psalms".
    books.push_back({"psalm"});
    for (const auto& words : books) {
        for (const char* lead : {"<s>", "to", "in", "from", "at"})
            next[lead].insert(words.front());
        for (std::size_t i = 0; i + 1 < words.size(); ++i)
            next[words[i]].insert(words[i + 1]);
        next[words.back()].insert("chapter");
        next[words.back()].insert(numbers.begin(), numbers.end());
    }
    for (const char* word : {"chapter", "verse", "verses", "through", "to", "and"})
        next[word].insert(numbers.begin(), numbers.end());
    for (const std::string& number : numbers)
        next[number].insert({"verse", "verses", "through", "to", "and", "</s>"});
    for (std::string_view ten : tens)
        next[std::string(ten)].insert(units.begin(), units.end());
    for (std::string_view unit : units)
        next[std::string(unit)].insert("hundred");
    return next;
}

} // namespace

std::string arpa() {
    const Successors next = grammar();
    std::set<std::string> vocabulary = {"<s>", "</s>"};
    std::size_t bigrams = 0;
    for (const auto& [word, successors] : next) {
        vocabulary.insert(word);
        vocabulary.insert(successors.begin(), successors.end());
        bigrams += successors.size();
    }
    std::ostringstream out;
    out.setf(std::ios::fixed);
    out.precision(4);
    out << "\\data\\\nngram 1=" << vocabulary.size() << "\nngram 2=" << bigrams << "\n\n\\1-grams:\n";
    // Every word equally likely on its own; a tenth of the mass is kept back for unseen pairs.
    const double unigram = std::log10(1.0 / static_cast<double>(vocabulary.size()));
    for (const std::string& word : vocabulary)
        out << (word == "<s>" ? -99.0 : unigram) << " " << word << " " << (next.contains(word) ? -1.0 : 0.0) << "\n";
    out << "\n\\2-grams:\n";
    for (const auto& [word, successors] : next) {
        const double probability = std::log10(0.9 / static_cast<double>(successors.size()));
        for (const std::string& successor : successors)
            out << probability << " " << word << " " << successor << "\n";
    }
    out << "\n\\end\\\n";
    return out.str();
}

std::span<const std::pair<std::string_view, std::string_view>> pronunciations() {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 13> missing = {{
        {"colossians", "K AH L AA SH AH N Z"},
        {"deuteronomy", "D UW T ER AA N AH M IY"},
        {"ecclesiastes", "IH K L IY Z IY AE S T IY Z"},
        {"ephesians", "IH F IY ZH AH N Z"},
        {"galatians", "G AH L EY SH AH N Z"},
        {"habakkuk", "HH AH B AE K AH K"},
        {"haggai", "HH AE G AY"},
        {"lamentations", "L AE M AH N T EY SH AH N Z"},
        {"malachi", "M AE L AH K AY"},
        {"philippians", "F IH L IH P IY AH N Z"},
        {"thessalonians", "TH EH S AH L OW N IY AH N Z"},
        {"zechariah", "Z EH K ER AY AH"},
        {"zephaniah", "Z EH F AH N AY AH"},
    }};
    return missing;
}

} // namespace quillon::speech::referenceLanguageModel
