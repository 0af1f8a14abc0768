#include "export/SermonWordExporter.h"

#include "export/OfficeParts.h"
#include "export/OutlineNumbering.h"
#include "export/ScriptureText.h"
#include "export/XmlText.h"
#include "model/BibleVersion.h"

#include <optional>
#include <string_view>

namespace quillon::exports {

namespace {

using office::declaration;

enum class Face { regular, bold, italic, monospaced };

struct RunStyle {
    Face face = Face::regular;
    int size = 22; // half-points
    std::string colour;
};

struct ParagraphShape {
    int spacingAfter = 120; // twips
    int indent = 0;         // twips
};

constexpr std::string_view headingColour = "1F3A5F";
constexpr std::string_view subHeadingColour = "2E5A88";
constexpr std::string_view scriptureColour = "6B4E16";
constexpr std::string_view indexHeaderFill = "DFF1FF";
constexpr std::string_view indexBodyFill = "FFFFFF";

std::string runProperties(const RunStyle& style, std::string_view indent) {
    std::string xml;
    xml += std::string(indent) + "<w:rPr>\n";
    const std::string inner = std::string(indent) + "  ";
    if (style.face == Face::monospaced) {
        xml += inner + "<w:rFonts w:ascii=\"Menlo\" w:hAnsi=\"Menlo\"/>\n";
    } else {
        xml += inner + "<w:rFonts w:ascii=\"Calibri\" w:hAnsi=\"Calibri\"/>\n";
        if (style.face == Face::bold)
            xml += inner + "<w:b/>\n";
        else if (style.face == Face::italic)
            xml += inner + "<w:i/>\n";
    }
    if (!style.colour.empty())
        xml += inner + "<w:color w:val=\"" + style.colour + "\"/>\n";
    const std::string size = std::to_string(style.size);
    xml += inner + "<w:sz w:val=\"" + size + "\"/>\n";
    xml += inner + "<w:szCs w:val=\"" + size + "\"/>\n";
    xml += std::string(indent) + "</w:rPr>\n";
    return xml;
}

/// One paragraph at `indent` spaces: spacing and indent, the run properties repeated as the
/// paragraph mark's, then a single run holding the escaped text.
std::string paragraph(std::string_view text, const RunStyle& style, const ParagraphShape& shape,
                      std::string_view indent = "    ") {
    const std::string i1 = std::string(indent) + "  ";
    const std::string i2 = i1 + "  ";
    std::string xml;
    xml += std::string(indent) + "<w:p>\n";
    xml += i1 + "<w:pPr>\n";
    xml += i2 + "<w:spacing w:after=\"" + std::to_string(shape.spacingAfter) + "\"/>\n";
    xml += i2 + "<w:ind w:left=\"" + std::to_string(shape.indent) + "\"/>\n";
    xml += runProperties(style, i2);
    xml += i1 + "</w:pPr>\n";
    xml += i1 + "<w:r>\n";
    xml += runProperties(style, i2);
    xml += i2 + "<w:t xml:space=\"preserve\">" + escapeXml(text) + "</w:t>\n";
    xml += i1 + "</w:r>\n";
    xml += std::string(indent) + "</w:p>\n";
    return xml;
}

/// Multi-line text becomes one paragraph per line: a line end inside w:t would show as a space.
std::string paragraphs(std::string_view text, const RunStyle& style, const ParagraphShape& shape) {
    std::string xml;
    for (const std::string& line : splitLines(text))
        xml += paragraph(line, style, shape);
    return xml;
}

std::string spacer() {
    return paragraph("", RunStyle{Face::regular, 12, {}}, ParagraphShape{0, 0});
}

std::string colourOr(const std::optional<std::string>& own, std::string_view fallback) {
    if (own) {
        std::string colour = office::hexColour(*own);
        if (!colour.empty())
            return colour;
    }
    return std::string(fallback);
}

std::string indexCell(std::string_view text, Face face, int width, std::string_view fill) {
    std::string xml;
    xml += "        <w:tc>\n";
    xml += "          <w:tcPr>\n";
    xml += "            <w:tcW w:w=\"" + std::to_string(width) + "\" w:type=\"dxa\"/>\n";
    xml += "            <w:shd w:val=\"clear\" w:color=\"auto\" w:fill=\"" + std::string(fill) + "\"/>\n";
    xml += "          </w:tcPr>\n";
    xml += paragraph(text, RunStyle{face, 20, {}}, ParagraphShape{0, 0}, "          ");
    xml += "        </w:tc>\n";
    return xml;
}

std::string indexRow(std::string_view reference, Face referenceFace, std::string_view version, Face versionFace,
                     std::string_view fill) {
    std::string xml = "      <w:tr>\n";
    xml += indexCell(reference, referenceFace, 6000, fill);
    xml += indexCell(version, versionFace, 2500, fill);
    xml += "      </w:tr>\n";
    return xml;
}

std::string scriptureIndex(const model::SermonNote& sermon) {
    std::string xml;
    xml += paragraph("Scripture Index", RunStyle{Face::bold, 26, std::string(headingColour)}, ParagraphShape{120, 0});
    xml += "    <w:tbl>\n";
    xml += "      <w:tblPr>\n";
    xml += "        <w:tblStyle w:val=\"TableGrid\"/>\n";
    xml += "        <w:tblW w:w=\"0\" w:type=\"auto\"/>\n";
    xml += "        <w:tblBorders>\n";
    for (std::string_view edge : {"top", "left", "bottom", "right", "insideH", "insideV"})
        xml +=
            "          <w:" + std::string(edge) + " w:val=\"single\" w:sz=\"4\" w:space=\"0\" w:color=\"BFBFBF\"/>\n";
    xml += "        </w:tblBorders>\n";
    xml += "      </w:tblPr>\n";
    xml += "      <w:tblGrid>\n";
    xml += "        <w:gridCol w:w=\"6000\"/>\n";
    xml += "        <w:gridCol w:w=\"2500\"/>\n";
    xml += "      </w:tblGrid>\n";
    xml += indexRow("Reference", Face::bold, "Version", Face::bold, indexHeaderFill);
    for (const auto& topic : sermon.topics)
        for (const auto& subTopic : topic.subTopics)
            for (const auto& scripture : subTopic.scriptures)
                xml += indexRow(referenceText(scripture), Face::regular, model::rawValue(scripture.version),
                                Face::monospaced, indexBodyFill);
    xml += "    </w:tbl>\n";
    return xml;
}

constexpr std::string_view contentTypes =
    "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">\n"
    "  <Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>\n"
    "  <Default Extension=\"xml\" ContentType=\"application/xml\"/>\n"
    "  <Override PartName=\"/word/document.xml\" "
    "ContentType=\"application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml\"/>\n"
    "  <Override PartName=\"/word/styles.xml\" "
    "ContentType=\"application/vnd.openxmlformats-officedocument.wordprocessingml.styles+xml\"/>\n"
    "  <Override PartName=\"/docProps/core.xml\" "
    "ContentType=\"application/vnd.openxmlformats-package.core-properties+xml\"/>\n"
    "  <Override PartName=\"/docProps/app.xml\" "
    "ContentType=\"application/vnd.openxmlformats-officedocument.extended-properties+xml\"/>\n"
    "</Types>\n";

constexpr std::string_view appProperties =
    "<Properties xmlns=\"http://schemas.openxmlformats.org/officeDocument/2006/extended-properties\" "
    "xmlns:vt=\"http://schemas.openxmlformats.org/officeDocument/2006/docPropsVTypes\">\n"
    "  <Application>Quillon</Application>\n"
    "</Properties>\n";

constexpr std::string_view documentRelationships =
    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">\n"
    "  <Relationship Id=\"rId1\" "
    "Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles\" Target=\"styles.xml\"/>\n"
    "</Relationships>\n";

constexpr std::string_view styles =
    "<w:styles xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\">\n"
    "  <w:docDefaults>\n"
    "    <w:rPrDefault>\n"
    "      <w:rPr>\n"
    "        <w:rFonts w:ascii=\"Calibri\" w:hAnsi=\"Calibri\"/>\n"
    "        <w:sz w:val=\"22\"/>\n"
    "        <w:szCs w:val=\"22\"/>\n"
    "      </w:rPr>\n"
    "    </w:rPrDefault>\n"
    "  </w:docDefaults>\n"
    "  <w:style w:type=\"paragraph\" w:default=\"1\" w:styleId=\"Normal\">\n"
    "    <w:name w:val=\"Normal\"/>\n"
    "  </w:style>\n"
    "  <w:style w:type=\"table\" w:styleId=\"TableGrid\">\n"
    "    <w:name w:val=\"Table Grid\"/>\n"
    "    <w:tblPr>\n"
    "      <w:tblBorders>\n"
    "        <w:top w:val=\"single\" w:sz=\"4\" w:space=\"0\" w:color=\"BFBFBF\"/>\n"
    "        <w:left w:val=\"single\" w:sz=\"4\" w:space=\"0\" w:color=\"BFBFBF\"/>\n"
    "        <w:bottom w:val=\"single\" w:sz=\"4\" w:space=\"0\" w:color=\"BFBFBF\"/>\n"
    "        <w:right w:val=\"single\" w:sz=\"4\" w:space=\"0\" w:color=\"BFBFBF\"/>\n"
    "        <w:insideH w:val=\"single\" w:sz=\"4\" w:space=\"0\" w:color=\"BFBFBF\"/>\n"
    "        <w:insideV w:val=\"single\" w:sz=\"4\" w:space=\"0\" w:color=\"BFBFBF\"/>\n"
    "      </w:tblBorders>\n"
    "    </w:tblPr>\n"
    "  </w:style>\n"
    "</w:styles>\n";

} // namespace

std::string SermonWordExporter::documentXml(const model::SermonNote& sermon) const {
    std::string xml(declaration);
    xml += "<w:document xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\" "
           "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">\n";
    xml += "  <w:body>\n";

    // A title with line ends would otherwise break into several title paragraphs.
    std::string title;
    for (const std::string& line : splitLines(sermon.title))
        title += (title.empty() || line.empty() ? "" : " ") + line;
    if (title.find_first_not_of(" \t") == std::string::npos)
        title = "Untitled Sermon";
    const std::string sermonColour = colourOr(sermon.textColorHex, "");
    xml += paragraph(title, RunStyle{Face::bold, 52, sermonColour}, ParagraphShape{240, 0});

    const RunStyle metadata{Face::italic, 22, {}};
    if (!sermon.speaker.empty())
        xml += paragraph("Speaker: " + sermon.speaker, metadata, ParagraphShape{60, 0});
    if (sermon.series && !sermon.series->empty())
        xml += paragraph("Series: " + *sermon.series, metadata, ParagraphShape{60, 0});
    if (sermon.venue && !sermon.venue->empty())
        xml += paragraph("Venue: " + *sermon.venue, metadata, ParagraphShape{60, 0});
    xml += spacer();

    int topicNumber = 0;
    for (const auto& topic : sermon.topics) {
        const std::string topicColour = colourOr(topic.textColorHex, headingColour);
        xml += paragraph(romanNumeral(++topicNumber) + ". " + topic.title, RunStyle{Face::bold, 26, topicColour},
                         ParagraphShape{120, 0});
        if (!topic.details.empty())
            xml += paragraphs(topic.details, RunStyle{Face::regular, 22, {}}, ParagraphShape{120, 360});
        int subTopicNumber = 0;
        for (const auto& subTopic : topic.subTopics) {
            const std::string subColour = colourOr(subTopic.textColorHex, subHeadingColour);
            xml += paragraph(subTopicLetter(++subTopicNumber) + ". " + subTopic.title,
                             RunStyle{Face::bold, 24, subColour}, ParagraphShape{80, 360});
            if (!subTopic.details.empty())
                xml += paragraphs(subTopic.details, RunStyle{Face::regular, 22, {}}, ParagraphShape{80, 640});
            for (const auto& scripture : subTopic.scriptures) {
                const std::string colour = colourOr(scripture.textColorHex, scriptureColour);
                xml += paragraph(referenceWithVersion(scripture), RunStyle{Face::bold, 20, colour},
                                 ParagraphShape{40, 640});
                xml += paragraphs(passageOrNote(scripture, m_verses), RunStyle{Face::italic, 20, {}},
                                  ParagraphShape{80, 800});
            }
        }
        xml += spacer();
    }

    xml += scriptureIndex(sermon);
    xml += spacer();
    xml += "    <w:sectPr>\n";
    xml += "      <w:pgSz w:w=\"12240\" w:h=\"15840\"/>\n";
    xml += "      <w:pgMar w:top=\"1080\" w:right=\"1080\" w:bottom=\"1080\" w:left=\"1080\" w:header=\"720\" "
           "w:footer=\"720\" w:gutter=\"0\"/>\n";
    xml += "    </w:sectPr>\n";
    xml += "  </w:body>\n";
    xml += "</w:document>\n";
    return xml;
}

OfficePackage SermonWordExporter::package(const model::SermonNote& sermon) const {
    const std::string title = sermon.title.empty() ? std::string("Untitled Sermon") : sermon.title;
    OfficePackage package;
    package.add("[Content_Types].xml", std::string(declaration) + std::string(contentTypes));
    package.add("_rels/.rels", office::packageRelationships("word/document.xml"));
    package.add("docProps/core.xml", office::coreProperties(title));
    package.add("docProps/app.xml", std::string(declaration) + std::string(appProperties));
    package.add("word/_rels/document.xml.rels", std::string(declaration) + std::string(documentRelationships));
    package.add("word/styles.xml", std::string(declaration) + std::string(styles));
    package.add("word/document.xml", documentXml(sermon));
    return package;
}

std::string SermonWordExporter::render(const model::SermonNote& sermon) const {
    return package(sermon).zipBytes(failureSentence());
}

} // namespace quillon::exports
