#include "model/JsonTree.h"

#include "model/SermonCoding.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <unordered_map>

namespace quillon::model {

/// Builds a JsonTree from bytes; a recursive descent over the grammar, one node per value.
class JsonParser {
public:
    JsonParser(std::string_view bytes, JsonTree& tree)
        : m_begin(bytes.data()), m_pos(bytes.data()), m_end(bytes.data() + bytes.size()), m_tree(tree) {}

    void parseDocument() {
        skipByteOrderMark();
        skipWhiteSpace();
        parseValue(0);
        skipWhiteSpace();
        if (m_pos != m_end)
            fail("unexpected content after the value");
    }

private:
    using Kind = JsonTree::Kind;
    using Node = JsonTree::Node;

    [[noreturn]] void fail(const char* problem) const {
        throw DecodingError(std::string("The file is not valid JSON (") + problem + " at byte " +
                            std::to_string(m_pos - m_begin) + ").");
    }

    void skipByteOrderMark() {
        // nlohmann skips a UTF-8 byte order mark and refuses a broken one; so does this reader.
        if (m_pos == m_end || static_cast<unsigned char>(*m_pos) != 0xEF)
            return;
        if (m_end - m_pos < 3 || static_cast<unsigned char>(m_pos[1]) != 0xBB ||
            static_cast<unsigned char>(m_pos[2]) != 0xBF)
            fail("a broken byte order mark");
        m_pos += 3;
    }

    void skipWhiteSpace() {
        while (m_pos != m_end && (*m_pos == ' ' || *m_pos == '\n' || *m_pos == '\r' || *m_pos == '\t'))
            ++m_pos;
    }

    void expect(char c, const char* problem) {
        if (m_pos == m_end || *m_pos != c)
            fail(problem);
        ++m_pos;
    }

    std::uint32_t newNode(Kind kind) {
        if (m_tree.m_nodes.size() >= std::numeric_limits<std::uint32_t>::max() - 1)
            fail("too many values");
        const auto index = static_cast<std::uint32_t>(m_tree.m_nodes.size());
        m_tree.m_nodes.emplace_back();
        m_tree.m_nodes.back().kind = kind;
        m_tree.m_nodes.back().end = index + 1;
        return index;
    }

    void parseValue(int depth) {
        if (m_pos == m_end)
            fail("unexpected end of input");
        switch (*m_pos) {
        case '{':
            parseObject(depth + 1);
            return;
        case '[':
            parseArray(depth + 1);
            return;
        case '"': {
            const auto index = newNode(Kind::string);
            const JsonTree::Text text = parseString();
            m_tree.m_nodes[index].text = text;
            return;
        }
        case 't':
            parseLiteral("true");
            m_tree.m_nodes[newNode(Kind::boolean)].flag = true;
            return;
        case 'f':
            parseLiteral("false");
            newNode(Kind::boolean);
            return;
        case 'n':
            parseLiteral("null");
            newNode(Kind::null);
            return;
        default:
            if (*m_pos == '-' || (*m_pos >= '0' && *m_pos <= '9')) {
                parseNumber();
                return;
            }
            fail("unexpected character");
        }
    }

    void parseLiteral(std::string_view literal) {
        if (static_cast<std::size_t>(m_end - m_pos) < literal.size() ||
            std::string_view(m_pos, literal.size()) != literal)
            fail("unexpected character");
        m_pos += literal.size();
    }

    void parseObject(int depth) {
        if (depth > JsonTree::maximumDepth)
            fail("values nested too deeply");
        const auto index = newNode(Kind::object);
        ++m_pos;
        skipWhiteSpace();
        std::uint32_t count = 0;
        if (m_pos != m_end && *m_pos == '}') {
            ++m_pos;
        } else {
            for (;;) {
                if (m_pos == m_end || *m_pos != '"')
                    fail("expected a member name");
                const auto key = newNode(Kind::string);
                const JsonTree::Text text = parseString();
                m_tree.m_nodes[key].text = text;
                skipWhiteSpace();
                expect(':', "expected a colon");
                skipWhiteSpace();
                parseValue(depth);
                ++count;
                skipWhiteSpace();
                if (m_pos != m_end && *m_pos == ',') {
                    ++m_pos;
                    skipWhiteSpace();
                    continue;
                }
                expect('}', "expected a comma or the end of an object");
                break;
            }
        }
        Node& object = m_tree.m_nodes[index];
        object.end = static_cast<std::uint32_t>(m_tree.m_nodes.size());
        object.count = count;
        if (count > 1)
            mergeRepeatedNames(index);
    }

