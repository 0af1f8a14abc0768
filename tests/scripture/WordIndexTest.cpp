#include "scripture/WordIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

using namespace quillon::scripture;

namespace {

std::shared_ptr<const VerseDictionary> dictionaryOf(const std::vector<std::pair<std::string, std::string>>& verses) {
    auto dictionary = std::make_shared<VerseDictionary>();
    for (const auto& [key, text] : verses)
        dictionary->emplace(key, BibleVerse{"Gen", 1, 1, text});
    return dictionary;
}

std::vector<std::string> keysOf(const WordIndex& index, const auto& ordinals) {
    std::vector<std::string> keys;
    for (WordIndex::Ordinal verse : ordinals)
        keys.push_back(index.entry(verse).first);
    return keys;
}

/// Builds the index and checks it against a plain reading: each verse's text normalised word by
/// word, with no spelling cache, tells which verses every word must list.
void expectMatchesWordByWordReading(const std::shared_ptr<const VerseDictionary>& dictionary) {
    std::map<std::string, std::set<std::string>> expected;
    for (const auto& [key, verse] : *dictionary)
        WordIndex::forEachNormalisedWord(verse.text, [&](std::string&& word) { expected[word].insert(key); });

    auto index = WordIndex::build(dictionary);
    EXPECT_EQ(index->verseCount(), dictionary->size());
    EXPECT_EQ(index->wordCount(), expected.size());
    for (const auto& [word, keys] : expected) {
        auto ordinals = index->versesWith(word);
        EXPECT_TRUE(std::is_sorted(ordinals.begin(), ordinals.end())) << word;
        EXPECT_TRUE(std::adjacent_find(ordinals.begin(), ordinals.end()) == ordinals.end()) << word;
        auto found = keysOf(*index, ordinals);
        std::sort(found.begin(), found.end());
        EXPECT_EQ(found, std::vector<std::string>(keys.begin(), keys.end())) << word;
    }
    EXPECT_TRUE(index->versesWith("nowhere").empty());
}

} // namespace

TEST(WordIndex, listsTheSameVersesAsAWordByWordReadingOfTrickyTexts) {
    expectMatchesWordByWordReading(dictionaryOf({
        {"Gen 1:1", "The LORD, the Lord, the lord's house."},
        {"Gen 1:2", "Holy, holy, holy; he loved, he loveth, he shall love."},
        {"Gen 1:3", "And he spake, and saith, and hath given; she gave, he goes running for blessings."},
        {"Gen 1:4", "Adam called his wife’s name Eve: my brother’s keeper."},
        {"Gen 1:5", "ÆNEAS and Æneas and æneas were healed at Lydda."},
        {"Gen 1:6", "ALEPH א BETH ב; ΣΟΦΙΑ and σοφια; İstanbul; cafe\xCC\x81 and CAFÉ."},
        {"Gen 1:7", "a I o 7 77 666 x2 2x, the number of the beast is 666."},
        {"Gen 1:8", "--- ... !!! ???"},
        {"Gen 1:9", ""},
        {"Gen 1:10", "caf\xC3 broken bytes\xFF still words"},
        {"Gen 1:11", "Is is IS iS, lord LORD Lord."},
    }));
}

TEST(WordIndex, keepsEveryWordWhenAVersionHasMoreSpellingsThanTheFirstTableHolds) {
    // Some 40,000 distinct made-up spellings, ten to a verse, push the spelling table through
    // several growths; each must still lead to its own verses.
    std::vector<std::pair<std::string, std::string>> verses;
    std::string text;
    for (int n = 0; n < 40000; ++n) {
        std::string word = "q";
        for (int rest = n; rest > 0; rest /= 26)
            word.push_back(static_cast<char>('a' + rest % 26));
        text += word + (n % 3 == 0 ? " Qa " : " ");
        if (n % 10 == 9) {
            verses.emplace_back("Gen " + std::to_string(n / 10 + 1) + ":1", text);
            text.clear();
        }
    }
    expectMatchesWordByWordReading(dictionaryOf(verses));
}

TEST(WordIndex, phrasesMatchCaseInsensitivelyWithinOneVerse) {
    auto index = WordIndex::build(dictionaryOf({
        {"Joh 4:10", "He would have given thee LIVING water."},
        {"Joh 4:11", "Whence then hast thou that living"},
        {"Joh 4:12", "water? Art thou greater than our father Jacob?"},
        {"Act 9:34", "And Peter said unto him, Æneas, Jesus Christ maketh thee whole."},
    }));
    struct Case {
        const char* phrase;
        std::vector<std::string> keys;
    };
    for (const Case& entry : {
             Case{"living water", {"Joh 4:10"}},
             Case{"Living Water", {"Joh 4:10"}},
             Case{"living", {"Joh 4:10", "Joh 4:11"}},
             Case{"that living water", {}}, // the words sit in two verses
             Case{"living\nwater", {}},
             Case{"ÆNEAS, jesus", {"Act 9:34"}},
             Case{"jacob?", {"Joh 4:12"}},
             Case{"", {}},
         }) {
        auto found = keysOf(*index, index->versesContaining(entry.phrase));
        std::sort(found.begin(), found.end());
        EXPECT_EQ(found, entry.keys) << entry.phrase;
    }
}

TEST(WordIndex, aPhraseAcrossALongTextIsFoundOncePerVerseWhereverTheSearchIsCut) {
    // Long enough that the text is searched in many pieces; verses of different lengths move the cuts.
    std::vector<std::pair<std::string, std::string>> verses;
    for (int number = 1; number <= 3000; ++number)
        verses.emplace_back("Psa " + std::to_string(number),
                            "Grace upon grace" + std::string(static_cast<std::size_t>(number % 97), '.') + " verse " +
                                std::to_string(number) + " ends");
    auto index = WordIndex::build(dictionaryOf(verses));
    auto everywhere = keysOf(*index, index->versesContaining("grace"));
    EXPECT_EQ(everywhere.size(), 3000u);
    EXPECT_EQ(std::set<std::string>(everywhere.begin(), everywhere.end()).size(), 3000u);
    EXPECT_EQ(keysOf(*index, index->versesContaining("verse 2999 ends")), std::vector<std::string>{"Psa 2999"});
    EXPECT_TRUE(index->versesContaining("ends\ngrace").empty()); // runs from one verse into the next
}
