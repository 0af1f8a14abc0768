#include "export/RtfReader.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace quillon::exports {

namespace {

/// What the text of the current group is for.
enum class Destination { text, skip, fieldInstruction, colourTable, listText };

struct GroupState {
    Destination destination = Destination::text;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    int colourIndex = 0;
    double fontSize = 0;
    /// Index into the parser's link table; 0 for no link. Groups are copied on every "{", so
    /// they carry no text of their own.
    std::size_t link = 0;
    int unicodeSkip = 1;
};

/// Windows-1252 for the bytes 0x80-0x9F; the rest of the code page equals Latin-1.
char32_t fromCodePage1252(unsigned char byte) {
    static constexpr std::array<char32_t, 32> high{0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD,
                                                   0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};
    if (byte >= 0x80 && byte < 0xA0)
        return high[byte - 0x80];
    return byte;
}

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

bool isSkippedDestination(const std::string& word) {
    static const std::array<std::string_view, 24> words{
        "fonttbl",           "stylesheet", "info",      "pict",     "header",    "footer",
        "headerl",           "headerr",    "footerl",   "footerr",  "footnote",  "listtable",
        "listoverridetable", "rsidtbl",    "generator", "xmlnstbl", "themedata", "colorschememapping",
        "latentstyles",      "datastore",  "object",    "pn",       "revtbl",    "filetbl"};
    for (std::string_view candidate : words)
        if (word == candidate)
            return true;
    return false;
}

class Parser {
public:
    explicit Parser(std::string_view rtf) : m_rtf(rtf), m_linkBudget(RtfReader::linkCopyBudget(rtf.size())) {}

    RichText run() {
        m_stack.push_back(GroupState{});
        while (m_position < m_rtf.size()) {
            const char c = m_rtf[m_position++];
            switch (c) {
            case '{':
                // Bounded nesting: a hostile file cannot grow the stack without limit.
                if (m_stack.size() < RtfReader::maximumGroupDepth)
                    m_stack.push_back(m_stack.back());
                else
                    ++m_ignoredOpens;
                m_groupStart = true;
                continue;
            case '}':
                closeGroup();
                break;
            case '\\':
                controlWord();
                break;
            case '\r':
            case '\n':
                break;
            default:
                // Other control characters are not text in RTF (a tab is written \tab); word
                // processors ignore them, and keeping them would not survive writing back.
                if (static_cast<unsigned char>(c) < 0x20 && c != '\t')
                    break;
                if (m_skipCharacters > 0) {
                    --m_skipCharacters;
                    break;
                }
                appendCharacter(static_cast<unsigned char>(c));
            }
            m_groupStart = false;
        }
        // Trailing breaks past the limit: as many line ends as the empty paragraphs they would make.
        if (m_pendingBreaks > 1) {
            if (m_paragraph.runs.empty())
                m_paragraph.runs.emplace_back();
            m_paragraph.runs.back().text.append(m_pendingBreaks - 1, '\n');
        }
        if (!m_paragraph.runs.empty())
            finishParagraph();
        return std::move(m_text);
    }

private:
    GroupState& state() { return m_stack.back(); }

    void closeGroup() {
        if (m_ignoredOpens > 0) {
            --m_ignoredOpens;
            return;
        }
        if (m_stack.size() <= 1)
            return;
        const GroupState closed = m_stack.back();
        m_stack.pop_back();
        if (closed.destination == Destination::fieldInstruction &&
            state().destination != Destination::fieldInstruction) {
            state().link = addLink(hyperlinkTarget(m_instruction));
            m_instruction.clear();
        }
        if (closed.destination == Destination::colourTable && state().destination != Destination::colourTable &&
            m_colourPending)
            finishColour();
    }

    /// A target longer than any real link (an instruction missing its closing quote runs on to
    /// the end of the field) is dropped; the linked text stays.
    std::size_t addLink(std::string target) {
        if (target.empty() || target.size() > RtfReader::maximumLinkBytes)
            return 0;
        if (target != m_links.back())
            m_links.push_back(std::move(target));
        return m_links.size() - 1;
    }