    /// A name that occurs twice keeps its first position and takes the last value, as in nlohmann's
    /// ordered_json: the first key points at the replacing value, later keys are marked skipped.
    void mergeRepeatedNames(std::uint32_t index) {
        auto& nodes = m_tree.m_nodes;
        m_keys.clear();
        for (std::uint32_t key = index + 1; key < nodes[index].end; key = nodes[key + 1].end)
            m_keys.push_back(key);
        auto name = [&nodes](std::uint32_t key) {
            return std::string_view(nodes[key].text.data, nodes[key].text.size);
        };
        auto merge = [&](std::uint32_t first, std::uint32_t later) {
            nodes[later].flag = true;
            nodes[first].count = later + 1;
            --nodes[index].count;
        };
        constexpr std::size_t pairwiseLimit = 24;
        if (m_keys.size() <= pairwiseLimit) {
            for (std::size_t i = 0; i < m_keys.size(); ++i) {
                if (nodes[m_keys[i]].flag)
                    continue;
                for (std::size_t j = i + 1; j < m_keys.size(); ++j)
                    if (name(m_keys[i]) == name(m_keys[j]))
                        merge(m_keys[i], m_keys[j]);
            }
            return;
        }
        std::unordered_map<std::string_view, std::uint32_t> first;
        first.reserve(m_keys.size());
        for (const auto key : m_keys)
            if (auto [found, inserted] = first.emplace(name(key), key); !inserted)
                merge(found->second, key);
    }

    void parseArray(int depth) {
        if (depth > JsonTree::maximumDepth)
            fail("values nested too deeply");
        const auto index = newNode(Kind::array);
        ++m_pos;
        skipWhiteSpace();
        std::uint32_t count = 0;
        if (m_pos != m_end && *m_pos == ']') {
            ++m_pos;
        } else {
            for (;;) {
                parseValue(depth);
                ++count;
                skipWhiteSpace();
                if (m_pos != m_end && *m_pos == ',') {
                    ++m_pos;
                    skipWhiteSpace();
                    continue;
                }
                expect(']', "expected a comma or the end of an array");
                break;
            }
        }
        Node& array = m_tree.m_nodes[index];
        array.end = static_cast<std::uint32_t>(m_tree.m_nodes.size());
        array.count = count;
    }

    void parseNumber() {
        const char* start = m_pos;
        bool integral = true;
        if (*m_pos == '-')
            ++m_pos;
        if (m_pos == m_end || *m_pos < '0' || *m_pos > '9')
            fail("a malformed number");
        if (*m_pos == '0')
            ++m_pos;
        else
            skipDigits();
        if (m_pos != m_end && *m_pos == '.') {
            integral = false;
            ++m_pos;
            if (m_pos == m_end || *m_pos < '0' || *m_pos > '9')
                fail("a malformed number");
            skipDigits();
        }
        if (m_pos != m_end && (*m_pos == 'e' || *m_pos == 'E')) {
            integral = false;
            ++m_pos;
            if (m_pos != m_end && (*m_pos == '+' || *m_pos == '-'))
                ++m_pos;
            if (m_pos == m_end || *m_pos < '0' || *m_pos > '9')
                fail("a malformed number");
            skipDigits();
        }
        const auto index = newNode(Kind::floating);
        Node& node = m_tree.m_nodes[index];
        if (integral) {
            // Signed when negative, unsigned otherwise; too large for either becomes a double.
            if (*start == '-') {
                if (std::from_chars(start, m_pos, node.integer).ec == std::errc()) {
                    node.kind = Kind::integer;
                    return;
                }
            } else if (std::from_chars(start, m_pos, node.unsignedInteger).ec == std::errc()) {
                node.kind = Kind::unsignedInteger;
                return;
            }
        }
        double value = 0;
        if (std::from_chars(start, m_pos, value).ec != std::errc()) {
            // Out of range: strtod gives zero for an underflow (accepted) and infinity for an overflow.
            const std::string token(start, m_pos);
            value = std::strtod(token.c_str(), nullptr);
        }
        if (!std::isfinite(value))
            fail("a number too large");
        node.floating = value;
    }

