#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// The Unicode services text analysis needs: segmentation into words, sentences and user-perceived characters,
/// folding, and general-category tests. Backed by ICU, with ASCII fast paths because most text we see (Bible
/// verses, typed queries) is plain ASCII. Every function accepts any bytes: invalid UTF-8 is read as U+FFFD.
class UnicodeText {
public:
    UnicodeText() = delete;

    static bool isAscii(std::string_view text) noexcept;
    /// The text with every invalid UTF-8 sequence replaced by U+FFFD (unchanged when already valid).
    static std::string repaired(std::string_view text);

    /// Calls `visit` with each word (letters, numbers, words with inner apostrophes such as "can't") in order;
    /// spaces, punctuation and symbols are not reported. The view is valid only during the call.
    static void forEachWord(std::string_view text, const std::function<void(std::string_view)>& visit);
    static std::vector<std::string> words(std::string_view text);
    /// The sentences of the text in order, as the segmenter cuts them (surrounding spaces kept).
    static std::vector<std::string> sentences(std::string_view text);

    /// User-perceived characters (extended grapheme clusters), in order.
    static std::vector<std::string> characters(std::string_view text);
    static std::size_t characterCount(std::string_view text);

    /// Case- and diacritic-insensitive folding without locale: "Élie" becomes "elie".
    static std::string folded(std::string_view text);
    static std::string lowercased(std::string_view text);

    /// General-category tests of one user-perceived character, judged by its first code point.
    static bool isLetter(std::string_view character);
    static bool isNumber(std::string_view character);
    static bool isUppercase(std::string_view character);
    static bool isLowercase(std::string_view character);
};

} // namespace orvane