    static std::string hyperlinkTarget(const std::string& instruction) {
        const std::size_t keyword = instruction.find("HYPERLINK");
        if (keyword == std::string::npos)
            return {};
        const std::size_t open = instruction.find('"', keyword);
        if (open == std::string::npos) {
            std::size_t start = instruction.find_first_not_of(' ', keyword + 9);
            if (start == std::string::npos)
                return {};
            return instruction.substr(start, instruction.find(' ', start) - start);
        }
        const std::size_t close = instruction.find('"', open + 1);
        return instruction.substr(open + 1, close == std::string::npos ? std::string::npos : close - open - 1);
    }

    void controlWord() {
        if (m_position >= m_rtf.size())
            return;
        const char first = m_rtf[m_position];
        if (!std::isalpha(static_cast<unsigned char>(first))) {
            ++m_position;
            controlSymbol(first);
            return;
        }
        std::string word;
        while (m_position < m_rtf.size() && std::isalpha(static_cast<unsigned char>(m_rtf[m_position])) &&
               word.size() < 32)
            word += m_rtf[m_position++];
        std::optional<long> parameter;
        bool negative = false;
        if (m_position < m_rtf.size() && m_rtf[m_position] == '-') {
            negative = true;
            ++m_position;
        }
        std::string digits;
        while (m_position < m_rtf.size() && std::isdigit(static_cast<unsigned char>(m_rtf[m_position])) &&
               digits.size() < 10)
            digits += m_rtf[m_position++];
        if (!digits.empty())
            parameter = (negative ? -1 : 1) * std::stol(digits);
        if (m_position < m_rtf.size() && m_rtf[m_position] == ' ')
            ++m_position;
        apply(word, parameter);
    }

    void controlSymbol(char symbol) {
        switch (symbol) {
        case '\\':
        case '{':
        case '}':
            appendCharacter(static_cast<unsigned char>(symbol));
            break;
        case '~':
            appendCodePoint(0xA0);
            break;
        case '_':
            appendCodePoint(0x2011);
            break;
        case '*':
            // "Ignorable destination": skip unless we know it (the field instruction).
            if (m_groupStart || state().destination == Destination::text)
                m_pendingIgnorable = true;
            break;
        case '\'': {
            if (m_position + 2 > m_rtf.size())
                return;
            const std::string hex(m_rtf.substr(m_position, 2));
            m_position += 2;
            if (!std::isxdigit(static_cast<unsigned char>(hex[0])) ||
                !std::isxdigit(static_cast<unsigned char>(hex[1])))
                return;
            if (m_skipCharacters > 0) {
                --m_skipCharacters;
                return;
            }
            appendCodePoint(fromCodePage1252(static_cast<unsigned char>(std::stoi(hex, nullptr, 16))));
            break;
        }
        case '\n':
        case '\r':
            breakParagraph();
            break;
        default:
            break;
        }
    }

