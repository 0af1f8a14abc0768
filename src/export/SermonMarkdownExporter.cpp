#include "export/SermonMarkdownExporter.h"

#include "export/OutlineNumbering.h"
#include "export/ScriptureText.h"
#include "export/XmlText.h"

#include <cctype>
#include <chrono>
#include <cstdio>

namespace quillon::exports {

namespace {

std::string dayText(model::DateTime date) {
    const std::chrono::year_month_day day{std::chrono::floor<std::chrono::days>(date)};
    char text[16];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(day.year()), static_cast<unsigned>(day.month()),
                  static_cast<unsigned>(day.day()));
    return text;
}

/// Paragraph text: every line escaped; blank lines kept so paragraphs stay apart.
std::string block(std::string_view text) {
    std::string result;
    for (const std::string& line : splitLines(text))
        result += SermonMarkdownExporter::escapeMarkdown(line) + "\n";
    return result;
}

} // namespace

std::string SermonMarkdownExporter::escapeMarkdown(std::string_view text) {
    std::string escaped;
    const std::string clean = validUtf8(text);
    for (std::size_t i = 0; i < clean.size(); ++i) {
        const char c = clean[i];
        switch (c) {
        case '\\':
        case '*':
        case '_':
        case '`':
        case '[':
        case ']':
        case '<':
        case '>':
        case '#':
        case '|':
            escaped += '\\';
            escaped += c;
            break;
        default:
            // A line starting "1. " or "- " would turn into a list item.
            if (i == 0 && (c == '-' || c == '+') && clean.size() > 1 && clean[1] == ' ')
                escaped += '\\';
            escaped += c;
        }
    }
    if (!escaped.empty() && std::isdigit(static_cast<unsigned char>(escaped[0]))) {
        const std::size_t dot = escaped.find_first_not_of("0123456789");
        if (dot != std::string::npos && (escaped[dot] == '.' || escaped[dot] == ')'))
            escaped.insert(dot, "\\");
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
            md += block(topic.details) + "\n";
        int subTopicNumber = 0;
        for (const auto& subTopic : topic.subTopics) {
            md += "### " + subTopicLetter(++subTopicNumber) + ". " + escapeMarkdown(oneLine(subTopic.title)) + "\n\n";
            if (!subTopic.details.empty())
                md += block(subTopic.details) + "\n";
            for (const auto& scripture : subTopic.scriptures) {
                md += "> **" + escapeMarkdown(referenceWithVersion(scripture)) + "**\n>\n";
                for (const std::string& line : splitLines(passageOrNote(scripture, m_verses)))
                    md += "> " + escapeMarkdown(line) + "\n";
                md += "\n";
            }
        }
    }

    if (!sermon.notes.empty()) {
        md += "## Manuscript\n\n";
        md += block(sermon.notes);
    }
    return md;
}

} // namespace quillon::exports
