#include "intelligence/RewriteForTheRoom.h"

#include "intelligence/FeatureText.h"
#include "intelligence/ReferenceRecogniser.h"
#include "orvane/SentenceTokenizer.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <set>

namespace quillon::intelligence {

namespace {

struct Room {
    RoomProfile room;
    const char* raw;
    const char* label;
    const char* instruction;
};

constexpr Room rooms[] = {
    {RoomProfile::liveStream, "liveStream", "Online / Livestream",
     "Rewrite this for someone watching online, who can pause and rewatch but is easily distracted. Use short, "
     "direct sentences."},
    {RoomProfile::largeSanctuary, "largeSanctuary", "Large Sanctuary",
     "Rewrite this for a large sanctuary, where listeners are seated far from the speaker, cannot ask a question, and "
     "hear it once. Use shorter sentences and plainer words without losing the meaning."},
    {RoomProfile::youthAndFamily, "youthAndFamily", "Youth & Family",
     "Rewrite this for a youth and family service. Use everyday words and short sentences — the kind a teenager would "
     "actually use talking to a friend."},
    {RoomProfile::smallGroup, "smallGroup", "Small Group",
     "Rewrite this for a small group sitting close together who can follow a longer thought and ask questions "
     "afterward. Fuller sentences are fine, but stay clear."},
};

const Room& roomOf(RoomProfile room) {
    for (const Room& entry : rooms)
        if (entry.room == room)
            return entry;
    return rooms[0];
}

std::vector<std::string> wordsOf(const std::string& text) {
    std::vector<std::string> words;
    std::string word;
    for (char c : text) {
        if (std::isalnum(static_cast<unsigned char>(c)) || c == '\'' || (c & 0x80)) {
            word += c;
        } else if (!word.empty()) {
            words.push_back(word);
            word.clear();
        }
    }
    if (!word.empty())
        words.push_back(word);
    return words;
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

int syllables(const std::string& word) {
    std::string w = lower(word);
    int count = 0;
    bool previousVowel = false;
    for (char c : w) {
        bool vowel = std::string_view("aeiouy").find(c) != std::string_view::npos;
        count += vowel && !previousVowel;
        previousVowel = vowel;
    }
    if (w.size() > 2 && w.back() == 'e' && w[w.size() - 2] != 'l' && count > 1)
        --count; // a silent final e ("grace"), but not "-le" ("table")
    return std::max(count, 1);
}

} // namespace

std::string_view rawValue(RoomProfile room) {
    return roomOf(room).raw;
}

std::optional<RoomProfile> roomProfileFromRawValue(std::string_view text) {
    for (const Room& entry : rooms)
        if (text == entry.raw)
            return entry.room;
    return std::nullopt;
}

std::string_view label(RoomProfile room) {
    return roomOf(room).label;
}

std::string RewriteForTheRoom::identifier() const {
    return orvane::intelligenceFeatureEntry("RewriteForTheRoom")->identifier;
}

orvane::IntelligencePolicy RewriteForTheRoom::policy() const {
    return orvane::intelligenceFeatureEntry("RewriteForTheRoom")->policy;
}

std::string RewriteForTheRoom::emptyState(const RewriteRequest& request) {
    return featureText::trimmed(request.text).empty() ? nothingToRewrite : "";
}

std::string RewriteForTheRoom::instructions(RoomProfile room) {
    return std::string(roomOf(room).instruction) + " " + commonInstruction;
}

std::string RewriteForTheRoom::caption(RoomProfile room, double readingGrade) {
    return fmt::format("Rewritten by a model for {}. Reading grade {:.1f}", label(room), readingGrade);
}

double RewriteForTheRoom::readingGrade(const std::string& text) {
    std::size_t sentences = std::max<std::size_t>(orvane::SentenceTokenizer::sentences(text).size(), 1);
    std::vector<std::string> words = wordsOf(text);
    if (words.empty())
        return 0;
    int syllableCount = 0;
    for (const std::string& word : words)
        syllableCount += syllables(word);
    double perSentence = static_cast<double>(words.size()) / static_cast<double>(sentences);
    double perWord = static_cast<double>(syllableCount) / static_cast<double>(words.size());
    return 0.39 * perSentence + 11.8 * perWord - 15.59;
}

Rewrite RewriteForTheRoom::verified(const std::string& original, const std::string& reply) {
    std::string text = featureText::trimmed(reply);
    auto reject = [] { throw orvane::IntelligenceError::malformedResponse(unverified); };
    if (text.empty())
        reject();
    double ratio = static_cast<double>(featureText::characterCount(text)) /
                   static_cast<double>(std::max<std::size_t>(featureText::characterCount(original), 1));
    if (ratio < 0.5 || ratio > 1.5)
        reject();
    if (!ReferenceRecogniser::namesOnly(text, ReferenceRecogniser::referencesIn(original)))
        reject();
    std::vector<std::string> originalWords = wordsOf(original);
    std::set<std::string> known;
    for (const std::string& word : originalWords)
        known.insert(lower(word));
    // A number, or a capitalised word that does not open a sentence, must come from the original.
    for (const std::string& sentence : orvane::SentenceTokenizer::sentences(text)) {
        std::vector<std::string> words = wordsOf(sentence);
        for (std::size_t i = 0; i < words.size(); ++i) {
            const std::string& word = words[i];
            bool number = std::isdigit(static_cast<unsigned char>(word[0]));
            bool name = i > 0 && std::isupper(static_cast<unsigned char>(word[0])) && word != "I";
            if ((number || name) && !known.contains(lower(word)))
                reject();
        }
    }
    return {text, readingGrade(text)};
}

Rewrite RewriteForTheRoom::fallback(const RewriteRequest& request) const {
    return {request.text, readingGrade(request.text)};
}

Rewrite RewriteForTheRoom::generate(const RewriteRequest& request,
                                    orvane::IntelligenceBackendProviding& backend) const {
    if (!emptyState(request).empty())
        throw orvane::IntelligenceError::malformedResponse(nothingToRewrite);
    return verified(request.text, backend.respond({instructions(request.room), request.text, {}}).text);
}

} // namespace quillon::intelligence
