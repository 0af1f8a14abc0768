#include "export/XmlText.h"

#include <array>

namespace quillon::exports {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

/// Length of the valid UTF-8 sequence at the start of `text`, or 0 when it is malformed.
std::size_t sequenceLength(std::string_view text, char32_t& codePoint) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    if (first < 0x80) {
        codePoint = first;
        return 1;
    }
    std::size_t length = 0;
    char32_t minimum = 0;
    if ((first & 0xE0) == 0xC0) {
        length = 2;
        codePoint = first & 0x1F;
        minimum = 0x80;
    } else if ((first & 0xF0) == 0xE0) {
        length = 3;
        codePoint = first & 0x0F;
        minimum = 0x800;
    } else if ((first & 0xF8) == 0xF0) {
        length = 4;
        codePoint = first & 0x07;
        minimum = 0x10000;
    } else {
        return 0;
    }
    if (text.size() < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
        codePoint = (codePoint << 6) | (byte(i) & 0x3F);
    }
    if (codePoint < minimum || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF))
        return 0;
    return length;
}

} // namespace

std::string validUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        char32_t codePoint = 0;
        const std::size_t length = sequenceLength(text, codePoint);
        if (length == 0) {
            result += replacementCharacter;
            text.remove_prefix(1);
            continue;
        }
        result.append(text.substr(0, length));
        text.remove_prefix(length);
    }
    return result;
}

std::string xmlSafeText(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        char32_t codePoint = 0;
        const std::size_t length = sequenceLength(text, codePoint);
        if (length == 0) {
            result += replacementCharacter;
            text.remove_prefix(1);
            continue;
        }
        const bool allowed = codePoint == 0x9 || codePoint == 0xA || codePoint == 0xD ||
                             (codePoint >= 0x20 && codePoint != 0xFFFE && codePoint != 0xFFFF);
        if (allowed)
            result.append(text.substr(0, length));
        text.remove_prefix(length);
    }
    return result;
}

std::string escapeXml(std::string_view text) {
    std::string result = xmlSafeText(text);
    const std::array<std::pair<std::string_view, std::string_view>, 5> replacements{{
        {"&", "&amp;"},
        {"<", "&lt;"},
        {">", "&gt;"},
        {"\"", "&quot;"},
        {"'", "&apos;"},
    }};
    for (const auto& [from, to] : replacements) {
        std::string replaced;
        replaced.reserve(result.size());
        std::size_t start = 0;
        for (std::size_t found = result.find(from); found != std::string::npos; found = result.find(from, start)) {
            replaced.append(result, start, found - start);
            replaced += to;
            start = found + from.size();
        }
        replaced.append(result, start);
        result = std::move(replaced);
    }
    return result;
}

std::vector<std::string> splitLines(std::string_view text) {
    std::vector<std::string> lines;
    std::string current;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\r' || c == '\n') {
            lines.push_back(std::move(current));
            current.clear();
            if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
                ++i;
        } else {
            current += c;
        }
    }
    lines.push_back(std::move(current));
    return lines;
}

std::string oneLine(std::string_view text) {
    std::string joined;
    for (const std::string& line : splitLines(text))
        if (!line.empty())
            joined += (joined.empty() ? "" : " ") + line;
    return joined;
}

} // namespace quillon::exports
