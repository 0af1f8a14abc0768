#include "export/MarkdownReader.h"

#include "export/XmlText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>

namespace quillon::exports {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view trimmedBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// The line without up to three leading spaces; nothing when it is indented further.
std::optional<std::string_view> unindented(std::string_view line) {
    std::size_t spaces = 0;
    while (spaces < line.size() && line[spaces] == ' ')
        ++spaces;
    if (spaces > 3)
        return std::nullopt;
    return line.substr(spaces);
}

struct Heading {
    int level;
    std::string_view text;
};

/// "## Text ##": one to six "#", a blank or the line's end, the text, an optional closing run.
std::optional<Heading> atxHeading(std::string_view line) {
    const auto body = unindented(line);
    if (!body)
        return std::nullopt;
    std::size_t level = 0;
    while (level < body->size() && (*body)[level] == '#')
        ++level;
    if (level == 0 || level > 6 || (level < body->size() && !isBlank((*body)[level])))
        return std::nullopt;
    std::string_view text = trimmedBlanks(body->substr(level));
    // A closing run of "#" counts only after a blank; "C\#" or "C#" keep theirs.
    std::size_t end = text.size();
    while (end > 0 && text[end - 1] == '#')
        --end;
    if (end == 0)
        text = {};
    else if (end < text.size() && isBlank(text[end - 1]))
        text = trimmedBlanks(text.substr(0, end));
    return Heading{static_cast<int>(level), text};
}

/// "---", "* * *", "___": three or more of one marker and nothing else.
bool isThematicBreak(std::string_view line) {
    const auto body = unindented(line);
    if (!body || body->empty())
        return false;
    const char marker = body->front();
    if (marker != '-' && marker != '*' && marker != '_')
        return false;
    std::size_t count = 0;
    for (char c : *body) {
        if (c == marker)
            ++count;
        else if (!isBlank(c))
            return false;
    }
    return count >= 3;
}

/// "===" or "---" alone under a paragraph line turns that line into a heading.
int setextLevel(std::string_view line) {
    const auto body = unindented(line);
    if (!body)
        return 0;
    const std::string_view marks = trimmedBlanks(*body);
    if (marks.size() < 3 || (marks.front() != '=' && marks.front() != '-'))
        return 0;
    if (marks.find_first_not_of(marks.front()) != std::string_view::npos)
        return 0;
    return marks.front() == '=' ? 1 : 2;
}

std::optional<std::string_view> quotation(std::string_view line) {
    const auto body = unindented(line);
    if (!body || body->empty() || body->front() != '>')
        return std::nullopt;
    std::string_view text = body->substr(1);
    if (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    return text;
}

std::optional<std::string_view> bulletItem(std::string_view line) {
    std::size_t start = 0;
    while (start < line.size() && isBlank(line[start]))
        ++start;
    if (start + 1 >= line.size())
        return std::nullopt;
    const char marker = line[start];
    if ((marker != '-' && marker != '*' && marker != '+') || !isBlank(line[start + 1]))
        return std::nullopt;
    return line.substr(start + 2);
}

/// One line read, before heading depths are known.
struct ReadLine {
    std::string text;
    OutlineLine::Hint hint = OutlineLine::Hint::none;
    int headingLevel = 0;
};

/// "[text](target)" or "![text](target)" starting at `open` (the "["); the positions of "]" and
/// ")" are searched once for the whole line, so a line of many "[" stays linear.
class LinkFinder {
public:
    explicit LinkFinder(std::string_view text) : m_text(text) {}

    /// The end of the link (one past its ")") and its text, when a link starts at `open`.
    std::optional<std::pair<std::size_t, std::string_view>> at(std::size_t open) {
        const std::size_t close = nextAfter(m_close, ']', open + 1);
        if (close == std::string_view::npos || close + 1 >= m_text.size() || m_text[close + 1] != '(')
            return std::nullopt;
        const std::size_t paren = nextAfter(m_paren, ')', close + 2);
        if (paren == std::string_view::npos)
            return std::nullopt;
        return std::pair{paren + 1, m_text.substr(open + 1, close - open - 1)};
    }

private:
    std::size_t nextAfter(std::size_t& cached, char wanted, std::size_t from) const {
        if (cached == std::string_view::npos - 1 || (cached != std::string_view::npos && cached < from))
            cached = m_text.find(wanted, from);
        return cached;
    }

    std::string_view m_text;
    std::size_t m_close = std::string_view::npos - 1; // not yet searched
    std::size_t m_paren = std::string_view::npos - 1;
};

bool appendEntity(std::string& out, std::string_view text, std::size_t& i) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 7> entities{{
        {"&amp;", "&"},
        {"&lt;", "<"},
        {"&gt;", ">"},
        {"&quot;", "\""},
        {"&#39;", "'"},
        {"&apos;", "'"},
        {"&nbsp;", "\xC2\xA0"},
    }};
    for (const auto& [entity, character] : entities) {
        if (text.substr(i, entity.size()) == entity) {
            out += character;
            i += entity.size() - 1;
            return true;
        }
    }
    return false;
}

std::string inlineSpan(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    LinkFinder links(text);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const char next = i + 1 < text.size() ? text[i + 1] : '\0';
        if (c == '\\' && std::ispunct(static_cast<unsigned char>(next))) {
            plain += next;
            ++i;
        } else if (c == '&' && appendEntity(plain, text, i)) {
            continue;
        } else if ((c == '[' || (c == '!' && next == '[')) && links.at(c == '[' ? i : i + 1)) {
            const auto link = links.at(c == '[' ? i : i + 1);
            // Link text holds no "]", so it holds no further link: one level only.
            plain += inlineSpan(link->second);
            i = link->first - 1;
        } else if ((c == '*' || c == '_') && next == c) {
            ++i;
        } else if (c != '`') {
            plain += c;
        }
    }
    return plain;
}

