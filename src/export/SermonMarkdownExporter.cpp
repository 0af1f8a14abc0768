#include "export/SermonMarkdownExporter.h"

#include "export/OutlineNumbering.h"
#include "export/ScriptureText.h"
#include "export/XmlText.h"

#include <cctype>
#include <chrono>
#include <cstdio>
#include <vector>

namespace quillon::exports {

namespace {

std::string dayText(model::DateTime date) {
    const std::chrono::year_month_day day{std::chrono::floor<std::chrono::days>(date)};
    char text[16];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(day.year()), static_cast<unsigned>(day.month()),
                  static_cast<unsigned>(day.day()));
    return text;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

/// Lines of text as Markdown that renders them line for line: every line but the last of a
/// paragraph ends in a backslash (a hard line break), blank lines part paragraphs, and each line
/// starts with `prefix` ("> " inside a quotation).
std::string lineByLine(std::string_view text, std::string_view prefix = {}) {
    std::vector<std::string> lines;
    for (const std::string& line : splitLines(text))
        lines.push_back(SermonMarkdownExporter::escapeMarkdown(line));
    std::string result;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const bool breakAfter = !lines[i].empty() && i + 1 < lines.size() && !lines[i + 1].empty();
        std::string line = std::string(prefix) + lines[i];
        while (lines[i].empty() && !line.empty() && line.back() == ' ')
            line.pop_back();
        result += line + (breakAfter ? "\\\n" : "\n");
    }
    return result;
}

/// "12. ", "b) ", "IV. " at the start of a line would open a list (pandoc reads letters and
/// Roman numerals as well as digits); the position of the "." or ")", or 0.
std::size_t listMarkerEnd(std::string_view line) {
    std::size_t end = 0;
    while (end < line.size() && end < 10 && std::isalnum(static_cast<unsigned char>(line[end])))
        ++end;
    if (end == 0 || end >= line.size() || (line[end] != '.' && line[end] != ')'))
        return 0;
    if (end + 1 < line.size() && !isBlank(line[end + 1]))
        return 0;
    return end;
}

bool escapedAnywhere(char c) {
    switch (c) {
    case '\\':
    case '*':
    case '_':
    case '`':
    case '~': // fences, and pandoc's subscript and strike-out
    case '^': // pandoc's superscript
    case '$': // pandoc's mathematics
    case '[':
    case ']':
    case '{': // pandoc's attributes
    case '<':
    case '>':
    case '#':
    case '|':
        return true;
    default:
        return false;
    }
}

bool escapedAtLineStart(char c) {
    // "- " and "+ " items, "===" and "---" heading underlines, pandoc's ": " definitions and
    // "(a)" lists.
    return c == '-' || c == '+' || c == '=' || c == ':' || c == '(';
}

} // namespace

std::string SermonMarkdownExporter::escapeMarkdown(std::string_view text) {
    const std::string clean = validUtf8(text);
    // Leading blanks would make an indented code block, trailing ones a line break.
    std::size_t first = 0;
    while (first < clean.size() && isBlank(clean[first]))
        ++first;
    std::size_t last = clean.size();
    while (last > first && isBlank(clean[last - 1]))
        --last;
    const std::string_view line = std::string_view(clean).substr(first, last - first);

    std::string escaped;
    escaped.reserve(line.size() + line.size() / 8);
    const std::size_t markerEnd = listMarkerEnd(line);
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        const char next = i + 1 < line.size() ? line[i + 1] : '\0';
        bool escape = escapedAnywhere(c) || (i == 0 && escapedAtLineStart(c));
        if (c == '&') // only where it would start an entity, so "&amp;" stays "&amp;"
            escape = std::isalnum(static_cast<unsigned char>(next)) || next == '#';
        else if (c == '-' && i > 0) // pandoc turns "--" into a dash
            escape = line[i - 1] == '-';
        else if (c == '.' || c == ')')
            escape = markerEnd != 0 && i == markerEnd;
        if (escape)
            escaped += '\\';
        escaped += c;
    }
    return escaped;
}

std::string SermonMarkdownExporter::render(const model::SermonNote& sermon) const {
    std::string md;
    const std::string title = oneLine(sermon.title);
    md += "# " + (title.empty() ? std::string("Untitled Sermon") : escapeMarkdown(title)) + "\n\n";

    const auto meta = [&](std::string_view label, const std::string& value) {
        if (!value.empty())
            md += "- **" + std::string(label) + ":** " + escapeMarkdown(oneLine(value)) + "\n";
    };
    meta("Speaker", sermon.speaker);
    meta("Series", sermon.series.value_or(""));
    meta("Venue", sermon.venue.value_or(""));
    md += "- **Date:** " + dayText(sermon.date) + "\n";
    if (!sermon.tags.empty()) {
        std::string tags;
        for (const auto& tag : sermon.tags)
            tags += (tags.empty() ? "" : ", ") + tag;
        meta("Tags", tags);
    }
    md += "\n";

    int topicNumber = 0;
    for (const auto& topic : sermon.topics) {
        md += "## " + romanNumeral(++topicNumber) + ". " + escapeMarkdown(oneLine(topic.title)) + "\n\n";
        if (!topic.details.empty())
            md += lineByLine(topic.details) + "\n";
        int subTopicNumber = 0;
        for (const auto& subTopic : topic.subTopics) {
            md += "### " + subTopicLetter(++subTopicNumber) + ". " + escapeMarkdown(oneLine(subTopic.title)) + "\n\n";
            if (!subTopic.details.empty())
                md += lineByLine(subTopic.details) + "\n";
            for (const auto& scripture : subTopic.scriptures) {
                md += "> **" + escapeMarkdown(referenceWithVersion(scripture)) + "**\n>\n";
                md += lineByLine(passageOrNote(scripture, m_verses), "> ") + "\n";
            }
        }
    }

    if (!sermon.notes.empty()) {
        md += "## Manuscript\n\n";
        md += lineByLine(sermon.notes);
    }
    return md;
}

} // namespace quillon::exports