    void skipDigits() {
        while (m_pos != m_end && *m_pos >= '0' && *m_pos <= '9')
            ++m_pos;
    }

    /// Checks one multi-byte UTF-8 sequence starting at m_pos and steps over it.
    void stepOverUtf8Sequence() {
        const auto byte = [this](std::ptrdiff_t offset) {
            return m_end - m_pos > offset ? static_cast<unsigned char>(m_pos[offset]) : 0u;
        };
        const unsigned lead = byte(0);
        auto within = [](unsigned value, unsigned low, unsigned high) { return value >= low && value <= high; };
        int length = 0;
        unsigned low = 0x80, high = 0xBF;
        if (within(lead, 0xC2, 0xDF))
            length = 2;
        else if (within(lead, 0xE0, 0xEF)) {
            length = 3;
            if (lead == 0xE0)
                low = 0xA0;
            else if (lead == 0xED)
                high = 0x9F;
        } else if (within(lead, 0xF0, 0xF4)) {
            length = 4;
            if (lead == 0xF0)
                low = 0x90;
            else if (lead == 0xF4)
                high = 0x8F;
        } else
            fail("ill-formed UTF-8");
        if (!within(byte(1), low, high))
            fail("ill-formed UTF-8");
        for (int offset = 2; offset < length; ++offset)
            if (!within(byte(offset), 0x80, 0xBF))
                fail("ill-formed UTF-8");
        m_pos += length;
    }

    /// Steps over plain string bytes eight at a time: a word is plain when it holds no quotation
    /// mark, no backslash, no control character and no byte of a multi-byte UTF-8 sequence.
    void skipPlainStringBytes() {
        constexpr std::uint64_t ones = 0x0101010101010101ull;
        constexpr std::uint64_t highBits = 0x8080808080808080ull;
        auto hasZeroByte = [](std::uint64_t word) { return (word - ones) & ~word & highBits; };
        while (m_end - m_pos >= 8) {
            std::uint64_t word;
            std::memcpy(&word, m_pos, sizeof word);
            const std::uint64_t special = hasZeroByte(word ^ (ones * '"')) | hasZeroByte(word ^ (ones * '\\')) |
                                          ((word - ones * 0x20) & ~word & highBits) | (word & highBits);
            if (special != 0)
                return;
            m_pos += 8;
        }
    }

    JsonTree::Text parseString() {
        ++m_pos; // the opening quotation mark
        const char* start = m_pos;
        for (;;) {
            skipPlainStringBytes();
            if (m_pos == m_end)
                fail("an unterminated string");
            const auto c = static_cast<unsigned char>(*m_pos);
            if (c == '"') {
                const JsonTree::Text text{start, static_cast<std::size_t>(m_pos - start)};
                ++m_pos;
                return text;
            }
            if (c == '\\')
                return parseEscapedString(start);
            if (c < 0x20)
                fail("a control character in a string");
            if (c < 0x80)
                ++m_pos;
            else
                stepOverUtf8Sequence();
        }
    }

    /// The rest of a string holding escapes, unescaped into the tree's buffer.
    JsonTree::Text parseEscapedString(const char* start) {
        if (!m_tree.m_unescaped) {
            m_tree.m_unescaped = std::make_unique_for_overwrite<char[]>(static_cast<std::size_t>(m_end - m_begin));
            m_out = m_tree.m_unescaped.get();
        }
        char* const begin = m_out;
        const char* from = start;
        for (;;) {
            skipPlainStringBytes();
            if (m_pos == m_end)
                fail("an unterminated string");
            const auto c = static_cast<unsigned char>(*m_pos);
            if (c == '"' || c == '\\') {
                std::memcpy(m_out, from, static_cast<std::size_t>(m_pos - from));
                m_out += m_pos - from;
                if (c == '"') {
                    ++m_pos;
                    return {begin, static_cast<std::size_t>(m_out - begin)};
                }
                unescape();
                from = m_pos;
                continue;
            }
            if (c < 0x20)
                fail("a control character in a string");
            if (c < 0x80)
                ++m_pos;
            else
                stepOverUtf8Sequence();
        }
    }

