#include "scripture/BibleLoader.h"

#include "orvane/AsciiText.h"
#include "orvane/UnicodeText.h"
#include "scripture/ReferenceNormaliser.h"
#include "scripture/ReferenceParser.h"
#include "scripture/TopicTable.h"

#include <spdlog/spdlog.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

namespace quillon::scripture {

namespace {

using orvane::ascii::isDigit;
using orvane::ascii::isLetter;
using orvane::ascii::isSpace;
using orvane::ascii::trimmed;

// One version holds 31,102 verses: pre-sized so that loading never rehashes.
constexpr std::size_t expectedVerseCount = 32000;

std::optional<int> decimal(std::string_view digits) {
    int value = 0;
    auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return value;
}

bool isValidUtf8(std::string_view text) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    const std::size_t size = text.size();
    std::size_t i = 0;
    while (i < size) {
        // Bible texts are nearly all ASCII: skip eight plain bytes at a time.
        if (i + 8 <= size) {
            std::uint64_t block;
            std::memcpy(&block, bytes + i, 8);
            if ((block & 0x8080808080808080ULL) == 0) {
                i += 8;
                continue;
            }
        }
        unsigned char lead = bytes[i];
        if (lead < 0x80) {
            ++i;
            continue;
        }
        std::size_t length = 0;
        std::uint32_t point = 0;
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
            point = lead & 0x1F;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            point = lead & 0x0F;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            point = lead & 0x07;
        } else {
            return false;
        }
        if (i + length > size)
            return false;
        for (std::size_t k = 1; k < length; ++k) {
            if ((bytes[i + k] & 0xC0) != 0x80)
                return false;
            point = (point << 6) | (bytes[i + k] & 0x3F);
        }
        // Overlong forms, surrogates and values beyond U+10FFFF are decoding errors.
        if ((length == 3 && (point < 0x800 || (point >= 0xD800 && point <= 0xDFFF))) ||
            (length == 4 && (point < 0x10000 || point > 0x10FFFF)))
            return false;
        i += length;
    }
    return true;
}

/// The verse reference of a line, "^(\d?\s?[A-Za-z]+)\s+(\d+):(\d+)$", read by hand.
struct LineReference {
    std::string_view book;
    int chapter;
    int verse;
};

std::optional<LineReference> lineReference(std::string_view text) {
    std::size_t i = 0;
    const std::size_t n = text.size();
    if (i < n && isDigit(text[i]))
        ++i;
    if (i < n && isSpace(text[i]))
        ++i;
    std::size_t lettersStart = i;
    while (i < n && isLetter(text[i]))
        ++i;
    if (i == lettersStart)
        return std::nullopt;
    std::size_t bookEnd = i;
    std::size_t spaceStart = i;
    while (i < n && isSpace(text[i]))
        ++i;
    if (i == spaceStart)
        return std::nullopt;
    std::size_t chapterStart = i;
    while (i < n && isDigit(text[i]))
        ++i;
    if (i == chapterStart || i >= n || text[i] != ':')
        return std::nullopt;
    std::size_t chapterEnd = i++;
    std::size_t verseStart = i;
    while (i < n && isDigit(text[i]))
        ++i;
    if (i == verseStart || i != n)
        return std::nullopt;
    auto chapter = decimal(text.substr(chapterStart, chapterEnd - chapterStart));
    auto verse = decimal(text.substr(verseStart));
    if (!chapter || !verse)
        return std::nullopt;
    return LineReference{text.substr(0, bookEnd), *chapter, *verse};
}

/// The whole file in one read; the stream-iterator copy of the shared helper is several times
/// slower on a 4.5 MB Bible. Nothing when the file cannot be opened or read.
std::optional<std::string> wholeFile(const std::filesystem::path& file) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(file.c_str(), "rb"), &std::fclose);
    if (!stream)
        return std::nullopt;
    std::string bytes;
    char buffer[1 << 16];
    if (std::fseek(stream.get(), 0, SEEK_END) == 0) {
        long size = std::ftell(stream.get());
        if (size > 0)
            bytes.reserve(static_cast<std::size_t>(size));
        std::rewind(stream.get());
    }
    std::size_t read = 0;
    while ((read = std::fread(buffer, 1, sizeof buffer, stream.get())) > 0)
        bytes.append(buffer, read);
    if (std::ferror(stream.get()))
        return std::nullopt;
    return bytes;
}

