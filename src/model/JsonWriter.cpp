#include "model/JsonWriter.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cstdint>
#include <cstring>

namespace quillon::model {

namespace {

/// The length of the well-formed UTF-8 sequence that starts with a byte of 0x80 or above at
/// `index`, in the sense of nlohmann's serializer (no overlong forms, no surrogates, nothing above
/// U+10FFFF); 0 when it is malformed.
std::size_t sequenceLength(std::string_view text, std::size_t index) {
    auto at = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u; };
    auto within = [](unsigned value, unsigned low, unsigned high) { return value >= low && value <= high; };
    const unsigned lead = at(index);
    std::size_t length = 0;
    unsigned low = 0x80, high = 0xBF;
    if (within(lead, 0xC2, 0xDF)) {
        length = 2;
    } else if (within(lead, 0xE0, 0xEF)) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : 0x80;
        high = lead == 0xED ? 0x9F : 0xBF;
    } else if (within(lead, 0xF0, 0xF4)) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF;
    } else {
        return 0;
    }
    if (!within(at(index + 1), low, high))
        return 0;
    for (std::size_t offset = 2; offset < length; ++offset)
        if (!within(at(index + offset), 0x80, 0xBF))
            return 0;
    return length;
}

constexpr std::uint64_t everyByte(unsigned char value) {
    return 0x0101010101010101ULL * value;
}

/// Whether any of the eight bytes is below `limit` (at most 0x80); exact for the word as a whole.
constexpr bool hasByteBelow(std::uint64_t word, unsigned char limit) {
    return ((word - everyByte(limit)) & ~word & everyByte(0x80)) != 0;
}

constexpr bool hasByte(std::uint64_t word, unsigned char value) {
    return hasByteBelow(word ^ everyByte(value), 1);
}

/// Eight bytes that go out as they are: ASCII, no control character, no quote, no backslash.
/// Verse text is almost all such bytes, so checking a word at a time keeps long passages cheap.
bool isPlainWord(const char* bytes) {
    std::uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return (word & everyByte(0x80)) == 0 && !hasByteBelow(word, 0x20) && !hasByte(word, '"') && !hasByte(word, '\\');
}

} // namespace

void JsonWriter::newLine(std::size_t depth) {
    if (m_indentStep == compact)
        return;
    m_out += '\n';
    m_out.append(depth * static_cast<std::size_t>(m_indentStep), ' ');
}

void JsonWriter::beforeValue() {
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (m_counts.empty())
        return;
    if (m_counts.back()++ > 0)
        m_out += ',';
    newLine(m_counts.size());
}

void JsonWriter::key(std::string_view name) {
    if (m_counts.back()++ > 0)
        m_out += ',';
    newLine(m_counts.size());
    escaped(name);
    m_out += m_indentStep == compact ? ":" : ": ";
    m_afterKey = true;
}

void JsonWriter::beginObject() {
    beforeValue();
    m_out += '{';
    m_counts.push_back(0);
}

void JsonWriter::beginArray() {
    beforeValue();
    m_out += '[';
    m_counts.push_back(0);
}

void JsonWriter::close(char bracket) {
    const std::size_t count = m_counts.back();
    m_counts.pop_back();
    if (count > 0)
        newLine(m_counts.size());
    m_out += bracket;
}

void JsonWriter::endObject() {
    close('}');
}

void JsonWriter::endArray() {
    close(']');
}

void JsonWriter::string(std::string_view text) {
    beforeValue();
    escaped(text);
}

void JsonWriter::integer(std::int64_t number) {
    beforeValue();
    char digits[24];
    auto result = std::to_chars(digits, digits + sizeof digits, number);
    m_out.append(digits, result.ptr);
}

void JsonWriter::boolean(bool flag) {
    beforeValue();
    m_out += flag ? "true" : "false";
}

void JsonWriter::null() {
    beforeValue();
    m_out += "null";
}

void JsonWriter::floating(double number) {
    beforeValue();
    // Rare (only unmodelled members hold fractions), so nlohmann's own formatting is used.
    m_out += nlohmann::json(number).dump();
}

void JsonWriter::escaped(std::string_view text) {
    static constexpr char hex[] = "0123456789abcdef";
    const std::size_t start = m_out.size();
    m_out.reserve(start + text.size() + 2);
    m_out += '"';
    std::size_t plainStart = 0;
    for (std::size_t i = 0; i < text.size();) {
        if (i + 8 <= text.size() && isPlainWord(text.data() + i)) {
            i += 8;
            continue;
        }
        const auto c = static_cast<unsigned char>(text[i]);
        if (c >= 0x80) {
            const std::size_t length = sequenceLength(text, i);
            if (length == 0) {
                // nlohmann's repair of broken UTF-8 (replacement characters) is reproduced by using it.
                m_out.resize(start);
                m_out +=
                    nlohmann::json(std::string(text)).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
                return;
            }
            i += length;
            continue;
        }
        ++i;
        if (c >= 0x20 && c != '"' && c != '\\')
            continue;
        m_out.append(text.data() + plainStart, i - 1 - plainStart);
        plainStart = i;
        switch (c) {
        case '"':
            m_out += "\\\"";
            break;
        case '\\':
            m_out += "\\\\";
            break;
        case '\b':
            m_out += "\\b";
            break;
        case '\f':
            m_out += "\\f";
            break;
        case '\n':
            m_out += "\\n";
            break;
        case '\r':
            m_out += "\\r";
            break;
        case '\t':
            m_out += "\\t";
            break;
        default: {
            const char escape[] = {'\\', 'u', '0', '0', hex[c >> 4], hex[c & 0x0F]};
            m_out.append(escape, sizeof escape);
        }
        }
    }
    m_out.append(text.data() + plainStart, text.size() - plainStart);
    m_out += '"';
}

} // namespace quillon::model