    void unescape() {
        ++m_pos;
        if (m_pos == m_end)
            fail("an unterminated string");
        const char c = *m_pos++;
        switch (c) {
        case '"':
        case '\\':
        case '/':
            *m_out++ = c;
            return;
        case 'b':
            *m_out++ = '\b';
            return;
        case 'f':
            *m_out++ = '\f';
            return;
        case 'n':
            *m_out++ = '\n';
            return;
        case 'r':
            *m_out++ = '\r';
            return;
        case 't':
            *m_out++ = '\t';
            return;
        case 'u':
            break;
        default:
            fail("an unknown escape");
        }
        std::uint32_t code = hexQuad();
        if (code >= 0xDC00 && code <= 0xDFFF)
            fail("a lone low surrogate");
        if (code >= 0xD800 && code <= 0xDBFF) {
            if (m_end - m_pos < 2 || m_pos[0] != '\\' || m_pos[1] != 'u')
                fail("a high surrogate without its low surrogate");
            m_pos += 2;
            const std::uint32_t low = hexQuad();
            if (low < 0xDC00 || low > 0xDFFF)
                fail("a high surrogate without its low surrogate");
            code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
        }
        appendUtf8(code);
    }

    std::uint32_t hexQuad() {
        if (m_end - m_pos < 4)
            fail("an unterminated string");
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            const char c = *m_pos++;
            value <<= 4;
            if (c >= '0' && c <= '9')
                value |= static_cast<std::uint32_t>(c - '0');
            else if (c >= 'a' && c <= 'f')
                value |= static_cast<std::uint32_t>(c - 'a' + 10);
            else if (c >= 'A' && c <= 'F')
                value |= static_cast<std::uint32_t>(c - 'A' + 10);
            else
                fail("a malformed \\u escape");
        }
        return value;
    }

    void appendUtf8(std::uint32_t code) {
        auto put = [this](std::uint32_t byte) { *m_out++ = static_cast<char>(byte); };
        if (code < 0x80) {
            put(code);
        } else if (code < 0x800) {
            put(0xC0 | (code >> 6));
            put(0x80 | (code & 0x3F));
        } else if (code < 0x10000) {
            put(0xE0 | (code >> 12));
            put(0x80 | ((code >> 6) & 0x3F));
            put(0x80 | (code & 0x3F));
        } else {
            put(0xF0 | (code >> 18));
            put(0x80 | ((code >> 12) & 0x3F));
            put(0x80 | ((code >> 6) & 0x3F));
            put(0x80 | (code & 0x3F));
        }
    }

    const char* m_begin;
    const char* m_pos;
    const char* m_end;
    JsonTree& m_tree;
    char* m_out = nullptr;
    std::vector<std::uint32_t> m_keys;
};

JsonTree JsonTree::parse(std::string_view bytes) {
    JsonTree tree;
    // A pretty-printed sermon file holds a value every few dozen bytes; reserving avoids most regrowth.
    tree.m_nodes.reserve(bytes.size() / 48 + 16);
    JsonParser(bytes, tree).parseDocument();
    return tree;
}

double JsonTree::Value::number() const {
    switch (kind()) {
    case Kind::integer:
        return static_cast<double>(node().integer);
    case Kind::unsignedInteger:
        return static_cast<double>(node().unsignedInteger);
    case Kind::floating:
        return node().floating;
    default:
        return 0;
    }
}

std::optional<JsonTree::Value> JsonTree::Value::find(std::string_view name) const {
    const auto& nodes = m_tree->m_nodes;
    const auto end = node().end;
    for (std::uint32_t key = m_index + 1; key < end; key = nodes[key + 1].end) {
        const Node& keyNode = nodes[key];
        if (!keyNode.flag && keyNode.text.size == name.size() &&
            std::memcmp(keyNode.text.data, name.data(), name.size()) == 0)
            return Value(m_tree, keyNode.count != 0 ? keyNode.count : key + 1);
    }
    return std::nullopt;
}

} // namespace quillon::model