std::shared_ptr<const VerseDictionary> emptyDictionary() {
    static const auto empty = std::make_shared<const VerseDictionary>();
    return empty;
}

std::string resultIdentifier(model::BibleVersion version, std::string_view key) {
    std::string id(model::rawValue(version));
    id.push_back('-');
    id.append(key);
    return id;
}

/// The first prefix that the lower-cased query begins with is stripped before the topic lookup.
constexpr std::array<std::string_view, 7> topicPrefixes = {
    "verses about ", "verse about ", "passages about ", "scriptures about ", "about ", "topic: ", "topic "};

/// A full-text query: quoted phrases, positive and negative terms, and whether any one suffices.
struct FullTextQuery {
    std::vector<std::string> phrases;
    std::vector<std::string> terms;
    std::vector<std::string> negativeTerms;
    bool matchAny = false;
};

std::string upperAscii(std::string_view text) {
    std::string upper(text);
    for (char& c : upper)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return upper;
}

FullTextQuery readFullTextQuery(std::string_view query) {
    FullTextQuery parsed;
    std::string rest;
    rest.reserve(query.size());
    for (std::size_t i = 0; i < query.size();) {
        if (query[i] != '"') {
            rest.push_back(query[i++]);
            continue;
        }
        std::size_t close = query.find('"', i + 1);
        if (close == std::string_view::npos || close == i + 1) {
            // A lone quote or an empty pair is no phrase; the quote is dropped with the punctuation.
            rest.push_back(' ');
            ++i;
            continue;
        }
        // Spaces inside the quotes are kept: " in the beginning" anchors the phrase at a word's start.
        std::string_view phrase = query.substr(i + 1, close - i - 1);
        if (!trimmed(phrase).empty())
            parsed.phrases.emplace_back(phrase);
        rest.push_back(' ');
        i = close + 1;
    }

    std::vector<std::string_view> tokens;
    for (std::size_t i = 0; i < rest.size();) {
        while (i < rest.size() && isSpace(rest[i]))
            ++i;
        std::size_t end = i;
        while (end < rest.size() && !isSpace(rest[end]))
            ++end;
        if (end > i)
            tokens.push_back(std::string_view(rest).substr(i, end - i));
        i = end;
    }
    for (std::string_view token : tokens)
        if (upperAscii(token) == "OR")
            parsed.matchAny = true;

    bool negateNext = false;
    for (std::string_view token : tokens) {
        const std::string upper = upperAscii(token);
        if (upper == "AND" || upper == "OR")
            continue;
        if (upper == "NOT") {
            negateNext = true;
            continue;
        }
        bool negative = negateNext;
        negateNext = false;
        if (token.starts_with('-')) {
            token.remove_prefix(1);
            if (token.empty())
                continue;
            negative = true;
        }
        WordIndex::forEachNormalisedWord(token, [&](std::string&& word) {
            (negative ? parsed.negativeTerms : parsed.terms).push_back(std::move(word));
        });
    }
    return parsed;
}

// How much each kind of match adds to a verse's score: a phrase says more than a single word.
constexpr int termScore = 1;
constexpr int phraseScore = 2;

/// One term or phrase found in one verse, and what it adds to the verse's score.
struct Hit {
    std::uint32_t verse;
    int score;
};

struct Candidate {
    int score;
    std::size_t versionPosition;
    const VerseEntry* entry;
};

} // namespace

BibleLoader::BibleLoader(BibleResourceBundle resourceBundle) : m_resourceBundle(std::move(resourceBundle)) {}

bool BibleLoader::isAvailable(model::BibleVersion version) const {
    return m_resourceBundle.fileFor(version).has_value();
}

std::optional<VerseDictionary> BibleLoader::parseVerseFile(std::string_view bytes) {
    if (!isValidUtf8(bytes))
        return std::nullopt;
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    VerseDictionary verses;
    verses.reserve(expectedVerseCount);
    while (!bytes.empty()) {
        std::size_t newline = bytes.find('\n');
        std::string_view line = bytes.substr(0, newline);
        bytes = newline == std::string_view::npos ? std::string_view() : bytes.substr(newline + 1);
        std::size_t bar = line.find('|');
        if (bar == std::string_view::npos)
            continue;
        auto reference = lineReference(trimmed(line.substr(0, bar)));
        if (!reference)
            continue;
        std::string key = verseKey(reference->book, reference->chapter, reference->verse);
        // A repeated verse keeps its first line.
        verses.try_emplace(std::move(key), BibleVerse{std::string(reference->book), reference->chapter,
                                                      reference->verse, std::string(trimmed(line.substr(bar + 1)))});
    }
    return verses;
}

