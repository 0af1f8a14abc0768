#include "search/SermonSearchDisplayHit.h"

#include "orvane/LexicalRanking.h"
#include "orvane/LexicalTokenizer.h"
#include "orvane/SentenceTokenizer.h"
#include "search/SermonSearchIndex.h"

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <unordered_set>

namespace quillon::search {
namespace {

constexpr std::string_view ellipsis = "…";
// How much of the sentence before the first matching word a shortened snippet keeps, and how far a cut may move to
// land between words instead of inside one.
constexpr std::size_t leadingContext = 40;
constexpr std::size_t wordSnapDistance = 15;

using TermSet = std::unordered_set<std::string>;

std::unique_ptr<icu::BreakIterator> makeIterator(bool words) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> iterator{
        words ? icu::BreakIterator::createWordInstance(icu::Locale::getEnglish(), status)
              : icu::BreakIterator::createCharacterInstance(icu::Locale::getEnglish(), status)};
    return U_SUCCESS(status) ? std::move(iterator) : nullptr;
}

bool holdsTerm(const TermSet& terms, std::string_view word) {
    const auto tokens = orvane::LexicalTokenizer::tokens(word, 1, false);
    return !tokens.empty() && terms.contains(tokens.front());
}

std::size_t countTerms(const TermSet& terms, std::string_view sentence) {
    std::size_t count = 0;
    for (const auto& term : orvane::LexicalRanking::terms(sentence))
        count += terms.contains(term) ? 1 : 0;
    return count;
}

/// The UTF-16 offset of the first word of `text` that is one of `terms`, or nothing.
std::optional<int32_t> firstMatchOffset(const icu::UnicodeString& text, const TermSet& terms) {
    auto words = makeIterator(true);
    if (!words)
        return std::nullopt;
    words->setText(text);
    int32_t start = words->first();
    for (int32_t end = words->next(); end != icu::BreakIterator::DONE; start = end, end = words->next()) {
        if (words->getRuleStatus() == UBRK_WORD_NONE)
            continue;
        std::string word;
        text.tempSubStringBetween(start, end).toUTF8String(word);
        if (holdsTerm(terms, word))
            return start;
    }
    return std::nullopt;
}

bool isSpaceAt(const icu::UnicodeString& text, int32_t offset) {
    return offset < text.length() && u_isUWhiteSpace(text.char32At(offset));
}

std::string shortened(const std::string& sentence, const TermSet& terms) {
    const auto text = icu::UnicodeString::fromUTF8(sentence);
    // Boundaries of user-perceived characters, as UTF-16 offsets: boundaries[i] is where character i starts.
    std::vector<int32_t> boundaries;
    if (auto characters = makeIterator(false)) {
        characters->setText(text);
        for (int32_t offset = characters->first(); offset != icu::BreakIterator::DONE; offset = characters->next())
            boundaries.push_back(offset);
    } else {
        for (int32_t offset = 0; offset < text.length(); offset = text.moveIndex32(offset, 1))
            boundaries.push_back(offset);
        boundaries.push_back(text.length());
    }
    const std::size_t length = boundaries.empty() ? 0 : boundaries.size() - 1;
    const std::size_t maximum = SermonSearchDisplayHit::maximumSnippetLength;
    if (length <= maximum)
        return sentence;

    std::size_t match = 0;
    if (const auto offset = firstMatchOffset(text, terms))
        match = static_cast<std::size_t>(std::lower_bound(boundaries.begin(), boundaries.end(), *offset) -
                                         boundaries.begin());

    // Every ellipsis counts towards the maximum.
    std::size_t start = match > leadingContext ? match - leadingContext : 0;
    std::size_t end = 0;
    if (start == 0) {
        end = maximum - 1;
    } else if (start + (maximum - 2) < length) {
        end = start + (maximum - 2);
    } else {
        end = length;
        start = length - (maximum - 1);
    }

    // Prefer cutting between words, without losing the match.
    if (start > 0) {
        for (std::size_t i = start; i < std::min(start + wordSnapDistance, match); ++i)
            if (isSpaceAt(text, boundaries[i])) {
                start = i + 1;
                break;
            }
    }
    if (end < length) {
        for (std::size_t i = end; i > end - wordSnapDistance && i > match + 1; --i)
            if (isSpaceAt(text, boundaries[i])) {
                end = i;
                break;
            }
    }
    while (start < end && isSpaceAt(text, boundaries[start]))
        ++start;
    while (end > start && isSpaceAt(text, boundaries[end - 1]))
        --end;

    std::string result;
    if (start > 0)
        result += ellipsis;
    std::string body;
    text.tempSubStringBetween(boundaries[start], boundaries[end]).toUTF8String(body);
    result += body;
    if (end < length)
        result += ellipsis;
    return result;
}

TermSet queryTerms(std::string_view query, const std::vector<orvane::QueryCorrection>& corrections) {
    auto terms = orvane::LexicalRanking::terms(query);
    TermSet set(terms.begin(), terms.end());
    for (const auto& correction : corrections)
        set.insert(correction.used);
    return set;
}

} // namespace

std::string_view rawValue(SermonSearchDisplayHit::MatchTier tier) {
    switch (tier) {
    case SermonSearchDisplayHit::MatchTier::title:
        return "title";
    case SermonSearchDisplayHit::MatchTier::text:
        return "text";
    }
    return "text";
}

std::string SermonSearchDisplayHit::formattedDate(model::DateTime date) {
    static constexpr std::array<std::string_view, 12> months = {"January",   "February", "March",    "April",
                                                                "May",       "June",     "July",     "August",
                                                                "September", "October",  "November", "December"};
    const std::chrono::year_month_day day{std::chrono::floor<std::chrono::days>(date)};
    std::string text{months[static_cast<unsigned>(day.month()) - 1]};
    text += ' ';
    text += std::to_string(static_cast<unsigned>(day.day()));
    text += ", ";
    text += std::to_string(static_cast<int>(day.year()));
    return text;
}

std::string SermonSearchDisplayHit::snippetText(std::string_view text, const std::vector<std::string>& terms) {
    const TermSet set(terms.begin(), terms.end());
    const auto sentences = orvane::SentenceTokenizer::sentences(text);
    if (sentences.empty())
        return {};
    const std::string* best = &sentences.front();
    std::size_t bestCount = 0;
    for (const auto& sentence : sentences) {
        const auto count = countTerms(set, sentence);
        if (count > bestCount) {
            best = &sentence;
            bestCount = count;
        }
    }
    return shortened(*best, set);
}

SermonSearchDisplayHit SermonSearchDisplayHit::make(const orvane::SearchHit& hit, const model::SermonNote& sermon,
                                                    std::string_view query,
                                                    const std::vector<orvane::QueryCorrection>& corrections) {
    const auto terms = queryTerms(query, corrections);

    SermonSearchDisplayHit display;
    display.id = "sermon:" + hit.documentID;
    display.sermonID = sermon.id;
    display.title = sermon.title;
    if (sermon.series && !sermon.series->empty())
        display.subtitle = *sermon.series + " · ";
    display.subtitle += formattedDate(sermon.date);
    // The pieces are joined with line breaks, which end a sentence without adding the full stop the indexed text
    // puts between them (a piece that ends in one would show "..").
    std::string source;
    for (const auto& piece : SermonSearchIndex::documentPieces(sermon))
        source.append(source.empty() ? "" : "\n").append(piece);
    display.snippet = snippetText(source, {terms.begin(), terms.end()});
    display.matchTier = countTerms(terms, sermon.title) > 0 ? MatchTier::title : MatchTier::text;
    display.score = hit.score;
    return display;
}

} // namespace quillon::search
