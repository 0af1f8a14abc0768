#include "app/TextRules.h"

#include "orvane/UnicodeText.h"

#include <cctype>

namespace quillon::app {

bool isValidText(std::string_view text) {
    return orvane::UnicodeText::repaired(text) == text;
}

std::string_view trimmed(std::string_view text) {
    auto isSpace = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string curlyQuoted(std::string_view text) {
    return "“" + std::string(text) + "”";
}

} // namespace quillon::app