    void apply(const std::string& word, std::optional<long> parameter) {
        const bool wasIgnorable = m_pendingIgnorable;
        m_pendingIgnorable = false;
        GroupState& s = state();
        const bool on = !parameter || *parameter != 0;
        if (word == "fldinst") {
            s.destination = Destination::fieldInstruction;
            return;
        }
        if (wasIgnorable || isSkippedDestination(word)) {
            s.destination = Destination::skip;
            return;
        }
        if (word == "colortbl") {
            s.destination = Destination::colourTable;
            m_colours.clear();
            m_colours.push_back({});
            m_colourPending = false;
            return;
        }
        if (word == "listtext" || word == "pntext") {
            s.destination = Destination::listText;
            m_paragraph.bullet = true;
            return;
        }
        if (word == "bin" && parameter) {
            m_position += static_cast<std::size_t>(std::max(0L, *parameter));
            return;
        }
        if (s.destination == Destination::colourTable) {
            if (!parameter)
                return;
            const int value = static_cast<int>(std::clamp(*parameter, 0L, 255L));
            if (word == "red")
                m_colour[0] = value;
            else if (word == "green")
                m_colour[1] = value;
            else if (word == "blue")
                m_colour[2] = value;
            else
                return;
            m_colourPending = true;
            return;
        }
        // Formatting inside skipped groups (style sheets, list text) must not leak into the text.
        if (s.destination == Destination::skip || s.destination == Destination::listText)
            return;
        if (word == "par") {
            breakParagraph();
        } else if (word == "line") {
            appendCodePoint('\n');
        } else if (word == "tab") {
            appendCodePoint('\t');
        } else if (word == "emdash") {
            appendCodePoint(0x2014);
        } else if (word == "endash") {
            appendCodePoint(0x2013);
        } else if (word == "bullet") {
            appendCodePoint(0x2022);
        } else if (word == "lquote") {
            appendCodePoint(0x2018);
        } else if (word == "rquote") {
            appendCodePoint(0x2019);
        } else if (word == "ldblquote") {
            appendCodePoint(0x201C);
        } else if (word == "rdblquote") {
            appendCodePoint(0x201D);
        } else if (word == "u" && parameter) {
            long value = *parameter;
            if (value < 0)
                value += 65536;
            appendUnit(static_cast<char32_t>(value));
            m_skipCharacters = s.unicodeSkip;
        } else if (word == "uc" && parameter) {
            s.unicodeSkip = static_cast<int>(std::clamp(*parameter, 0L, 8L));
        } else if (word == "b") {
            s.bold = on;
        } else if (word == "i") {
            s.italic = on;
        } else if (word == "ul") {
            s.underline = on;
        } else if (word == "ulnone") {
            s.underline = false;
        } else if (word == "cf") {
            s.colourIndex = parameter ? static_cast<int>(*parameter) : 0;
        } else if (word == "fs") {
            s.fontSize = parameter && *parameter > 0 ? static_cast<double>(*parameter) / 2.0 : 0;
        } else if (word == "plain") {
            s.bold = s.italic = s.underline = false;
            s.colourIndex = 0;
            s.fontSize = 0;
        } else if (word == "pard") {
            m_paragraph.bullet = false;
            m_paragraph.leftIndent = 0;
            m_leftIndent = 0;
            m_firstIndent = 0;
        } else if (word == "li" && parameter) {
            m_leftIndent = static_cast<int>(std::clamp(*parameter, 0L, 100000L));
            m_paragraph.leftIndent = m_leftIndent;
        } else if (word == "fi" && parameter) {
            m_firstIndent = static_cast<int>(std::clamp(*parameter, -100000L, 100000L));
        } else if (word == "ls" && parameter && *parameter > 0) {
            m_paragraph.bullet = true;
        }
    }

    void finishColour() {
        char hex[8];
        std::snprintf(hex, sizeof hex, "%02X%02X%02X", m_colour[0], m_colour[1], m_colour[2]);
        m_colours.emplace_back(hex);
        m_colour = {0, 0, 0};
        m_colourPending = false;
    }

    void appendCharacter(unsigned char c) {
        const Destination destination = state().destination;
        if (destination == Destination::colourTable) {
            if (c == ';') {
                if (m_colourPending)
                    finishColour();
                else if (!m_colours.empty() && m_colours.size() > 1)
                    m_colours.emplace_back();
            }
            return;
        }
        if (destination == Destination::fieldInstruction) {
            m_instruction += static_cast<char>(c);
            return;
        }
        if (destination != Destination::text)
            return;
        // Bytes above 0x7F in the text stream are the document's code page (cp1252 here).
        appendCodePoint(c < 0x80 ? c : fromCodePage1252(c));
    }

    /// A \u value may be half of a surrogate pair.
    void appendUnit(char32_t unit) {
        if (unit >= 0xD800 && unit < 0xDC00) {
            m_highSurrogate = unit;
            return;
        }
        if (unit >= 0xDC00 && unit < 0xE000) {
            if (m_highSurrogate)
                appendCodePoint(0x10000 + ((m_highSurrogate - 0xD800) << 10) + (unit - 0xDC00));
            m_highSurrogate = 0;
            return;
        }
        m_highSurrogate = 0;
        appendCodePoint(unit);
    }