std::vector<ReadLine> readLines(std::string_view markdown) {
    std::vector<ReadLine> lines;
    bool previousIsParagraph = false;
    for (const std::string& raw : splitLines(markdown)) {
        if (const int level = previousIsParagraph ? setextLevel(raw) : 0) {
            lines.back().headingLevel = level;
            previousIsParagraph = false;
            continue;
        }
        previousIsParagraph = false;
        if (const auto heading = atxHeading(raw)) {
            lines.push_back(
                ReadLine{MarkdownReader::inlineText(heading->text), OutlineLine::Hint::none, heading->level});
            continue;
        }
        if (isThematicBreak(raw))
            continue;
        if (const auto quoted = quotation(raw)) {
            lines.push_back(ReadLine{MarkdownReader::inlineText(*quoted), OutlineLine::Hint::quotation, 0});
            continue;
        }
        if (const auto item = bulletItem(raw)) {
            lines.push_back(ReadLine{MarkdownReader::inlineText(*item), OutlineLine::Hint::none, 0});
            continue;
        }
        lines.push_back(ReadLine{MarkdownReader::inlineText(raw), OutlineLine::Hint::none, 0});
        previousIsParagraph = !trimmedBlanks(raw).empty();
    }
    return lines;
}

} // namespace

std::string MarkdownReader::inlineText(std::string_view text) {
    std::size_t backslashes = 0;
    while (backslashes < text.size() && text[text.size() - 1 - backslashes] == '\\')
        ++backslashes;
    if (backslashes % 2 == 1)
        text.remove_suffix(1);
    return inlineSpan(text);
}

std::vector<OutlineLine> MarkdownReader::read(std::string_view markdown) {
    std::vector<ReadLine> lines = readLines(validUtf8(markdown));

    // The first heading is the title when it is a "#"; the shallowest level of the others holds
    // the topics ("# Title / ## Point" and "# Title / # Point / ## Sub-point" both read right).
    std::size_t titleIndex = lines.size();
    int topicLevel = 7;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].headingLevel == 0)
            continue;
        if (titleIndex == lines.size() && topicLevel == 7 && lines[i].headingLevel == 1) {
            titleIndex = i;
            continue;
        }
        topicLevel = std::min(topicLevel, lines[i].headingLevel);
    }

    std::vector<OutlineLine> outline;
    outline.reserve(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        ReadLine& line = lines[i];
        OutlineLine::Hint hint = line.hint;
        if (i == titleIndex)
            hint = OutlineLine::Hint::title;
        else if (line.headingLevel > 0 && (line.headingLevel == topicLevel || line.text == "Manuscript"))
            hint = OutlineLine::Hint::topic;
        else if (line.headingLevel > topicLevel)
            hint = OutlineLine::Hint::subTopic;
        outline.push_back(OutlineLine{std::move(line.text), hint});
    }
    return outline;
}

} // namespace quillon::exports
