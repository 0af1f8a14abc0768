#include "export/DocumentImporter.h"

#include "export/DocxReader.h"
#include "export/ExportError.h"
#include "export/MarkdownReader.h"
#include "export/RtfReader.h"
#include "export/TextDecoding.h"
#include "export/XmlText.h"
#include "platform/AtomicFile.h"

#include <algorithm>
#include <cctype>
#include <optional>

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

constexpr const char* tooLarge = "Quillon refused this document because it is too large to be a sermon.";
constexpr const char* notText = "Quillon refused this document because it is not text.";

/// RTF paragraphs as outline lines: italic paragraphs are quotations, and the bold "Manuscript"
/// heading our own export writes opens the manuscript.
std::vector<OutlineLine> rtfLines(std::string_view rtf) {
    std::vector<OutlineLine> lines;
    for (const RichParagraph& paragraph : RtfReader::read(rtf).paragraphs) {
        const auto all = [&](bool RichRun::*look) {
            return !paragraph.runs.empty() && std::all_of(paragraph.runs.begin(), paragraph.runs.end(),
                                                          [&](const RichRun& run) { return run.*look; });
        };
        OutlineLine::Hint hint = all(&RichRun::italic) ? OutlineLine::Hint::quotation : OutlineLine::Hint::none;
        std::string text = paragraph.plainText();
        if (all(&RichRun::bold) && text == "Manuscript")
            hint = OutlineLine::Hint::topic;
        for (std::string& line : splitLines(text))
            lines.push_back(OutlineLine{std::move(line), hint});
    }
    return lines;
}

} // namespace

std::size_t DocumentImporter::maximumBytes(std::string_view kind) {
    return kind == "docx" ? DocxReader::maximumFileBytes : maximumTextBytes;
}

bool DocumentImporter::isDocument(const std::filesystem::path& file) {
    const std::string extension = normalisedExtension(lowerExtension(file));
    return extension == "docx" || extension == "md" || extension == "txt" || extension == "rtf";
}

model::SermonNote DocumentImporter::importBytes(std::string_view bytes, std::string_view extension,
                                                std::string_view fallbackTitle, model::DateTime now) const {
    const std::string kind = normalisedExtension(extension);
    if (bytes.size() > maximumBytes(kind))
        throw ExportError(tooLarge);
    model::SermonNote sermon;
    if (kind == "docx") {
        sermon = m_parser.parse(DocxReader::read(bytes));
    } else if (kind == "md" || kind == "txt") {
        const std::optional<std::string> text = decodeText(bytes);
        if (!text)
            throw ExportError(notText);
        sermon = kind == "md" ? m_parser.parse(MarkdownReader::read(*text)) : m_parser.parse(*text);
    } else if (kind == "rtf") {
        if (bytes.starts_with("\xEF\xBB\xBF"))
            bytes.remove_prefix(3);
        if (!bytes.starts_with("{\\rtf"))
            throw ExportError("Quillon could not read this rich-text document.");
        sermon = m_parser.parse(rtfLines(bytes));
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
    if (size > maximumBytes(normalisedExtension(lowerExtension(file))))
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
