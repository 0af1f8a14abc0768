#include "orvane/QueryExpansion.h"

#include "orvane/LexicalTokenizer.h"
#include "orvane/TextDistance.h"
#include "orvane/UnicodeText.h"

#include <cstdlib>

namespace orvane {
namespace {

// "lords supper" holds a space, so no token can ever match it; it stays because the table is shared as it is.
const std::vector<std::vector<std::string_view>>& groups() {
    static const std::vector<std::vector<std::string_view>> table = {
        {"forgiveness", "pardon", "mercy"},
        {"salvation", "saved", "redemption"},
        {"repentance", "repent", "turning"},
        {"resurrection", "risen", "raised"},
        {"baptism", "baptise", "baptize"},
        {"communion", "eucharist", "lords supper"},
        {"praise", "worship", "adoration"},
        {"prayer", "praying", "intercession"},
        {"scripture", "bible", "word"},
        {"sermon", "message", "preaching"},
        {"congregation", "church", "assembly"},
        {"offering", "tithe", "giving"},
        {"shepherd", "pastor"},
        {"disciple", "follower"},
        {"gospel", "goodnews"},
        {"sanctuary", "auditorium"},
        // The production vocabulary of church media, which the settings search also goes through.
        {"camera", "cam"},
        {"microphone", "mic"},
        {"recording", "capture"},
        {"broadcast", "stream", "livestream"},
        {"projector", "screen", "display"},
    };
    return table;
}

const StringMap<std::vector<std::string_view>>& synonymMap() {
    static const StringMap<std::vector<std::string_view>> map = [] {
        StringMap<std::vector<std::string_view>> result;
        for (const auto& group : groups())
            for (std::string_view word : group) {
                std::vector<std::string_view>& others = result[std::string(word)];
                for (std::string_view other : group)
                    if (other != word)
                        others.push_back(other);
            }
        return result;
    }();
    return map;
}

} // namespace

std::span<const std::vector<std::string_view>> QueryExpansion::synonymGroups() {
    return groups();
}

std::span<const std::string_view> QueryExpansion::synonyms(std::string_view word) {
    const auto& map = synonymMap();
    const auto found = map.find(word);
    if (found == map.end())
        return {};
    return found->second;
}

std::optional<std::string> QueryExpansion::correction(std::string_view token) const {
    const std::size_t tokenLength = UnicodeText::characterCount(token);
    if (tokenLength < 4)
        return std::nullopt;
    const std::string* bestWord = nullptr;
    double best = 0.0;
    double runnerUp = 0.0;
    for (const std::string& word : vocabulary) {
        const std::size_t wordLength = UnicodeText::isAscii(word) ? word.size() : UnicodeText::characterCount(word);
        const std::size_t gap = wordLength > tokenLength ? wordLength - tokenLength : tokenLength - wordLength;
        if (gap >= 3)
            continue;
        const std::size_t longest = std::max(wordLength, tokenLength);
        const double similarity =
            longest < 1 ? 1.0
                        : 1.0 - static_cast<double>(TextDistance::distance(token, word)) / static_cast<double>(longest);
        if (similarity < minimumRatio)
            continue;
        if (similarity > best) {
            runnerUp = best;
            best = similarity;
            bestWord = &word;
        } else if (similarity > runnerUp) {
            runnerUp = similarity;
        }
    }
    // Two words equally close cancel each other, so the answer never depends on the set's iteration order.
    if (bestWord == nullptr || best - runnerUp < 0.06)
        return std::nullopt;
    return *bestWord;
}

QueryExpansion::Expansion QueryExpansion::expand(std::string_view query) const {
    Expansion expansion;
    for (const std::string& token : LexicalTokenizer::tokens(query, 2, true)) {
        expansion.terms.push_back(token);
        if (vocabulary.contains(std::string_view(token))) {
            for (std::string_view synonym : synonyms(token)) {
                if (!vocabulary.contains(synonym))
                    continue;
                expansion.terms.emplace_back(synonym);
                expansion.corrections.push_back({token, std::string(synonym), QueryCorrection::Kind::synonym});
            }
            continue;
        }
        const std::optional<std::string> corrected = correction(token);
        if (!corrected)
            continue;
        expansion.terms.push_back(*corrected);
        expansion.corrections.push_back({token, *corrected, QueryCorrection::Kind::spelling});
        for (std::string_view synonym : synonyms(*corrected))
            if (vocabulary.contains(synonym))
                expansion.terms.emplace_back(synonym);
    }
    return expansion;
}

} // namespace orvane
