#include "export/ExportFilename.h"

#include "export/XmlText.h"
#include "model/SermonDocument.h"
#include "platform/AtomicFile.h"

#include <unicode/brkiter.h>
#include <unicode/unistr.h>

#include <memory>

namespace quillon::exports {

namespace {

bool isControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

std::string_view trimmed(std::string_view text) {
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

/// Cuts after `limit` user-perceived characters so an accent or an emoji sequence is never split.
std::string truncatedToCharacters(const std::string& text, std::size_t limit) {
    icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(text);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status))
        return text.substr(0, limit);
    characters->setText(unicode);
    std::size_t count = 0;
    int32_t end = characters->first();
    for (int32_t next = characters->next(); next != icu::BreakIterator::DONE; next = characters->next()) {
        if (++count > limit)
            break;
        end = next;
    }
    if (count <= limit)
        return text;
    std::string result;
    unicode.tempSubString(0, end).toUTF8String(result);
    return result;
}

/// Cuts at the last character boundary that keeps the UTF-8 text within `limit` bytes.
std::string truncatedToBytes(const std::string& text, std::size_t limit) {
    if (text.size() <= limit)
        return text;
    icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(text);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    std::string result;
    if (U_FAILURE(status))
        return result;
    characters->setText(unicode);
    int32_t end = characters->first();
    for (int32_t next = characters->next(); next != icu::BreakIterator::DONE; next = characters->next()) {
        std::string candidate;
        unicode.tempSubString(end, next - end).toUTF8String(candidate);
        if (result.size() + candidate.size() > limit)
            break;
        result += candidate;
        end = next;
    }
    return result;
}

} // namespace

std::string ExportFilename::make(std::string_view title, std::string_view extension) {
    // The document rule (ten characters to hyphens, trimmed) first, so a trailing line end is
    // dropped instead of becoming a hyphen; control characters inside the title go the same way.
    std::string safe = model::safeFileName(validUtf8(title));
    for (char& c : safe)
        if (isControl(c))
            c = '-';
    std::string name(trimmed(safe));
    // A leading dot would hide the file from the user's file manager.
    while (!name.empty() && name.front() == '.')
        name.erase(0, 1);
    const std::size_t byteLimit = maximumBytes - 1 - extension.size();
    name = std::string(trimmed(truncatedToBytes(truncatedToCharacters(name, characterLimit), byteLimit)));
    if (name.empty())
        name = fallback;
    return name + "." + std::string(extension);
}

} // namespace quillon::exports
