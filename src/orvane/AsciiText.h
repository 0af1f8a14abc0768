#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane::ascii {

// Helpers for the plain-ASCII fast paths of text analysis; text holding any other byte goes through ICU.

inline bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
inline bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
inline char lower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + ('a' - 'A')) : c;
}
inline bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}
inline std::string lowercased(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        c = lower(c);
    return result;
}
/// `text` without white space (as isSpace) at either end.
inline std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

// ICU counts "@" as a letter so that e-mail addresses stay whole.
inline bool isWordLetter(char c) {
    return isLetter(c) || c == '@';
}
inline bool isWordCharacter(char c) {
    return isWordLetter(c) || isDigit(c) || c == '_';
}

/// The typographic marks that plain English text often carries (curly quotes, dashes, ellipsis, pilcrow).
/// Text whose only non-ASCII characters are these still takes the fast paths: none of them is a letter, a digit
/// or a combining mark, so each is one character and separates letter runs.
/// Returns the mark's length in bytes at `i`, or 0.
inline std::size_t typographicMarkLength(std::string_view text, std::size_t i) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    if (byte(i) == 0xC2 && i + 1 < text.size() && byte(i + 1) == 0xB6) // pilcrow
        return 2;
    if (byte(i) == 0xE2 && i + 2 < text.size() && byte(i + 1) == 0x80) {
        switch (byte(i + 2)) {
        case 0x93: // en dash
        case 0x94: // em dash
        case 0x98: // left single quotation mark
        case 0x99: // right single quotation mark, the typographic apostrophe
        case 0x9C: // left double quotation mark
        case 0x9D: // right double quotation mark
        case 0xA6: // horizontal ellipsis
            return 3;
        default:
            return 0;
        }
    }
    return 0;
}

/// Whether a single quotation mark (U+2018 or U+2019) starts at `i`; ICU joins letters across them like "'".
inline bool isCurlyApostrophe(std::string_view text, std::size_t i) {
    return typographicMarkLength(text, i) == 3 &&
           (static_cast<unsigned char>(text[i + 2]) == 0x98 || static_cast<unsigned char>(text[i + 2]) == 0x99);
}

/// Plain ASCII, or ASCII with typographic marks only.
inline bool isSimple(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        if (static_cast<unsigned char>(text[i]) < 0x80) {
            ++i;
            continue;
        }
        const std::size_t mark = typographicMarkLength(text, i);
        if (mark == 0)
            return false;
        i += mark;
    }
    return true;
}

/// ICU's word rules restricted to simple text: letters, "@", digits and "_" join each other; "." and the
/// apostrophes join two letters or two digits; "," and ";" join two digits; typographic marks break. A test
/// compares this against ICU on generated text, so any drift between the two shows up there.
template <typename Visit>
void forEachWord(std::string_view text, Visit&& visit) {
    const std::size_t n = text.size();
    std::size_t i = 0;
    while (i < n) {
        if (!isWordCharacter(text[i])) {
            ++i;
            continue;
        }
        const std::size_t start = i++;
        while (i < n) {
            const char c = text[i];
            if (isWordCharacter(c)) {
                ++i;
                continue;
            }
            const bool curly = isCurlyApostrophe(text, i);
            const std::size_t midLength = curly ? 3 : 1;
            if (i + midLength < n) {
                const char before = text[i - 1];
                const char after = text[i + midLength];
                const bool joinsLetters = c == '.' || c == '\'' || curly;
                const bool joinsDigits = joinsLetters || c == ',' || c == ';';
                if ((joinsLetters && isWordLetter(before) && isWordLetter(after)) ||
                    (joinsDigits && isDigit(before) && isDigit(after))) {
                    i += midLength + 1;
                    continue;
                }
            }
            break;
        }
        // ICU gives a lone "_" no word status, though longer runs of them have it.
        if (i - start > 1 || text[start] != '_')
            visit(text.substr(start, i - start));
    }
}

} // namespace orvane::ascii
