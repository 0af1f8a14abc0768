#include "speech/ReferenceLanguageModel.h"
#include "scripture/BibleBook.h"
#include "speech/TranscriptionSettings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

namespace quillon::speech {
namespace {

struct Arpa {
    std::map<int, std::size_t> declared;
    std::map<int, std::size_t> listed;
    std::set<std::string> unigrams;
    std::vector<std::pair<std::string, std::string>> bigrams;
};

Arpa parseArpa(const std::string& text) {
    Arpa arpa;
    std::istringstream lines(text);
    int section = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.empty())
            continue;
        if (line.starts_with("ngram ")) {
            arpa.declared[std::stoi(line.substr(6, 1))] = std::stoul(line.substr(8));
        } else if (line == "\\1-grams:" || line == "\\2-grams:") {
            section = line[1] - '0';
        } else if (line.starts_with("\\")) {
            section = 0;
        } else if (section > 0) {
            std::istringstream fields(line);
            double probability = 0;
            std::string first, second;
            fields >> probability >> first;
            EXPECT_LE(probability, 0.0) << line;
            ++arpa.listed[section];
            if (section == 1) {
                arpa.unigrams.insert(first);
            } else {
                fields >> second;
                arpa.bigrams.emplace_back(first, second);
            }
        }
    }
    return arpa;
}

TEST(ReferenceLanguageModel, isWellFormedAndCoversEveryBook) {
    const Arpa arpa = parseArpa(referenceLanguageModel::arpa());
    EXPECT_EQ(arpa.declared, arpa.listed);
    for (const auto& [first, second] : arpa.bigrams) {
        EXPECT_TRUE(arpa.unigrams.contains(first)) << first;
        EXPECT_TRUE(arpa.unigrams.contains(second)) << second;
    }
    const std::set<std::pair<std::string, std::string>> pairs(arpa.bigrams.begin(), arpa.bigrams.end());
    for (const auto& expected : std::vector<std::pair<std::string, std::string>>{{"first", "corinthians"},
                                                                                 {"to", "philippians"},
                                                                                 {"song", "of"},
                                                                                 {"psalm", "twenty"},
                                                                                 {"john", "chapter"},
                                                                                 {"chapter", "three"},
                                                                                 {"three", "verse"},
                                                                                 {"twenty", "three"},
                                                                                 {"verse", "sixteen"},
                                                                                 {"sixteen", "through"}})
        EXPECT_TRUE(pairs.contains(expected)) << expected.first << " " << expected.second;
}

TEST(ReferenceLanguageModel, everyBookNameCanBeSpelledByTheRecogniser) {
    const std::filesystem::path dictionary =
        std::filesystem::path(TranscriptionSettings::defaultModelFolder) / "cmudict-en-us.dict";
    std::ifstream stream(dictionary);
    if (!stream)
        GTEST_SKIP() << "pocketsphinx-en-us is not installed";
    std::set<std::string> words;
    std::set<std::string> phones;
    for (std::string line; std::getline(stream, line);) {
        std::istringstream fields(line);
        std::string word;
        fields >> word;
        words.insert(word);
        for (std::string phone; fields >> phone;)
            phones.insert(phone);
    }
    for (const auto& [word, pronunciation] : referenceLanguageModel::pronunciations()) {
        words.insert(std::string(word));
        std::istringstream fields{std::string(pronunciation)};
        for (std::string phone; fields >> phone;)
            EXPECT_TRUE(phones.contains(phone)) << word << ": " << phone;
    }
    for (const std::string& word : parseArpa(referenceLanguageModel::arpa()).unigrams) {
        const bool marker = word == "<s>" || word == "</s>";
        EXPECT_TRUE(marker || words.contains(word)) << word;
    }
}

} // namespace
} // namespace quillon::speech
