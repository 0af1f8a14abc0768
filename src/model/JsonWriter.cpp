#include "model/JsonWriter.h"

#include <nlohmann/json.hpp>

#include <charconv>

namespace quillon::model {

namespace {

/// Well-formed UTF-8 in the sense of nlohmann's serializer (no overlong forms, no surrogates,
/// nothing above U+10FFFF).
bool isWellFormedUtf8(std::string_view text) {
    std::size_t i = 0;
    const std::size_t size = text.size();
    auto at = [&](std::size_t index) { return index < size ? static_cast<unsigned char>(text[index]) : 0u; };
    auto within = [](unsigned value, unsigned low, unsigned high) { return value >= low && value <= high; };
    while (i < size) {
        const unsigned lead = at(i);
        if (lead < 0x80) {
            ++i;
            continue;
        }
        std::size_t length = 0;
        unsigned low = 0x80, high = 0xBF;
        if (within(lead, 0xC2, 0xDF))
            length = 2;
        else if (within(lead, 0xE0, 0xEF)) {
            length = 3;
            low = lead == 0xE0 ? 0xA0 : 0x80;
            high = lead == 0xED ? 0x9F : 0xBF;
        } else if (within(lead, 0xF0, 0xF4)) {
            length = 4;
            low = lead == 0xF0 ? 0x90 : 0x80;
            high = lead == 0xF4 ? 0x8F : 0xBF;
        } else
            return false;
        if (!within(at(i + 1), low, high))
            return false;
        for (std::size_t offset = 2; offset < length; ++offset)
            if (!within(at(i + offset), 0x80, 0xBF))
                return false;
        i += length;
    }
    return true;
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
    if (!isWellFormedUtf8(text)) {
        // nlohmann's repair of broken UTF-8 (replacement characters) is reproduced by using it.
        m_out += nlohmann::json(std::string(text)).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
        return;
    }
    static constexpr char hex[] = "0123456789abcdef";
    m_out += '"';
    std::size_t plainStart = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c >= 0x20 && c != '"' && c != '\\')
            continue;
        m_out.append(text.data() + plainStart, i - plainStart);
        plainStart = i + 1;
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
