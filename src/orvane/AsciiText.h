#pragma once

#include <cstddef>
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

// ICU counts "@" as a letter so that e-mail addresses stay whole.
inline bool isWordLetter(char c) {
    return isLetter(c) || c == '@';
}
inline bool isWordCharacter(char c) {
    return isWordLetter(c) || isDigit(c) || c == '_';
}

/// ICU's word rules restricted to ASCII: letters, "@", digits and "_" join each other; "." and "'" join two
/// letters or two digits; "," and ";" join two digits. A test compares this against ICU on generated text, so any
/// drift between the two shows up there.
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
            if (i + 1 < n) {
                const char before = text[i - 1];
                const char after = text[i + 1];
                const bool betweenLetters = (c == '.' || c == '\'') && isWordLetter(before) && isWordLetter(after);
                const bool betweenDigits =
                    (c == '.' || c == '\'' || c == ',' || c == ';') && isDigit(before) && isDigit(after);
                if (betweenLetters || betweenDigits) {
                    i += 2;
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
