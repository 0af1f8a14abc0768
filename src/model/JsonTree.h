#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace quillon::model {

/// A read-only JSON document parsed in one pass into a flat array of nodes whose text points into
/// the parsed bytes (escaped strings are unescaped into one buffer owned by the tree). It is what
/// makes loading a library of thousands of sermon files cheap: no allocation per value, no copy of
/// a string until the record takes it.
///
/// It accepts exactly what nlohmann::json accepts (RFC 8259, well-formed UTF-8, a leading byte
/// order mark skipped) and reads the same values: integers as signed when negative and unsigned
/// otherwise, falling back to floating point when they do not fit; a repeated member name keeps
/// its first position and its last value. Unlike nlohmann it refuses nesting deeper than
/// `maximumDepth`, so hostile input cannot exhaust the stack of a recursive reader, and it refuses
/// a NUL byte after the value, where nlohmann stops reading and accepts what came before.
///
/// The parsed bytes must outlive the tree.
class JsonTree {
public:
    static constexpr int maximumDepth = 1000;

    enum class Kind : std::uint8_t { null, boolean, integer, unsignedInteger, floating, string, array, object };

private:
    struct Text {
        const char* data;
        std::size_t size;
    };
    struct Node {
        Kind kind = Kind::null;
        /// boolean: its value; key of an object: a later member of the same name replaces it.
        bool flag = false;
        /// array/object: number of elements/members; key: index of the value that replaced its own.
        std::uint32_t count = 0;
        /// One past the last node of this value's subtree (for a key: its own index + 1).
        std::uint32_t end = 0;
        union {
            std::int64_t integer;
            std::uint64_t unsignedInteger;
            double floating;
            Text text;
        };
        Node() : text{nullptr, 0} {}
    };

public:
    class Value {
    public:
        Kind kind() const { return node().kind; }
        bool isNull() const { return kind() == Kind::null; }
        bool isBoolean() const { return kind() == Kind::boolean; }
        bool isString() const { return kind() == Kind::string; }
        bool isArray() const { return kind() == Kind::array; }
        bool isObject() const { return kind() == Kind::object; }
        bool isNumber() const {
            return kind() == Kind::integer || kind() == Kind::unsignedInteger || kind() == Kind::floating;
        }

        bool boolean() const { return node().flag; }
        std::int64_t integer() const { return node().integer; }
        std::uint64_t unsignedInteger() const { return node().unsignedInteger; }
        /// Any number as a double.
        double number() const;
        /// The unescaped text of a string.
        std::string_view text() const { return {node().text.data, node().text.size}; }
        /// Members of an object (after merging repeated names) or elements of an array.
        std::size_t size() const { return node().count; }

        /// The member named `name` of an object; nothing when absent.
        std::optional<Value> find(std::string_view name) const;

        /// Calls `visit(name, value)` for each member of an object in document order.
        template <class Visit>
        void forEachMember(Visit&& visit) const {
            const auto end = node().end;
            for (std::uint32_t key = m_index + 1; key < end;) {
                const Node& keyNode = m_tree->m_nodes[key];
                const std::uint32_t value = key + 1;
                if (!keyNode.flag)
                    visit(std::string_view(keyNode.text.data, keyNode.text.size),
                          Value(m_tree, keyNode.count != 0 ? keyNode.count : value));
                key = m_tree->m_nodes[value].end;
            }
        }

        /// Calls `visit(element)` for each element of an array in order.
        template <class Visit>
        void forEachElement(Visit&& visit) const {
            const auto end = node().end;
            for (std::uint32_t element = m_index + 1; element < end; element = m_tree->m_nodes[element].end)
                visit(Value(m_tree, element));
        }

    private:
        friend class JsonTree;
        Value(const JsonTree* tree, std::uint32_t index) : m_tree(tree), m_index(index) {}
        const Node& node() const { return m_tree->m_nodes[m_index]; }

        const JsonTree* m_tree;
        std::uint32_t m_index;
    };

    /// Throws DecodingError naming the byte offset of the first problem.
    static JsonTree parse(std::string_view bytes);

    Value root() const { return Value(this, 0); }

    JsonTree(JsonTree&&) noexcept = default;
    JsonTree& operator=(JsonTree&&) noexcept = default;

private:
    friend class JsonParser;
    JsonTree() = default;

    std::vector<Node> m_nodes;
    /// Unescaped strings; never larger than the parsed bytes, so it never moves once allocated.
    std::unique_ptr<char[]> m_unescaped;
};

} // namespace quillon::model