    void appendCodePoint(char32_t c) {
        // Escaped control characters (\u0, \'01) are no more text than raw ones; only the line
        // break and the tab that \line and \tab stand for are.
        if (c < 0x20 && c != '\n' && c != '\t')
            return;
        const GroupState& s = state();
        if (s.destination == Destination::fieldInstruction) {
            appendUtf8(m_instruction, c);
            return;
        }
        if (s.destination != Destination::text)
            return;
        const std::string colour = s.colourIndex > 0 && static_cast<std::size_t>(s.colourIndex) < m_colours.size()
                                       ? m_colours[s.colourIndex]
                                       : std::string();
        // Past the run limit a change of look no longer starts a run: the text goes on unchanged.
        if (m_paragraph.runs.empty() ||
            (m_runCount < RtfReader::maximumRuns && !sameLook(m_paragraph.runs.back(), s, colour))) {
            ++m_runCount;
            RichRun run;
            run.bold = s.bold;
            run.italic = s.italic;
            run.underline = s.underline;
            run.colorHex = colour;
            run.fontSize = s.fontSize;
            m_runLink = s.link;
            // Every run of a link holds its own copy of the target; a document that alternates
            // formatting inside one long link gets only as many copies as the budget allows.
            if (m_runLink != 0 && m_links[m_runLink].size() <= m_linkBudget) {
                run.link = m_links[m_runLink];
                m_linkBudget -= run.link.size();
            }
            m_paragraph.runs.push_back(std::move(run));
        }
        m_paragraph.runs.back().text.append(m_pendingBreaks, '\n');
        m_pendingBreaks = 0;
        appendUtf8(m_paragraph.runs.back().text, c);
    }

    bool sameLook(const RichRun& run, const GroupState& s, const std::string& colour) const {
        return run.bold == s.bold && run.italic == s.italic && run.underline == s.underline && run.colorHex == colour &&
               run.fontSize == s.fontSize && m_runLink == s.link;
    }

    void breakParagraph() {
        if (state().destination != Destination::text)
            return;
        // Past the paragraph limit a break is a line end inside the last paragraph, which reads
        // the same as plain text.
        if (m_text.paragraphs.size() + 1 >= RtfReader::maximumParagraphs) {
            ++m_pendingBreaks;
            return;
        }
        finishParagraph();
    }

    void finishParagraph() {
        if (m_paragraph.bullet && m_firstIndent < 0)
            m_paragraph.leftIndent = std::max(0, m_paragraph.leftIndent + m_firstIndent);
        m_text.paragraphs.push_back(std::move(m_paragraph));
        m_paragraph = RichParagraph{};
        // Paragraph properties last until the next \pard; a list's next item restates its bullet.
        m_paragraph.leftIndent = m_leftIndent;
    }

    std::string_view m_rtf;
    std::size_t m_position = 0;
    std::vector<GroupState> m_stack;
    std::size_t m_ignoredOpens = 0;
    bool m_groupStart = false;
    bool m_pendingIgnorable = false;
    int m_skipCharacters = 0;
    char32_t m_highSurrogate = 0;
    std::string m_instruction;
    std::vector<std::string> m_links{std::string()};
    std::size_t m_runLink = 0;
    std::size_t m_runCount = 0;
    /// Paragraph breaks past the paragraph limit, written as line ends before the next text.
    std::size_t m_pendingBreaks = 0;
    std::size_t m_linkBudget;
    std::vector<std::string> m_colours{std::string()};
    std::array<int, 3> m_colour{0, 0, 0};
    bool m_colourPending = false;
    int m_leftIndent = 0;
    int m_firstIndent = 0;
    RichParagraph m_paragraph;
    RichText m_text;
};

} // namespace

RichText RtfReader::read(std::string_view rtf) {
    return Parser(rtf).run();
}

} // namespace quillon::exports
