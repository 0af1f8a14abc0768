#include "orvane/CompoundWordBreaking.h"

#include "orvane/UnicodeText.h"

#include <vector>

namespace orvane {
namespace {

constexpr std::string_view zeroWidthSpace = "\u200B";

} // namespace

std::string CompoundWordBreaking::insertingBreaks(std::string_view text) {
    const std::vector<std::string> characters = UnicodeText::characters(text);
    // Invalid bytes come back as U+FFFD, as they do from the longer texts below.
    if (characters.size() < 2)
        return UnicodeText::repaired(text);
    std::string result;
    result.reserve(text.size() + text.size() / 4);
    std::size_t run = 0;
    for (std::size_t i = 0; i < characters.size(); ++i) {
        const std::string& character = characters[i];
        if (character == " " || character == zeroWidthSpace) {
            result += character;
            run = 0;
            continue;
        }
        if (i == 0 || !UnicodeText::isUppercase(character)) {
            result += character;
            ++run;
            continue;
        }
        const std::string& previous = characters[i - 1];
        bool wanted = false;
        if (previous != zeroWidthSpace) {
            // Before a capital that follows a small letter ("SermonNotes"), or before the last capital of an
            // acronym that a small letter follows ("PDFExport").
            wanted = UnicodeText::isLowercase(previous) ||
                     (UnicodeText::isUppercase(previous) && i + 1 < characters.size() &&
                      UnicodeText::isLowercase(characters[i + 1]));
        }
        if (wanted && run >= 2) {
            std::size_t remaining = 0;
            for (std::size_t j = i; j < characters.size() && characters[j] != " "; ++j)
                ++remaining;
            if (remaining >= 2) {
                result += zeroWidthSpace;
                run = 0;
            }
        }
        result += character;
        ++run;
    }
    return result;
}

std::string CompoundWordBreaking::removingBreaks(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    std::size_t position = 0;
    while (position <= text.size()) {
        const std::size_t found = text.find(zeroWidthSpace, position);
        if (found == std::string_view::npos) {
            result.append(text.substr(position));
            break;
        }
        result.append(text.substr(position, found - position));
        position = found + zeroWidthSpace.size();
    }
    return result;
}

} // namespace orvane
