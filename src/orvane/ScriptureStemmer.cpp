#include "orvane/ScriptureStemmer.h"

#include "orvane/AsciiText.h"
#include "orvane/UnicodeText.h"
#include "orvane/WordTable.h"

#include <algorithm>
#include <array>
#include <utility>

namespace orvane {
namespace {

constexpr std::array<std::string_view, 54> queryFillerList = {
    "passage", "passages", "verse",    "verses", "scripture", "scriptures", "chapter", "chapters", "story",
    "stories", "account",  "accounts", "bible",  "about",     "where",      "find",    "show",     "looking",
    "search",  "please",   "which",    "what",   "who",       "whom",       "whose",   "when",     "that",
    "this",    "there",    "here",     "the",    "and",       "but",        "for",     "with",     "from",
    "into",    "unto",     "his",      "her",    "him",       "she",        "they",    "them",     "their",
    "was",     "were",     "had",      "has",    "have",      "are",        "you",     "your",     "its",
};

constexpr std::array<std::string_view, 8> suffixList = {"eth", "est", "ings", "ing", "edst", "ed", "es", "s"};

constexpr std::array<std::pair<std::string_view, std::string_view>, 147> irregularFormList = {{
    {"ran", "run"},         {"came", "come"},        {"went", "go"},
    {"gone", "go"},         {"saw", "see"},          {"seen", "see"},
    {"fell", "fall"},       {"fallen", "fall"},      {"met", "meet"},
    {"lost", "lose"},       {"made", "make"},        {"found", "find"},
    {"heard", "hear"},      {"held", "hold"},        {"told", "tell"},
    {"sold", "sell"},       {"felt", "feel"},        {"kept", "keep"},
    {"slept", "sleep"},     {"left", "leave"},       {"built", "build"},
    {"sent", "send"},       {"spent", "spend"},      {"bent", "bend"},
    {"brought", "bring"},   {"taught", "teach"},     {"caught", "catch"},
    {"bought", "buy"},      {"sought", "seek"},      {"thought", "think"},
    {"fought", "fight"},    {"stood", "stand"},      {"understood", "understand"},
    {"wrote", "write"},     {"written", "write"},    {"spoke", "speak"},
    {"spoken", "speak"},    {"spake", "speak"},      {"broke", "break"},
    {"broken", "break"},    {"chose", "choose"},     {"chosen", "choose"},
    {"rose", "rise"},       {"risen", "rise"},       {"arose", "arise"},
    {"arisen", "arise"},    {"drove", "drive"},      {"driven", "drive"},
    {"threw", "throw"},     {"thrown", "throw"},     {"grew", "grow"},
    {"grown", "grow"},      {"blew", "blow"},        {"blown", "blow"},
    {"knew", "know"},       {"known", "know"},       {"flew", "fly"},
    {"flown", "fly"},       {"drew", "draw"},        {"drawn", "draw"},
    {"began", "begin"},     {"begun", "begin"},      {"sang", "sing"},
    {"sung", "sing"},       {"drank", "drink"},      {"drunk", "drink"},
    {"sank", "sink"},       {"sunk", "sink"},        {"swam", "swim"},
    {"rang", "ring"},       {"became", "become"},    {"overcame", "overcome"},
    {"forgave", "forgive"}, {"forgiven", "forgive"}, {"gave", "give"},
    {"given", "give"},      {"took", "take"},        {"taken", "take"},
    {"ate", "eat"},         {"eaten", "eat"},        {"wore", "wear"},
    {"worn", "wear"},       {"bore", "bear"},        {"born", "bear"},
    {"borne", "bear"},      {"tore", "tear"},        {"torn", "tear"},
    {"swore", "swear"},     {"sworn", "swear"},      {"slew", "slay"},
    {"slain", "slay"},      {"smote", "smite"},      {"smitten", "smite"},
    {"bade", "bid"},        {"begat", "beget"},      {"begotten", "beget"},
    {"lay", "lie"},         {"lain", "lie"},         {"laid", "lay"},
    {"led", "lead"},        {"fed", "feed"},         {"bled", "bleed"},
    {"fled", "flee"},       {"hid", "hide"},         {"hidden", "hide"},
    {"bound", "bind"},      {"wound", "wind"},       {"ground", "grind"},
    {"wept", "weep"},       {"crept", "creep"},      {"swept", "sweep"},
    {"leapt", "leap"},      {"dwelt", "dwell"},      {"knelt", "kneel"},
    {"clothed", "clothe"},  {"children", "child"},   {"men", "man"},
    {"women", "woman"},     {"feet", "foot"},        {"teeth", "tooth"},
    {"oxen", "ox"},         {"brethren", "brother"}, {"wives", "wife"},
    {"lives", "life"},      {"knives", "knife"},     {"leaves", "leaf"},
    {"loaves", "loaf"},     {"thieves", "thief"},    {"saith", "say"},
    {"sayeth", "say"},      {"sayest", "say"},       {"said", "say"},
    {"hath", "have"},       {"hast", "have"},        {"has", "have"},
    {"had", "have"},        {"doth", "do"},          {"doeth", "do"},
    {"doest", "do"},        {"dost", "do"},          {"does", "do"},
    {"shalt", "shall"},     {"wilt", "will"},        {"canst", "can"},
    {"art", "are"},         {"wast", "was"},         {"wert", "were"},
}};

using ascii::isLetter;

const WordTable& fillerTable() {
    static const WordTable table = wordTableOf(queryFillerList);
    return table;
}

const WordTable& irregularTable() {
    static const WordTable table(
        std::vector<std::pair<std::string_view, std::string_view>>(irregularFormList.begin(), irregularFormList.end()));
    return table;
}

// The stemming steps after irregular forms, written once for plain ASCII words (one byte per character) and
// once for words held as user-perceived characters.
std::size_t length(const std::string& word) {
    return word.size();
}
std::size_t length(const std::vector<std::string>& word) {
    return word.size();
}
bool is(char character, char c) {
    return character == c;
}
bool is(const std::string& character, char c) {
    return character.size() == 1 && character[0] == c;
}

template <typename Word>
bool endsWith(const Word& word, std::string_view suffix) {
    if (length(word) < suffix.size())
        return false;
    const std::size_t start = length(word) - suffix.size();
    for (std::size_t i = 0; i < suffix.size(); ++i)
        if (!is(word[start + i], suffix[i]))
            return false;
    return true;
}

template <typename Word>
void removeSuffixAndFinalE(Word& word) {
    bool removed = false;
    for (std::string_view suffix : suffixList) {
        // At least three characters must remain.
        if (suffix.size() + 2 >= length(word) || !endsWith(word, suffix))
            continue;
        const auto& before = word[length(word) - suffix.size() - 1];
        // "glass", "thus", "this" keep their final "s".
        if (suffix == "s" && (is(before, 's') || is(before, 'u') || is(before, 'i')))
            break;
        word.resize(length(word) - suffix.size());
        removed = true;
        break;
    }
    if (removed && length(word) >= 4) {
        const auto& last = word[length(word) - 1];
        const bool doubled = last == word[length(word) - 2];
        bool kept = false;
        for (char c : std::string_view("aeioulsz"))
            kept = kept || is(last, c);
        // "runn" becomes "run"; "fall", "bless", "buzz" stay.
        if (doubled && !kept)
            word.resize(length(word) - 1);
    }
    if (length(word) >= 4 && is(word[length(word) - 1], 'e'))
        word.resize(length(word) - 1);
}

std::string stemAscii(std::string word) {
    if (word.size() < 3)
        return word;
    if (const std::string_view* base = irregularTable().find(word))
        word = *base;
    removeSuffixAndFinalE(word);
    return word;
}

std::string joined(const std::vector<std::string>& characters) {
    std::string result;
    for (const auto& character : characters)
        result += character;
    return result;
}

} // namespace

const StringSet& ScriptureStemmer::queryFillers() {
    static const StringSet fillers = setOf(queryFillerList);
    return fillers;
}

std::span<const std::string_view> ScriptureStemmer::suffixes() {
    return suffixList;
}

const StringMap<std::string>& ScriptureStemmer::irregularForms() {
    static const StringMap<std::string> forms = [] {
        StringMap<std::string> map;
        for (const auto& [form, base] : irregularFormList)
            map.emplace(form, base);
        return map;
    }();
    return forms;
}

std::string ScriptureStemmer::stem(std::string_view word) {
    if (UnicodeText::isAscii(word)) {
        if (word.size() < 3)
            return std::string(word);
        if (word.size() >= 5 && word.ends_with("'s"))
            word.remove_suffix(2);
        std::string letters;
        letters.reserve(word.size());
        for (char c : word)
            if (isLetter(c))
                letters.push_back(c);
        return stemAscii(std::move(letters));
    }

    std::vector<std::string> characters = UnicodeText::characters(word);
    if (characters.size() < 3)
        return joined(characters);
    if (characters.size() >= 5 && is(characters.back(), 's')) {
        const std::string& apostrophe = characters[characters.size() - 2];
        if (apostrophe == "'" || apostrophe == "\u2019")
            characters.resize(characters.size() - 2);
    }
    std::vector<std::string> letters;
    letters.reserve(characters.size());
    for (auto& character : characters)
        if (UnicodeText::isLetter(character))
            letters.push_back(std::move(character));
    const std::string letterText = joined(letters);
    // Irregular forms are plain ASCII, so a word that is ASCII once its marks are gone takes the plain path.
    if (UnicodeText::isAscii(letterText))
        return stemAscii(letterText);
    if (letters.size() < 3)
        return letterText;
    removeSuffixAndFinalE(letters);
    return joined(letters);
}

std::vector<std::string> ScriptureStemmer::terms(std::string_view text) {
    std::vector<std::string> result;
    // Texts are mostly a verse or a query with a handful of stems, where scanning the result beats hashing; long
    // texts switch to a set.
    constexpr std::size_t scanLimit = 32;
    StringSet seen;
    const WordTable& fillers = fillerTable();
    auto take = [&](std::string_view run) {
        if (fillers.contains(run))
            return;
        std::string stemmed = stem(run);
        if (stemmed.empty())
            return;
        if (result.size() < scanLimit) {
            if (std::find(result.begin(), result.end(), stemmed) != result.end())
                return;
        } else {
            if (seen.empty())
                seen.insert(result.begin(), result.end());
            if (!seen.insert(stemmed).second)
                return;
        }
        result.push_back(std::move(stemmed));
    };

    std::string run;
    // Typographic marks in otherwise plain text are no letters, so they simply end a run here.
    if (UnicodeText::isAscii(text) || ascii::isSimple(text)) {
        std::size_t i = 0;
        while (i < text.size()) {
            if (!isLetter(text[i])) {
                ++i;
                continue;
            }
            const std::size_t start = i;
            while (i < text.size() && isLetter(text[i]))
                ++i;
            if (i - start >= 3) {
                run.resize(i - start);
                for (std::size_t k = 0; k < run.size(); ++k)
                    run[k] = ascii::lower(text[start + k]);
                take(run);
            }
        }
        return result;
    }

    std::size_t runLength = 0;
    auto finishRun = [&] {
        if (runLength >= 3)
            take(UnicodeText::lowercased(run));
        run.clear();
        runLength = 0;
    };
    for (const std::string& character : UnicodeText::characters(text)) {
        if (UnicodeText::isLetter(character)) {
            run += character;
            ++runLength;
        } else {
            finishRun();
        }
    }
    finishRun();
    return result;
}

} // namespace orvane
