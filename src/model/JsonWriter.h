#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::model {

/// Writes pretty-printed JSON text straight into a string, byte for byte as nlohmann's
/// dump(indent, ' ', false, error_handler_t::replace) lays out the same document: members and
/// elements one per line, "key": value, empty containers as {} and [], UTF-8 kept as it is,
/// control characters escaped (\u001f), and text that is not valid UTF-8 repaired the way
/// nlohmann repairs it. Building no document first makes writing a sermon several times faster.
///
/// With `compact` as the indent step it writes nlohmann's dump() layout instead: no line breaks, no
/// blanks ("key":value), as messages sent over the network use.
///
/// The caller writes a well-formed sequence (a key before each member value, containers closed).
class JsonWriter {
public:
    static constexpr int compact = -1;

    explicit JsonWriter(std::string& out, int indentStep = 2) : m_out(out), m_indentStep(indentStep) {}

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    /// The name of the next member of the open object.
    void key(std::string_view name);

    void string(std::string_view text);
    void integer(std::int64_t number);
    void boolean(bool flag);
    void null();
    /// As nlohmann writes a double (shortest round-trip form; not finite gives null).
    void floating(double number);

private:
    void beforeValue();
    void newLine(std::size_t depth);
    void close(char bracket);
    void escaped(std::string_view text);

    std::string& m_out;
    int m_indentStep;
    /// For each open container: how many members or elements it holds so far.
    std::vector<std::size_t> m_counts;
    bool m_afterKey = false;
};

} // namespace quillon::model
