#include "export/TextDecoding.h"

#include "export/XmlText.h"

#include <array>

namespace quillon::exports {

namespace {

constexpr char32_t replacement = 0xFFFD;

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

std::string fromUtf16(std::string_view bytes, bool bigEndian) {
    std::string text;
    text.reserve(bytes.size());
    const auto unit = [&](std::size_t at) -> char32_t {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return bigEndian ? (char32_t{first} << 8 | second) : (char32_t{second} << 8 | first);
    };
    std::size_t i = 0;
    for (; i + 1 < bytes.size(); i += 2) {
        const char32_t first = unit(i);
        if (first >= 0xD800 && first < 0xDC00 && i + 3 < bytes.size()) {
            const char32_t second = unit(i + 2);
            if (second >= 0xDC00 && second < 0xE000) {
                appendUtf8(text, 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00));
                i += 2;
                continue;
            }
        }
        appendUtf8(text, first >= 0xD800 && first < 0xE000 ? replacement : first);
    }
    if (i < bytes.size())
        appendUtf8(text, replacement); // an odd byte at the end
    return text;
}

/// Windows-1252; the five bytes it leaves undefined become U+0081 and friends, which count as
/// control characters below.
std::string fromWindows1252(std::string_view bytes) {
    static constexpr std::array<char32_t, 32> high{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 2);
    for (char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        appendUtf8(text, byte >= 0x80 && byte < 0xA0 ? high[byte - 0x80] : char32_t{byte});
    }
    return text;
}

/// True when the UTF-8 `text` reads as text: no NUL and at most one control character (C0
/// without tab, line ends and page breaks; DEL; C1) in a hundred characters.
bool looksLikeText(std::string_view text) {
    std::size_t characters = 0;
    std::size_t controls = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0) == 0x80)
            continue;
        ++characters;
        if (byte == 0)
            return false;
        const bool c0 = byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r' && byte != '\f' && byte != '\v';
        const bool c1 = byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        if (c0 || c1 || byte == 0x7F)
            ++controls;
    }
    return controls * 100 <= characters;
}

} // namespace

std::optional<std::string> decodeText(std::string_view bytes) {
    std::string text;
    if (bytes.starts_with("\xEF\xBB\xBF"))
        text = bytes.substr(3);
    else if (bytes.starts_with("\xFF\xFE"))
        text = fromUtf16(bytes.substr(2), false);
    else if (bytes.starts_with("\xFE\xFF"))
        text = fromUtf16(bytes.substr(2), true);
    else
        text = bytes;
    if (validUtf8(text) != text)
        text = fromWindows1252(text);
    if (!looksLikeText(text))
        return std::nullopt;
    return text;
}

} // namespace quillon::exports
