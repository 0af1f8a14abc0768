#include "export/DocxReader.h"

#include "export/ExportError.h"

#include <pugixml.hpp>
#include <spdlog/spdlog.h>
#include <zip.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <string>

namespace quillon::exports {

namespace {

constexpr const char* unreadable = "Quillon could not read this Word document.";
constexpr const char* outsidePackage =
    "Quillon refused this Word document because it holds entries that point outside the document (\"../\").";
constexpr const char* expandsTooFar =
    "Quillon refused this Word document because it expands to far more data than a sermon document holds.";
constexpr const char* declaresEntities = "Quillon refused this Word document because its XML declares entities.";

struct ArchiveCloser {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct FileCloser {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

bool escapesPackage(std::string_view name) {
    if (name.empty() || name.front() == '/' || name.front() == '\\')
        return true;
    if (name.size() > 1 && name[1] == ':')
        return true; // a drive letter
    std::size_t start = 0;
    while (start <= name.size()) {
        std::size_t end = name.find_first_of("/\\", start);
        if (end == std::string_view::npos)
            end = name.size();
        if (name.substr(start, end - start) == "..")
            return true;
        start = end + 1;
    }
    return false;
}

/// Reads one entry, stopping as soon as it passes `limit` whatever its header claims.
std::string readEntry(zip_t* archive, zip_int64_t index, std::size_t limit) {
    std::unique_ptr<zip_file_t, FileCloser> file(zip_fopen_index(archive, static_cast<zip_uint64_t>(index), 0));
    if (!file)
        throw ExportError(unreadable);
    std::string bytes;
    char chunk[65536];
    for (;;) {
        const zip_int64_t read = zip_fread(file.get(), chunk, sizeof chunk);
        if (read < 0)
            throw ExportError(unreadable);
        if (read == 0)
            break;
        bytes.append(chunk, static_cast<std::size_t>(read));
        if (bytes.size() > limit)
            throw ExportError(expandsTooFar);
    }
    return bytes;
}

bool declaresDoctype(std::string_view xml) {
    // Entity declarations live in a document type declaration; a document body never needs one.
    std::string head(xml.substr(0, std::min<std::size_t>(xml.size(), 1 << 20)));
    for (char& c : head)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return head.find("<!DOCTYPE") != std::string::npos || head.find("<!ENTITY") != std::string::npos ||
           xml.find("<!ENTITY") != std::string_view::npos;
}

bool isOn(const pugi::xml_node& property) {
    if (!property)
        return false;
    const std::string value = property.attribute("w:val").as_string("1");
    return value != "0" && value != "false" && value != "none";
}

OutlineLine::Hint styleHint(const pugi::xml_node& paragraph) {
    std::string style = paragraph.child("w:pPr").child("w:pStyle").attribute("w:val").as_string();
    style.erase(std::remove(style.begin(), style.end(), ' '), style.end());
    for (char& c : style)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (style == "title")
        return OutlineLine::Hint::title;
    if (style == "heading1")
        return OutlineLine::Hint::topic;
    if (style.starts_with("heading") && style.size() == 8 && style[7] >= '2' && style[7] <= '9')
        return OutlineLine::Hint::subTopic;
    return OutlineLine::Hint::none;
}

/// The node after `node` in document order when `node`'s own children are skipped, staying
/// inside `root`. Walking this way needs no recursion, so nesting depth costs no stack.
pugi::xml_node nextSkippingChildren(pugi::xml_node node, const pugi::xml_node& root) {
    while (node && node != root) {
        if (pugi::xml_node sibling = node.next_sibling())
            return sibling;
        node = node.parent();
    }
    return {};
}

/// Elements that only wrap runs: their runs are the paragraph's text.
bool wrapsRuns(std::string_view name) {
    static constexpr std::string_view wrappers[] = {"w:hyperlink", "w:ins",       "w:smartTag", "w:sdt", "w:sdtContent",
                                                    "w:fldSimple", "w:customXml", "w:dir",      "w:bdo", "w:moveTo"};
    return std::find(std::begin(wrappers), std::end(wrappers), name) != std::end(wrappers);
}

/// The text one run contributes. White space is the run's own: "w:t" elements that hold only a
/// space (Word and pandoc write one between differently formatted words) are kept.
void appendRunText(const pugi::xml_node& run, std::string& text, bool& allItalic, bool& anyText) {
    const bool italic = isOn(run.child("w:rPr").child("w:i"));
    for (pugi::xml_node part : run.children()) {
        const std::string_view partName = part.name();
        if (partName == "w:t") {
            const std::string_view value = part.text().get();
            text += value;
            if (!value.empty()) {
                anyText = true;
                allItalic = allItalic && italic;
            }
        } else if (partName == "w:tab" || partName == "w:ptab") {
            text += '\t';
        } else if (partName == "w:br" || partName == "w:cr") {
            text += '\n';
        } else if (partName == "w:noBreakHyphen") {
            text += '-';
        }
        // w:softHyphen shows nothing unless a line breaks there; w:delText is deleted text.
    }
}

void collectRuns(const pugi::xml_node& paragraph, std::string& text, bool& allItalic, bool& anyText) {
    pugi::xml_node node = paragraph.first_child();
    while (node) {
        const std::string_view name = node.name();
        if (name == "w:r")
            appendRunText(node, text, allItalic, anyText);
        if (wrapsRuns(name) && node.first_child())
            node = node.first_child();
        else
            node = nextSkippingChildren(node, paragraph);
    }
}

void appendParagraph(const pugi::xml_node& paragraph, std::vector<OutlineLine>& lines) {
    std::string text;
    bool allItalic = true;
    bool anyText = false;
    collectRuns(paragraph, text, allItalic, anyText);
    OutlineLine::Hint hint = styleHint(paragraph);
    if (hint == OutlineLine::Hint::none && anyText && allItalic)
        hint = OutlineLine::Hint::quotation;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find('\n', start);
        lines.push_back(OutlineLine{text.substr(start, end - start), hint});
        if (end == std::string::npos)
            break;
        start = end + 1;
    }
}

/// The heading our own Word export puts over its table of passages: it names the table, which
/// is left out, so it is left out with it.
bool headsScriptureIndex(const pugi::xml_node& paragraph) {
    const pugi::xml_node next = paragraph.next_sibling();
    if (std::string_view(next.name()) != "w:tbl")
        return false;
    std::string text;
    bool allItalic = true;
    bool anyText = false;
    collectRuns(paragraph, text, allItalic, anyText);
    return text == "Scripture Index";
}

void collectParagraphs(const pugi::xml_node& body, std::vector<OutlineLine>& lines) {
    pugi::xml_node node = body.first_child();
    while (node) {
        const std::string_view name = node.name();
        if (name == "w:p" && !headsScriptureIndex(node))
            appendParagraph(node, lines);
        // Content controls wrap paragraphs, at any depth. Tables are left out: in a sermon
        // document they are indexes that repeat the outline.
        if ((name == "w:sdt" || name == "w:sdtContent" || name == "w:customXml") && node.first_child())
            node = node.first_child();
        else
            node = nextSkippingChildren(node, body);
    }
}

} // namespace

std::vector<OutlineLine> DocxReader::read(std::string_view packageBytes) {
    if (packageBytes.size() > maximumFileBytes)
        throw ExportError(expandsTooFar);
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_create(packageBytes.data(), packageBytes.size(), 0, &error);
    if (!source)
        throw ExportError(unreadable);
    std::unique_ptr<zip_t, ArchiveCloser> archive(zip_open_from_source(source, ZIP_RDONLY, &error));
    if (!archive) {
        zip_source_free(source);
        spdlog::warn("Import: not a ZIP package: {}", zip_error_strerror(&error));
        zip_error_fini(&error);
        throw ExportError(unreadable);
    }

    const zip_int64_t entries = zip_get_num_entries(archive.get(), 0);
    if (entries < 0 || static_cast<std::size_t>(entries) > maximumEntries)
        throw ExportError(expandsTooFar);
    zip_int64_t documentIndex = -1;
    zip_uint64_t declaredTotal = 0;
    for (zip_int64_t i = 0; i < entries; ++i) {
        zip_stat_t stat;
        if (zip_stat_index(archive.get(), static_cast<zip_uint64_t>(i), 0, &stat) != 0 || !stat.name)
            throw ExportError(unreadable);
        const std::string_view name = stat.name;
        if (escapesPackage(name))
            throw ExportError(outsidePackage);
        if (stat.valid & ZIP_STAT_SIZE) {
            declaredTotal += stat.size;
            if (declaredTotal > maximumFileBytes * 4)
                throw ExportError(expandsTooFar);
            if ((stat.valid & ZIP_STAT_COMP_SIZE) && stat.size > (1u << 20) &&
                stat.size / std::max<zip_uint64_t>(stat.comp_size, 1) > maximumExpansion)
                throw ExportError(expandsTooFar);
        }
        if (name == "word/document.xml")
            documentIndex = i;
    }
    if (documentIndex < 0)
        throw ExportError(unreadable);

    const std::string xml = readEntry(archive.get(), documentIndex, maximumDocumentBytes);
    if (declaresDoctype(xml))
        throw ExportError(declaresEntities);

    pugi::xml_document document;
    // No DOCTYPE processing and no custom entities: pugixml only knows the five predefined ones.
    // A text element holding only white space is kept: it is the space between two words.
    const unsigned options = (pugi::parse_default & ~pugi::parse_doctype) | pugi::parse_ws_pcdata_single;
    const pugi::xml_parse_result parsed = document.load_buffer(xml.data(), xml.size(), options, pugi::encoding_utf8);
    if (!parsed)
        throw ExportError(unreadable);
    const pugi::xml_node body = document.child("w:document").child("w:body");
    if (!body)
        throw ExportError(unreadable);
    std::vector<OutlineLine> lines;
    collectParagraphs(body, lines);
    return lines;
}

} // namespace quillon::exports
