#include "export/SermonRtfExporter.h"

#include "export/OfficeParts.h"
#include "export/OutlineNumbering.h"
#include "export/RtfReader.h"
#include "export/RtfWriter.h"
#include "export/ScriptureText.h"
#include "export/XmlText.h"

namespace quillon::exports {

namespace {

RichParagraph styled(std::string text, bool bold, bool italic, double size, int indent, std::string colour = {}) {
    RichRun run;
    run.text = std::move(text);
    run.bold = bold;
    run.italic = italic;
    run.fontSize = size;
    run.colorHex = std::move(colour);
    RichParagraph paragraph;
    paragraph.leftIndent = indent;
    if (!run.text.empty())
        paragraph.runs.push_back(std::move(run));
    return paragraph;
}

/// The twin when it reads into something, else the plain text; indented under its heading.
void appendNotes(RichText& out, const std::string& plain, const std::optional<std::string>& twin, int indent) {
    RichText notes;
    if (twin && !twin->empty())
        notes = RtfReader::read(*twin);
    if (notes.plainText().empty())
        notes = RichText::fromPlainText(plain);
    for (auto& paragraph : notes.paragraphs) {
        paragraph.leftIndent += indent;
        out.paragraphs.push_back(std::move(paragraph));
    }
}

} // namespace

RichText SermonRtfExporter::richText(const model::SermonNote& sermon) const {
    RichText text;
    const std::string title = oneLine(sermon.title);
    text.paragraphs.push_back(styled(title.empty() ? "Untitled Sermon" : title, true, false, 26, 0,
                                     office::hexColour(sermon.textColorHex.value_or(""))));
    if (!sermon.speaker.empty())
        text.paragraphs.push_back(styled("Speaker: " + oneLine(sermon.speaker), false, true, 11, 0));
    if (sermon.series && !sermon.series->empty())
        text.paragraphs.push_back(styled("Series: " + oneLine(*sermon.series), false, true, 11, 0));
    if (sermon.venue && !sermon.venue->empty())
        text.paragraphs.push_back(styled("Venue: " + oneLine(*sermon.venue), false, true, 11, 0));
    text.paragraphs.push_back(RichParagraph{});

    int topicNumber = 0;
    for (const auto& topic : sermon.topics) {
        text.paragraphs.push_back(styled(romanNumeral(++topicNumber) + ". " + oneLine(topic.title), true, false, 16, 0,
                                         office::hexColour(topic.textColorHex.value_or(""))));
        if (!topic.details.empty() || topic.detailsRTFData)
            appendNotes(text, topic.details, topic.detailsRTFData, 360);
        int subTopicNumber = 0;
        for (const auto& subTopic : topic.subTopics) {
            text.paragraphs.push_back(styled(subTopicLetter(++subTopicNumber) + ". " + oneLine(subTopic.title), true,
                                             false, 13, 360, office::hexColour(subTopic.textColorHex.value_or(""))));
            if (!subTopic.details.empty() || subTopic.detailsRTFData)
                appendNotes(text, subTopic.details, subTopic.detailsRTFData, 640);
            for (const auto& scripture : subTopic.scriptures) {
                text.paragraphs.push_back(styled(referenceWithVersion(scripture), true, false, 11, 640));
                for (const std::string& line : splitLines(passageOrNote(scripture, m_verses)))
                    text.paragraphs.push_back(styled(line, false, true, 11, 800));
            }
        }
        text.paragraphs.push_back(RichParagraph{});
    }

    if (!sermon.notes.empty() || sermon.notesRTFData) {
        text.paragraphs.push_back(styled("Manuscript", true, false, 16, 0));
        appendNotes(text, sermon.notes, sermon.notesRTFData, 0);
    }
    return text;
}

std::string SermonRtfExporter::render(const model::SermonNote& sermon) const {
    return RtfWriter::write(richText(sermon));
}

} // namespace quillon::exports