std::shared_ptr<const VerseDictionary> BibleLoader::loadVerses(model::BibleVersion version) {
    {
        std::lock_guard lock(m_stateLock);
        if (auto found = m_cache.find(version); found != m_cache.end())
            return found->second;
    }
    auto file = m_resourceBundle.fileFor(version);
    if (!file)
        return emptyDictionary();
    auto bytes = wholeFile(*file);
    if (!bytes) {
        spdlog::error("Failed to read the Bible text {}", file->string());
        return emptyDictionary();
    }
    auto parsed = parseVerseFile(*bytes);
    if (!parsed) {
        spdlog::error("The Bible text {} is not UTF-8 text", file->string());
        return emptyDictionary();
    }
    auto verses = std::make_shared<const VerseDictionary>(std::move(*parsed));
    std::lock_guard lock(m_stateLock);
    m_cache[version] = verses; // a concurrent loader may have stored one meanwhile: the later store wins
    return verses;
}

std::shared_ptr<const WordIndex> BibleLoader::wordIndex(model::BibleVersion version) {
    {
        std::lock_guard lock(m_stateLock);
        if (auto found = m_wordIndexCache.find(version); found != m_wordIndexCache.end())
            return found->second;
    }
    auto verses = loadVerses(version);
    auto index = WordIndex::build(verses);
    // An empty dictionary from a missing file is not cached either, so its index is not.
    if (verses == emptyDictionary())
        return index;
    std::lock_guard lock(m_stateLock);
    m_wordIndexCache[version] = index;
    return index;
}

std::vector<BibleSearchResult> BibleLoader::verses(const ScriptureReference& reference,
                                                   const std::vector<model::BibleVersion>& versions) {
    std::vector<BibleSearchResult> results;
    const int verseCount = reference.book.verseCount(reference.chapter);
    if (verseCount == 0)
        return results;
    std::vector<int> numbers;
    if (reference.verses) {
        numbers = *reference.verses;
    } else {
        numbers.resize(static_cast<std::size_t>(verseCount));
        for (int verse = 1; verse <= verseCount; ++verse)
            numbers[static_cast<std::size_t>(verse - 1)] = verse;
    }
    const std::vector<model::BibleVersion> chosen =
        versions.empty() ? std::vector<model::BibleVersion>{model::BibleVersion::kjv} : versions;
    for (model::BibleVersion version : chosen) {
        auto dictionary = loadVerses(version);
        if (dictionary->empty())
            continue;
        for (int number : numbers) {
            std::string key = verseKey(reference.book.abbreviation, reference.chapter, number);
            auto found = dictionary->find(key);
            if (found != dictionary->end())
                results.push_back(BibleSearchResult{resultIdentifier(version, key), version, found->second});
        }
    }
    return results;
}

std::vector<BibleSearchResult> BibleLoader::search(std::string_view query, std::vector<model::BibleVersion> versions,
                                                   std::size_t limit) {
    // Pasted text carries no-break and thin spaces; they separate words like any other space.
    const std::string plain = withPlainSpaces(query);
    const std::string_view text = trimmed(plain);
    if (text.empty() || orvane::UnicodeText::characterCount(text) < 2 || limit == 0)
        return {};
    const ReferenceReading reading = readReference(text);
    // "John 3:16 NKJV" asks for the NKJV when the caller named no versions and its text is here.
    if (versions.empty())
        versions = {reading.version && isAvailable(*reading.version) ? *reading.version : model::BibleVersion::kjv};

    auto capped = [limit](std::vector<BibleSearchResult> results) {
        if (results.size() > limit)
            results.resize(limit);
        return results;
    };
    if (const auto& reference = reading.reference) {
        auto results = verses(*reference, versions);
        if (!results.empty())
            return capped(std::move(results));
    }
    if (auto results = topicResults(text, versions.front()); !results.empty())
        return capped(std::move(results));
    return fullTextResults(text, versions, limit);
}

