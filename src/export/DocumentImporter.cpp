#include "export/DocumentImporter.h"

#include "export/DocxReader.h"
#include "export/ExportError.h"
#include "export/RtfReader.h"
#include "export/XmlText.h"
#include "platform/AtomicFile.h"

#include <algorithm>
#include <cctype>
#include <regex>

namespace quillon::exports {

namespace {

std::string lowerExtension(const std::filesystem::path& file) {
    std::string extension = file.extension().string();
    if (!extension.empty() && extension.front() == '.')
        extension.erase(0, 1);
    for (char& c : extension)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension;
}

std::string normalisedExtension(std::string_view extension) {
    std::string lower(extension);
    for (char& c : lower)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (lower == "markdown")
        return "md";
    if (lower == "text")
        return "txt";
    return lower;
}

/// Inline Markdown reduced to its text: emphasis markers, links and backslash escapes.
std::string markdownInline(std::string text) {
    static const std::regex link(R"(!?\[([^\]]*)\]\([^)]*\))");
    text = std::regex_replace(text, link, "$1");
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\\' && i + 1 < text.size() && std::ispunct(static_cast<unsigned char>(text[i + 1]))) {
            plain += text[++i];
        } else if ((c == '*' || c == '_') && i + 1 < text.size() && text[i + 1] == c) {
            ++i;
        } else if (c == '`') {
            continue;
        } else {
            plain += c;
        }
    }
    return plain;
}

} // namespace

bool DocumentImporter::isDocument(const std::filesystem::path& file) {
    const std::string extension = normalisedExtension(lowerExtension(file));
    return extension == "docx" || extension == "md" || extension == "txt" || extension == "rtf";
}

std::vector<OutlineLine> DocumentImporter::markdownLines(std::string_view markdown) {
    static const std::regex heading(R"(^\s{0,3}(#{1,6})\s+(.*?)\s*#*\s*$)");
    static const std::regex rule(R"(^\s{0,3}([-*_]\s*){3,}$)");
    static const std::regex bullet(R"(^\s*[-*+]\s+(.*)$)");
    std::vector<OutlineLine> lines;
    bool sawTitle = false;
    for (const std::string& raw : splitLines(validUtf8(markdown))) {
        std::smatch match;
        if (std::regex_match(raw, match, heading)) {
            const std::size_t level = match[1].length();
            OutlineLine::Hint hint = OutlineLine::Hint::subTopic;
            if (level == 1)
                hint = sawTitle ? OutlineLine::Hint::topic : OutlineLine::Hint::title;
            else if (level == 2)
                hint = OutlineLine::Hint::topic;
            sawTitle = true;
            lines.push_back(OutlineLine{markdownInline(match[2].str()), hint});
            continue;
        }
        if (std::regex_match(raw, rule))
            continue;
        std::string_view rest = raw;
        while (!rest.empty() && rest.front() == ' ')
            rest.remove_prefix(1);
        if (!rest.empty() && rest.front() == '>') {
            rest.remove_prefix(1);
            lines.push_back(OutlineLine{markdownInline(std::string(rest)), OutlineLine::Hint::quotation});
            continue;
        }
        if (std::regex_match(raw, match, bullet)) {
            lines.push_back(OutlineLine{markdownInline(match[1].str()), OutlineLine::Hint::none});
            continue;
        }
        lines.push_back(OutlineLine{markdownInline(raw), OutlineLine::Hint::none});
    }
    return lines;
}

model::SermonNote DocumentImporter::importBytes(std::string_view bytes, std::string_view extension,
                                                std::string_view fallbackTitle, model::DateTime now) const {
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    const std::string kind = normalisedExtension(extension);
    model::SermonNote sermon;
    if (kind == "docx") {
        sermon = m_parser.parse(DocxReader::read(bytes));
    } else if (kind == "md") {
        sermon = m_parser.parse(markdownLines(bytes));
    } else if (kind == "txt") {
        sermon = m_parser.parse(bytes);
    } else if (kind == "rtf") {
        if (!bytes.starts_with("{\\rtf"))
            throw ExportError("Quillon could not read this rich-text document.");
        std::vector<OutlineLine> lines;
        for (const RichParagraph& paragraph : RtfReader::read(bytes).paragraphs) {
            const bool italic = !paragraph.runs.empty() && std::all_of(paragraph.runs.begin(), paragraph.runs.end(),
                                                                       [](const RichRun& run) { return run.italic; });
            for (std::string& line : splitLines(paragraph.plainText()))
                lines.push_back(
                    OutlineLine{std::move(line), italic ? OutlineLine::Hint::quotation : OutlineLine::Hint::none});
        }
        sermon = m_parser.parse(lines);
    } else {
        throw ExportError("Quillon cannot import files of this kind.");
    }
    sermon.id = model::Uuid::random();
    if (sermon.title.empty())
        sermon.title = fallbackTitle.empty() ? std::string("Untitled Sermon") : std::string(fallbackTitle);
    if (sermon.date == model::DateTime{})
        sermon.date = now;
    sermon.createdAt = now;
    sermon.modifiedAt = now;
    return sermon;
}

model::SermonNote DocumentImporter::importFile(const std::filesystem::path& file, model::DateTime now) const {
    if (!isDocument(file))
        throw ExportError("Quillon cannot import files of this kind.");
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    if (error)
        throw ExportError("Quillon could not open “" + file.filename().string() + "”.");
    if (size > DocxReader::maximumFileBytes)
        throw ExportError("Quillon refused “" + file.filename().string() + "” because it is too large to be a sermon.");
    std::string bytes;
    try {
        bytes = platform::readFile(file);
    } catch (const platform::FileError&) {
        throw ExportError("Quillon could not open “" + file.filename().string() + "”.");
    }
    return importBytes(bytes, lowerExtension(file), file.stem().string(), now);
}

} // namespace quillon::exports
