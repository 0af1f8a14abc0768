#include "orvane/UnicodeText.h"

#include "orvane/AsciiText.h"

#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <cstdint>
#include <cstring>
#include <memory>

namespace orvane {
namespace {

char asciiLower(char c) {
    return ascii::lower(c);
}

enum class BreakKind { word, sentence, character };

// Creating a break iterator loads and compiles rules, so each thread keeps one of each kind and reuses it.
icu::BreakIterator* breakIterator(BreakKind kind) {
    thread_local std::unique_ptr<icu::BreakIterator> iterators[3];
    auto& slot = iterators[static_cast<int>(kind)];
    if (!slot) {
        UErrorCode status = U_ZERO_ERROR;
        const icu::Locale& root = icu::Locale::getRoot();
        switch (kind) {
        case BreakKind::word:
            slot.reset(icu::BreakIterator::createWordInstance(root, status));
            break;
        case BreakKind::sentence:
            slot.reset(icu::BreakIterator::createSentenceInstance(root, status));
            break;
        case BreakKind::character:
            slot.reset(icu::BreakIterator::createCharacterInstance(root, status));
            break;
        }
        if (U_FAILURE(status))
            slot.reset();
    }
    return slot.get();
}

// Calls visit(start, end, ruleStatus) for each segment of valid UTF-8 text; byte offsets.
template <typename Visit>
void forEachSegment(BreakKind kind, std::string_view validText, Visit&& visit) {
    if (validText.empty())
        return;
    icu::BreakIterator* iterator = breakIterator(kind);
    if (iterator == nullptr) {
        visit(std::size_t{0}, validText.size(), 0);
        return;
    }
    UErrorCode status = U_ZERO_ERROR;
    UText text = UTEXT_INITIALIZER;
    utext_openUTF8(&text, validText.data(), static_cast<int64_t>(validText.size()), &status);
    iterator->setText(&text, status);
    if (U_FAILURE(status)) {
        utext_close(&text);
        visit(std::size_t{0}, validText.size(), 0);
        return;
    }
    // The segments are collected before any is visited, because a visitor may segment other text on this thread
    // and so reuse this iterator.
    struct Segment {
        std::size_t from, to;
        int32_t status;
    };
    std::vector<Segment> segments;
    int32_t start = iterator->first();
    for (int32_t end = iterator->next(); end != icu::BreakIterator::DONE; start = end, end = iterator->next()) {
        const auto from = static_cast<std::size_t>(start);
        const auto to = std::min(static_cast<std::size_t>(end), validText.size());
        if (from < to)
            segments.push_back({from, to, iterator->getRuleStatus()});
    }
    // The iterator keeps a pointer to the UText; detach it before the UText goes away.
    UText empty = UTEXT_INITIALIZER;
    utext_openUTF8(&empty, "", 0, &status);
    iterator->setText(&empty, status);
    utext_close(&text);
    utext_close(&empty);
    for (const Segment& segment : segments)
        visit(segment.from, segment.to, segment.status);
}

bool isValidUtf8(std::string_view text) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    const auto length = static_cast<int32_t>(text.size());
    int32_t i = 0;
    while (i < length) {
        UChar32 c;
        U8_NEXT(bytes, i, length, c);
        if (c < 0)
            return false;
    }
    return true;
}

// Texts beyond 2 GiB cannot be handed to ICU in one piece; nobody types or stores such a text, so it is cut.
std::string_view boundedForIcu(std::string_view text) {
    constexpr std::size_t limit = 0x7fff0000;
    return text.size() > limit ? text.substr(0, limit) : text;
}

UChar32 firstCodePoint(std::string_view character) {
    if (character.empty())
        return -1;
    const auto* bytes = reinterpret_cast<const uint8_t*>(character.data());
    const auto length = static_cast<int32_t>(std::min<std::size_t>(character.size(), 4));
    int32_t i = 0;
    UChar32 c;
    U8_NEXT(bytes, i, length, c);
    return c;
}

bool hasCategory(std::string_view character, uint32_t mask) {
    const UChar32 c = firstCodePoint(character);
    return c >= 0 && (U_GET_GC_MASK(c) & mask) != 0;
}

std::string toUtf8(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

icu::UnicodeString fromUtf8(std::string_view text) {
    return icu::UnicodeString::fromUTF8(
        icu::StringPiece(boundedForIcu(text).data(), static_cast<int32_t>(boundedForIcu(text).size())));
}

bool isSimple(std::string_view text) {
    return UnicodeText::isAscii(text) || ascii::isSimple(text);
}

} // namespace

bool UnicodeText::isAscii(std::string_view text) noexcept {
    // Eight bytes at a time: this runs on every word of every verse.
    const char* data = text.data();
    std::size_t size = text.size();
    std::uint64_t high = 0;
    while (size >= 8) {
        std::uint64_t block;
        std::memcpy(&block, data, 8);
        high |= block;
        data += 8;
        size -= 8;
    }
    for (; size > 0; --size, ++data)
        high |= static_cast<unsigned char>(*data);
    return (high & 0x8080808080808080ull) == 0;
}

std::string UnicodeText::repaired(std::string_view text) {
    text = boundedForIcu(text);
    if (isAscii(text) || isValidUtf8(text))
        return std::string(text);
    std::string result;
    result.reserve(text.size() + 8);
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    const auto length = static_cast<int32_t>(text.size());
    int32_t i = 0;
    while (i < length) {
        const int32_t start = i;
        UChar32 c;
        U8_NEXT(bytes, i, length, c);
        if (c < 0)
            result.append("\xEF\xBF\xBD");
        else
            result.append(text.data() + start, static_cast<std::size_t>(i - start));
    }
    return result;
}

void UnicodeText::forEachWord(std::string_view text, const std::function<void(std::string_view)>& visit) {
    if (isSimple(text)) {
        ascii::forEachWord(text, visit);
        return;
    }
    const std::string valid = repaired(text);
    // Words never span ASCII white space, so plain chunks keep the fast path and only the chunks holding other
    // characters go through ICU.
    const std::string_view all(valid);
    std::size_t position = 0;
    while (position < all.size()) {
        std::size_t end = all.find_first_of(" \t\r\n", position);
        if (end == std::string_view::npos)
            end = all.size();
        const std::string_view chunk = all.substr(position, end - position);
        if (isSimple(chunk)) {
            ascii::forEachWord(chunk, visit);
        } else {
            forEachSegment(BreakKind::word, chunk, [&](std::size_t from, std::size_t to, int32_t status) {
                if (status >= UBRK_WORD_NONE_LIMIT)
                    visit(chunk.substr(from, to - from));
            });
        }
        position = end + 1;
    }
}

std::vector<std::string> UnicodeText::words(std::string_view text) {
    std::vector<std::string> result;
    forEachWord(text, [&](std::string_view word) { result.emplace_back(word); });
    return result;
}

std::vector<std::string> UnicodeText::sentences(std::string_view text) {
    const std::string valid = repaired(text);
    std::vector<std::string> result;
    forEachSegment(BreakKind::sentence, valid,
                   [&](std::size_t from, std::size_t to, int32_t) { result.push_back(valid.substr(from, to - from)); });
    return result;
}

std::vector<std::string> UnicodeText::characters(std::string_view text) {
    std::vector<std::string> result;
    if (isSimple(text)) {
        result.reserve(text.size());
        for (std::size_t i = 0; i < text.size();) {
            std::size_t length = 1;
            // CR LF is one user-perceived character.
            if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
                length = 2;
            else if (static_cast<unsigned char>(text[i]) >= 0x80)
                length = ascii::typographicMarkLength(text, i);
            result.emplace_back(text.substr(i, length));
            i += length;
        }
        return result;
    }
    const std::string valid = repaired(text);
    forEachSegment(BreakKind::character, valid,
                   [&](std::size_t from, std::size_t to, int32_t) { result.push_back(valid.substr(from, to - from)); });
    return result;
}

std::size_t UnicodeText::characterCount(std::string_view text) {
    if (isSimple(text)) {
        std::size_t count = text.size();
        for (std::size_t i = 0; i < text.size(); ++i) {
            const auto byte = static_cast<unsigned char>(text[i]);
            if ((byte & 0xC0) == 0x80 || (byte == '\r' && i + 1 < text.size() && text[i + 1] == '\n'))
                --count;
        }
        return count;
    }
    const std::string valid = repaired(text);
    std::size_t count = 0;
    forEachSegment(BreakKind::character, valid, [&](std::size_t, std::size_t, int32_t) { ++count; });
    return count;
}

std::string UnicodeText::folded(std::string_view text) {
    // Typographic marks have no case and no accents, so simple text only needs its ASCII letters lowered.
    if (isSimple(text)) {
        std::string result(text);
        for (char& c : result)
            c = asciiLower(c);
        return result;
    }
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString unicode = fromUtf8(text);
    unicode.foldCase(U_FOLD_CASE_DEFAULT);
    const icu::Normalizer2* nfd = icu::Normalizer2::getNFDInstance(status);
    const icu::Normalizer2* nfc = icu::Normalizer2::getNFCInstance(status);
    if (U_FAILURE(status))
        return toUtf8(unicode);
    icu::UnicodeString decomposed = nfd->normalize(unicode, status);
    icu::UnicodeString stripped;
    for (int32_t i = 0; i < decomposed.length();) {
        const UChar32 c = decomposed.char32At(i);
        if (u_charType(c) != U_NON_SPACING_MARK)
            stripped.append(c);
        i += U16_LENGTH(c);
    }
    icu::UnicodeString composed = nfc->normalize(stripped, status);
    return U_SUCCESS(status) ? toUtf8(composed) : toUtf8(stripped);
}

std::string UnicodeText::lowercased(std::string_view text) {
    if (isSimple(text)) {
        std::string result(text);
        for (char& c : result)
            c = asciiLower(c);
        return result;
    }
    icu::UnicodeString unicode = fromUtf8(text);
    unicode.toLower(icu::Locale::getRoot());
    return toUtf8(unicode);
}

bool UnicodeText::isLetter(std::string_view character) {
    return hasCategory(character, U_GC_L_MASK);
}
bool UnicodeText::isNumber(std::string_view character) {
    return hasCategory(character, U_GC_N_MASK);
}
bool UnicodeText::isUppercase(std::string_view character) {
    return hasCategory(character, U_GC_LU_MASK);
}
bool UnicodeText::isLowercase(std::string_view character) {
    return hasCategory(character, U_GC_LL_MASK);
}

} // namespace orvane