std::vector<BibleSearchResult> BibleLoader::topicResults(std::string_view query, model::BibleVersion version) {
    const std::string lowered = orvane::UnicodeText::lowercased(query);
    std::string_view topic = trimmed(lowered);
    for (std::string_view prefix : topicPrefixes)
        if (topic.starts_with(prefix)) {
            topic.remove_prefix(prefix.size());
            break;
        }
    topic = trimmed(topic);
    std::vector<BibleSearchResult> results;
    for (std::string_view text : topicReferences(topic)) {
        auto reference = parse(text);
        if (!reference)
            continue;
        auto found = verses(*reference, {version});
        std::move(found.begin(), found.end(), std::back_inserter(results));
    }
    return results;
}

std::vector<BibleSearchResult> BibleLoader::fullTextResults(std::string_view query,
                                                            const std::vector<model::BibleVersion>& versions,
                                                            std::size_t limit) {
    const FullTextQuery parsed = readFullTextQuery(query);
    const std::size_t wanted = parsed.terms.size() + parsed.phrases.size();
    if (wanted == 0)
        return {};

    std::vector<Candidate> candidates;
    for (std::size_t position = 0; position < versions.size(); ++position) {
        if (std::find(versions.begin(), versions.begin() + static_cast<std::ptrdiff_t>(position), versions[position]) !=
            versions.begin() + static_cast<std::ptrdiff_t>(position))
            continue; // a version named twice is searched once
        auto index = wordIndex(versions[position]);
        if (index->verses().empty())
            continue;
        // Every (verse, score) a term or phrase earns, kept in verse order by merging each
        // ascending posting list in: a verse's matches then sit side by side.
        std::vector<Hit> hits;
        auto mergeIn = [&hits](auto&& verses, int score) {
            const auto middle = static_cast<std::ptrdiff_t>(hits.size());
            for (WordIndex::Ordinal verse : verses)
                hits.push_back(Hit{verse, score});
            std::inplace_merge(hits.begin(), hits.begin() + middle, hits.end(),
                               [](const Hit& a, const Hit& b) { return a.verse < b.verse; });
        };
        for (const std::string& term : parsed.terms)
            mergeIn(index->versesWith(term), termScore);
        for (const std::string& phrase : parsed.phrases)
            mergeIn(index->versesContaining(phrase), phraseScore);
        std::vector<WordIndex::Ordinal> excluded;
        for (const std::string& term : parsed.negativeTerms) {
            auto verses = index->versesWith(term);
            const auto middle = static_cast<std::ptrdiff_t>(excluded.size());
            excluded.insert(excluded.end(), verses.begin(), verses.end());
            std::inplace_merge(excluded.begin(), excluded.begin() + middle, excluded.end());
        }
        auto nextExcluded = excluded.begin();
        for (auto run = hits.begin(); run != hits.end();) {
            const WordIndex::Ordinal verse = run->verse;
            std::size_t matched = 0;
            int score = 0;
            for (; run != hits.end() && run->verse == verse; ++run) {
                ++matched;
                score += run->score;
            }
            if (!parsed.matchAny && matched < wanted)
                continue;
            while (nextExcluded != excluded.end() && *nextExcluded < verse)
                ++nextExcluded;
            if (nextExcluded != excluded.end() && *nextExcluded == verse)
                continue;
            candidates.push_back(Candidate{score, position, &index->entry(verse)});
        }
    }

    // Highest score first; equal scores by the verse key's plain text order (so "Gen 1:10"
    // comes before "Gen 1:2"), then in the order the versions were asked for.
    auto before = [](const Candidate& a, const Candidate& b) {
        if (a.score != b.score)
            return a.score > b.score;
        if (int order = a.entry->first.compare(b.entry->first); order != 0)
            return order < 0;
        return a.versionPosition < b.versionPosition;
    };
    const std::size_t count = std::min(limit, candidates.size());
    std::partial_sort(candidates.begin(), candidates.begin() + static_cast<std::ptrdiff_t>(count), candidates.end(),
                      before);
    std::vector<BibleSearchResult> results;
    results.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const Candidate& candidate = candidates[i];
        model::BibleVersion version = versions[candidate.versionPosition];
        results.push_back(
            BibleSearchResult{resultIdentifier(version, candidate.entry->first), version, candidate.entry->second});
    }
    return results;
}

} // namespace quillon::scripture
