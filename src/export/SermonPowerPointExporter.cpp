#include "export/SermonPowerPointExporter.h"

#include "export/OfficeParts.h"
#include "export/OutlineNumbering.h"
#include "export/ScriptureText.h"
#include "export/SlideTitleFit.h"
#include "export/XmlText.h"

#include <string_view>

namespace quillon::exports {

namespace {

using office::declaration;

constexpr std::int64_t titleWidth = 11962000;
constexpr std::int64_t titleHeight = 900000;

/// How much text one 11,500,000 × 5,200,000 EMU body box holds without overflowing, measured in
/// characters of an average-width face with a margin for wide letters.
struct BoxCapacity {
    std::size_t charactersPerLine;
    std::size_t lines;
};

BoxCapacity capacityFor(PowerPointSlide::Kind kind) {
    return kind == PowerPointSlide::Kind::scripture ? BoxCapacity{62, 12} : BoxCapacity{68, 13};
}

/// Byte offsets where each code point starts, plus the end.
std::vector<std::size_t> codePointBounds(std::string_view text) {
    std::vector<std::size_t> starts;
    for (std::size_t i = 0; i < text.size(); ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
            starts.push_back(i);
    starts.push_back(text.size());
    return starts;
}

/// Greedy word wrap into lines of at most `width` code points; a word longer than a line is cut.
std::vector<std::string> wrap(std::string_view line, std::size_t width) {
    std::vector<std::string> lines;
    std::string current;
    std::size_t currentLength = 0;
    const auto flush = [&] {
        lines.push_back(std::move(current));
        current.clear();
        currentLength = 0;
    };
    std::size_t position = 0;
    while (position < line.size()) {
        std::size_t end = line.find(' ', position);
        if (end == std::string_view::npos)
            end = line.size();
        std::string_view word = line.substr(position, end - position);
        position = end + 1;
        if (word.empty())
            continue;
        std::vector<std::size_t> starts = codePointBounds(word);
        std::size_t wordLength = starts.size() - 1;
        if (currentLength > 0 && currentLength + 1 + wordLength > width)
            flush();
        while (wordLength > width) {
            if (currentLength > 0)
                flush();
            lines.emplace_back(word.substr(0, starts[width]));
            word.remove_prefix(starts[width]);
            starts = codePointBounds(word);
            wordLength = starts.size() - 1;
        }
        if (currentLength > 0) {
            current += ' ';
            ++currentLength;
        }
        current += word;
        currentLength += wordLength;
    }
    if (currentLength > 0 || lines.empty())
        flush();
    return lines;
}

std::string singleLine(std::string_view text) {
    std::string joined;
    for (const std::string& line : splitLines(text)) {
        if (line.empty())
            continue;
        if (!joined.empty())
            joined += ' ';
        joined += line;
    }
    return joined;
}

/// Adds the slide, spreading its body over as many slides as the box needs.
void appendSlides(std::vector<PowerPointSlide>& slides, PowerPointSlide::Kind kind, const std::string& title,
                  std::string_view body) {
    const BoxCapacity capacity = capacityFor(kind);
    std::vector<std::string> pages;
    std::string page;
    std::size_t usedLines = 0;
    const auto nextPage = [&] {
        pages.push_back(std::move(page));
        page.clear();
        usedLines = 0;
    };
    if (!body.empty()) {
        for (const std::string& line : splitLines(body)) {
            std::vector<std::string> pieces = wrap(line, capacity.charactersPerLine);
            std::size_t next = 0;
            while (next < pieces.size()) {
                if (usedLines == capacity.lines)
                    nextPage();
                const std::size_t take = std::min(pieces.size() - next, capacity.lines - usedLines);
                std::string paragraph;
                for (std::size_t i = next; i < next + take; ++i)
                    paragraph += (i == next ? "" : " ") + pieces[i];
                if (usedLines > 0)
                    page += '\n';
                page += paragraph;
                usedLines += take;
                next += take;
            }
        }
    }
    pages.push_back(std::move(page));
    for (std::size_t i = 0; i < pages.size(); ++i)
        slides.push_back(PowerPointSlide{kind, i == 0 ? title : title + " (cont.)", std::move(pages[i])});
}

std::string background(PowerPointSlide::Kind kind) {
    std::string xml = "    <p:bg>\n      <p:bgPr>\n";
    if (kind == PowerPointSlide::Kind::scripture) {
        xml += "        <a:solidFill>\n"
               "          <a:srgbClr val=\"F3EAD7\"/>\n"
               "        </a:solidFill>\n";
    } else {
        xml += "        <a:gradFill flip=\"none\" rotWithShape=\"1\">\n"
               "          <a:gsLst>\n"
               "            <a:gs pos=\"0\">\n"
               "              <a:srgbClr val=\"DFF1FF\"/>\n"
               "            </a:gs>\n"
               "            <a:gs pos=\"100000\">\n"
               "              <a:srgbClr val=\"A9D8FF\"/>\n"
               "            </a:gs>\n"
               "          </a:gsLst>\n"
               "          <a:lin ang=\"5400000\" scaled=\"0\"/>\n"
               "        </a:gradFill>\n";
    }
    xml += "        <a:effectLst/>\n      </p:bgPr>\n    </p:bg>\n";
    return xml;
}

std::string slideRunProperties(int size, bool bold) {
    std::string xml = "<a:rPr lang=\"en-US\" sz=\"" + std::to_string(size) + "\"";
    if (bold)
        xml += " b=\"1\"";
    xml += " dirty=\"0\">\n"
           "                <a:solidFill>\n"
           "                  <a:srgbClr val=\"000000\"/>\n"
           "                </a:solidFill>\n"
           "              </a:rPr>\n";
    return xml;
}

std::string textBox(int id, std::string_view name, std::int64_t x, std::int64_t y, std::int64_t cx, std::int64_t cy,
                    const std::vector<std::string>& lines, int size, bool bold) {
    std::string xml;
    xml += "      <p:sp>\n";
    xml += "        <p:nvSpPr>\n";
    xml += "          <p:cNvPr id=\"" + std::to_string(id) + "\" name=\"" + std::string(name) + "\"/>\n";
    xml += "          <p:cNvSpPr txBox=\"1\"/>\n";
    xml += "          <p:nvPr/>\n";
    xml += "        </p:nvSpPr>\n";
    xml += "        <p:spPr>\n";
    xml += "          <a:xfrm>\n";
    xml += "            <a:off x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(y) + "\"/>\n";
    xml += "            <a:ext cx=\"" + std::to_string(cx) + "\" cy=\"" + std::to_string(cy) + "\"/>\n";
    xml += "          </a:xfrm>\n";
    xml += "          <a:prstGeom prst=\"rect\">\n            <a:avLst/>\n          </a:prstGeom>\n";
    xml += "          <a:noFill/>\n";
    xml += "          <a:ln>\n            <a:noFill/>\n          </a:ln>\n";
    xml += "        </p:spPr>\n";
    xml += "        <p:txBody>\n";
    xml += "          <a:bodyPr wrap=\"square\" anchor=\"t\"/>\n";
    xml += "          <a:lstStyle/>\n";
    for (const std::string& line : lines) {
        xml += "          <a:p>\n";
        if (!line.empty()) {
            xml += "            <a:r>\n";
            xml += "              " + slideRunProperties(size, bold);
            xml += "              <a:t>" + escapeXml(line) + "</a:t>\n";
            xml += "            </a:r>\n";
        }
        xml += "            <a:endParaRPr lang=\"en-US\" sz=\"" + std::to_string(size) + "\" dirty=\"0\"/>\n";
        xml += "          </a:p>\n";
    }
    xml += "        </p:txBody>\n";
    xml += "      </p:sp>\n";
    return xml;
}

constexpr std::string_view presentationNamespaces =
    "xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\" "
    "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\" "
    "xmlns:p=\"http://schemas.openxmlformats.org/presentationml/2006/main\"";

constexpr std::string_view theme =
    "<a:theme xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\" name=\"Quillon\">\n"
    "  <a:themeElements>\n"
    "    <a:clrScheme name=\"Quillon\">\n"
    "      <a:dk1>\n        <a:srgbClr val=\"000000\"/>\n      </a:dk1>\n"
    "      <a:lt1>\n        <a:srgbClr val=\"FFFFFF\"/>\n      </a:lt1>\n"
    "      <a:dk2>\n        <a:srgbClr val=\"000000\"/>\n      </a:dk2>\n"
    "      <a:lt2>\n        <a:srgbClr val=\"FFFFFF\"/>\n      </a:lt2>\n"
    "      <a:accent1>\n        <a:srgbClr val=\"A9D8FF\"/>\n      </a:accent1>\n"
    "      <a:accent2>\n        <a:srgbClr val=\"F3EAD7\"/>\n      </a:accent2>\n"
    "      <a:accent3>\n        <a:srgbClr val=\"000000\"/>\n      </a:accent3>\n"
    "      <a:accent4>\n        <a:srgbClr val=\"000000\"/>\n      </a:accent4>\n"
    "      <a:accent5>\n        <a:srgbClr val=\"000000\"/>\n      </a:accent5>\n"
    "      <a:accent6>\n        <a:srgbClr val=\"000000\"/>\n      </a:accent6>\n"
    "      <a:hlink>\n        <a:srgbClr val=\"000000\"/>\n      </a:hlink>\n"
    "      <a:folHlink>\n        <a:srgbClr val=\"000000\"/>\n      </a:folHlink>\n"
    "    </a:clrScheme>\n"
    "    <a:fontScheme name=\"Quillon\">\n"
    "      <a:majorFont>\n"
    "        <a:latin typeface=\"Aptos Display\"/>\n"
    "        <a:ea typeface=\"\"/>\n"
    "        <a:cs typeface=\"\"/>\n"
    "      </a:majorFont>\n"
    "      <a:minorFont>\n"
    "        <a:latin typeface=\"Aptos\"/>\n"
    "        <a:ea typeface=\"\"/>\n"
    "        <a:cs typeface=\"\"/>\n"
    "      </a:minorFont>\n"
    "    </a:fontScheme>\n"
    "    <a:fmtScheme name=\"Quillon\">\n"
    "      <a:fillStyleLst>\n"
    "        <a:solidFill>\n          <a:schemeClr val=\"phClr\"/>\n        </a:solidFill>\n"
    "        <a:solidFill>\n          <a:schemeClr val=\"phClr\"/>\n        </a:solidFill>\n"
    "        <a:solidFill>\n          <a:schemeClr val=\"phClr\"/>\n        </a:solidFill>\n"
    "      </a:fillStyleLst>\n"
    "      <a:lnStyleLst>\n"
    "        <a:ln w=\"9525\">\n"
    "          <a:solidFill>\n            <a:schemeClr val=\"phClr\"/>\n          </a:solidFill>\n"
    "        </a:ln>\n"
    "      </a:lnStyleLst>\n"
    "      <a:effectStyleLst>\n"
    "        <a:effectStyle>\n          <a:effectLst/>\n        </a:effectStyle>\n"
    "      </a:effectStyleLst>\n"
    "      <a:bgFillStyleLst>\n"
    "        <a:solidFill>\n          <a:schemeClr val=\"phClr\"/>\n        </a:solidFill>\n"
    "      </a:bgFillStyleLst>\n"
    "    </a:fmtScheme>\n"
    "  </a:themeElements>\n"
    "</a:theme>\n";

constexpr std::string_view slideRelationships =
    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\"/>\n";

} // namespace

std::vector<PowerPointSlide> SermonPowerPointExporter::slides(const model::SermonNote& sermon) const {
    std::vector<PowerPointSlide> slides;
    using Kind = PowerPointSlide::Kind;

    std::string title = singleLine(sermon.title);
    if (title.find_first_not_of(" \t") == std::string::npos)
        title = "Untitled Sermon";
    std::string metadata;
    const auto addLine = [&](std::string_view label, const std::string& value) {
        if (value.empty())
            return;
        if (!metadata.empty())
            metadata += '\n';
        metadata += std::string(label) + singleLine(value);
    };
    addLine("Speaker: ", sermon.speaker);
    addLine("Series: ", sermon.series.value_or(""));
    addLine("Venue: ", sermon.venue.value_or(""));
    appendSlides(slides, Kind::note, title, metadata);

    int topicNumber = 0;
    for (const auto& topic : sermon.topics) {
        std::string topicTitle = romanNumeral(++topicNumber) + ".";
        if (!singleLine(topic.title).empty())
            topicTitle += " " + singleLine(topic.title);
        appendSlides(slides, Kind::note, topicTitle, topic.details);
        for (const auto& subTopic : topic.subTopics) {
            std::string subTitle = singleLine(subTopic.title);
            if (subTitle.empty())
                subTitle = topicTitle;
            appendSlides(slides, Kind::note, subTitle, subTopic.details);
            for (const auto& scripture : subTopic.scriptures)
                appendSlides(slides, Kind::scripture, referenceWithVersion(scripture),
                             passageOrNote(scripture, m_verses));
        }
    }
    return slides;
}

std::string SermonPowerPointExporter::slideXml(const PowerPointSlide& slide) {
    std::string xml(declaration);
    xml += "<p:sld " + std::string(presentationNamespaces) + ">\n";
    xml += "  <p:cSld>\n";
    xml += background(slide.kind);
    xml += "    <p:spTree>\n";
    xml += "      <p:nvGrpSpPr>\n";
    xml += "        <p:cNvPr id=\"1\" name=\"\"/>\n";
    xml += "        <p:cNvGrpSpPr/>\n";
    xml += "        <p:nvPr/>\n";
    xml += "      </p:nvGrpSpPr>\n";
    xml += "      <p:grpSpPr>\n";
    xml += "        <a:xfrm>\n";
    xml += "          <a:off x=\"0\" y=\"0\"/>\n";
    xml += "          <a:ext cx=\"0\" cy=\"0\"/>\n";
    xml += "          <a:chOff x=\"0\" y=\"0\"/>\n";
    xml += "          <a:chExt cx=\"0\" cy=\"0\"/>\n";
    xml += "        </a:xfrm>\n";
    xml += "      </p:grpSpPr>\n";
    // A long title is set smaller (or shortened) rather than run into the body below its box.
    const SlideTitleFit title = SlideTitleFit::fit(slide.title, titleWidth, titleHeight);
    xml += textBox(2, "Title", 685800, 457200, titleWidth, titleHeight, {title.text}, title.size, true);
    if (!slide.body.empty()) {
        const int size = slide.kind == PowerPointSlide::Kind::scripture ? 2400 : 2200;
        xml += textBox(3, "Body", 914400, 1524000, 11500000, 5200000, splitLines(slide.body), size, false);
    }
    xml += "    </p:spTree>\n";
    xml += "  </p:cSld>\n";
    xml += "  <p:clrMapOvr>\n    <a:masterClrMapping/>\n  </p:clrMapOvr>\n";
    xml += "</p:sld>\n";
    return xml;
}

OfficePackage SermonPowerPointExporter::package(const model::SermonNote& sermon) const {
    const std::vector<PowerPointSlide> all = slides(sermon);
    const std::size_t count = all.size();

    std::string types(declaration);
    types += "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">\n"
             "  <Default Extension=\"rels\" "
             "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>\n"
             "  <Default Extension=\"xml\" ContentType=\"application/xml\"/>\n"
             "  <Override PartName=\"/docProps/app.xml\" "
             "ContentType=\"application/vnd.openxmlformats-officedocument.extended-properties+xml\"/>\n"
             "  <Override PartName=\"/docProps/core.xml\" "
             "ContentType=\"application/vnd.openxmlformats-package.core-properties+xml\"/>\n"
             "  <Override PartName=\"/ppt/presentation.xml\" "
             "ContentType=\"application/vnd.openxmlformats-officedocument.presentationml.presentation.main+xml\"/>\n"
             "  <Override PartName=\"/ppt/theme/theme1.xml\" "
             "ContentType=\"application/vnd.openxmlformats-officedocument.theme+xml\"/>\n";
    for (std::size_t n = 1; n <= count; ++n)
        types += "  <Override PartName=\"/ppt/slides/slide" + std::to_string(n) +
                 ".xml\" ContentType=\"application/vnd.openxmlformats-officedocument.presentationml.slide+xml\"/>\n";
    types += "</Types>\n";

    std::string app(declaration);
    app += "<Properties xmlns=\"http://schemas.openxmlformats.org/officeDocument/2006/extended-properties\" "
           "xmlns:vt=\"http://schemas.openxmlformats.org/officeDocument/2006/docPropsVTypes\">\n"
           "  <Application>Quillon</Application>\n"
           "  <PresentationFormat>Widescreen</PresentationFormat>\n"
           "  <Slides>" +
           std::to_string(count) +
           "</Slides>\n"
           "</Properties>\n";

    std::string presentation(declaration);
    presentation += "<p:presentation " + std::string(presentationNamespaces) + ">\n";
    presentation += "  <p:sldIdLst>\n";
    for (std::size_t n = 1; n <= count; ++n)
        presentation += "    <p:sldId id=\"" + std::to_string(255 + n) + "\" r:id=\"rId" + std::to_string(n) + "\"/>\n";
    presentation += "  </p:sldIdLst>\n";
    presentation += "  <p:sldSz cx=\"" + std::to_string(slideWidth) + "\" cy=\"" + std::to_string(slideHeight) +
                    "\" type=\"wide\"/>\n";
    presentation += "  <p:notesSz cx=\"6858000\" cy=\"9144000\"/>\n";
    presentation += "</p:presentation>\n";

    std::string presentationRelationships(declaration);
    presentationRelationships +=
        "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">\n";
    for (std::size_t n = 1; n <= count; ++n)
        presentationRelationships +=
            "  <Relationship Id=\"rId" + std::to_string(n) +
            "\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/slide\" "
            "Target=\"slides/slide" +
            std::to_string(n) + ".xml\"/>\n";
    presentationRelationships += "  <Relationship Id=\"rId" + std::to_string(count + 1) +
                                 "\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/"
                                 "theme\" Target=\"theme/theme1.xml\"/>\n";
    presentationRelationships += "</Relationships>\n";

    OfficePackage package;
    package.add("[Content_Types].xml", std::move(types));
    package.add("_rels/.rels", office::packageRelationships("ppt/presentation.xml"));
    package.add("docProps/app.xml", std::move(app));
    package.add("docProps/core.xml", office::coreProperties(all.front().title));
    package.add("ppt/presentation.xml", std::move(presentation));
    package.add("ppt/_rels/presentation.xml.rels", std::move(presentationRelationships));
    package.add("ppt/theme/theme1.xml", std::string(declaration) + std::string(theme));
    for (std::size_t n = 1; n <= count; ++n)
        package.add("ppt/slides/slide" + std::to_string(n) + ".xml", slideXml(all[n - 1]));
    for (std::size_t n = 1; n <= count; ++n)
        package.add("ppt/slides/_rels/slide" + std::to_string(n) + ".xml.rels",
                    std::string(declaration) + std::string(slideRelationships));
    return package;
}

std::string SermonPowerPointExporter::render(const model::SermonNote& sermon) const {
    return package(sermon).zipBytes(failureSentence());
}

} // namespace quillon::exports
