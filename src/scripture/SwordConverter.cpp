#include "scripture/SwordConverter.h"

#include "orvane/AsciiText.h"
#include "platform/AtomicFile.h"
#include "scripture/BibleBook.h"

#include <markupfiltmgr.h>
#include <swmgr.h>
#include <swmodule.h>
#include <versekey.h>

#include <memory>

namespace quillon::scripture {

namespace {

using orvane::ascii::isSpace;

/// Removes every line the module centres (`<l sID… type="x-center"/>` to its `<l eID…/>`).
void eraseCenteredLines(std::string& raw) {
    static const std::string centred = "type=\"x-center\"/>";
    for (std::size_t at = raw.find(centred); at != std::string::npos; at = raw.find(centred, at)) {
        std::size_t start = raw.rfind("<l ", at);
        std::size_t end = raw.find(centred, at + centred.size());
        if (start == std::string::npos || end == std::string::npos)
            break;
        raw.erase(start, end + centred.size() - start);
    }
}

/// Where a word element or a supplied word ends and the next begins with no space between them
/// ("all</w><transChange type="added">thy</transChange><w>precepts</w>"), rendering would glue
/// the words ("allthy"); the printed text has a space there. An empty word element (`<w …/>`, an
/// untranslated Greek article) renders nothing, so it needs none.
void separateAdjacentWords(std::string& raw) {
    std::string result;
    result.reserve(raw.size() + raw.size() / 16);
    for (std::size_t at = 0; at < raw.size();) {
        std::size_t close = raw.find("</", at);
        if (close == std::string::npos) {
            result.append(raw, at, std::string::npos);
            break;
        }
        std::size_t closeEnd = raw.find('>', close);
        if (closeEnd == std::string::npos) {
            result.append(raw, at, std::string::npos);
            break;
        }
        result.append(raw, at, closeEnd + 1 - at);
        at = closeEnd + 1;
        const std::string_view tag = std::string_view(raw).substr(close, closeEnd + 1 - close);
        if (tag != "</w>" && tag != "</transChange>")
            continue;
        const std::string_view next = std::string_view(raw).substr(at);
        if (!next.starts_with("<w") && !next.starts_with("<transChange"))
            continue;
        std::size_t nextEnd = next.find('>');
        if (nextEnd != std::string_view::npos && nextEnd > 0 && next[nextEnd - 1] == '/')
            continue;
        result.push_back(' ');
    }
    raw = std::move(result);
}

/// Old e-texts write typography on a typewriter: `quoted' for ‘quoted’ and "--" for a dash.
/// A module that opens its quotations with backticks gets the marks they stand for, so its
/// apostrophes match the other texts' ’ too.
void setTypewriterTypography(std::string& text) {
    if (text.find('`') == std::string::npos)
        return;
    std::string result;
    result.reserve(text.size() + text.size() / 32);
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '`')
            result += "‘";
        else if (text[at] == '\'')
            result += "’";
        else if (text.compare(at, 2, "--") == 0) {
            result += "—";
            ++at;
        } else
            result.push_back(text[at]);
    }
    text = std::move(result);
}

/// Prepares a verse's raw markup for rendering. Psalm superscriptions and acrostic letters are
/// headings in English verse numbering, not verse text, so titles go. Some modules tag a supplied
/// word right before the next one with no space between them (ASV Heb 3:1
/// "<transChange>even</transChange><w>Jesus</w>"); rendering would glue the words.
/// Colophons (the notes after an epistle on where it was written) are not verse text either.
std::string preparedMarkup(std::string raw) {
    for (std::size_t at = raw.find("<title"); at != std::string::npos; at = raw.find("<title", at)) {
        std::size_t tagEnd = raw.find('>', at);
        if (tagEnd == std::string::npos)
            break;
        std::size_t end = raw[tagEnd - 1] == '/' ? tagEnd + 1 : raw.find("</title>", tagEnd);
        if (end == std::string::npos)
            break;
        if (raw[tagEnd - 1] != '/')
            end += std::string("</title>").size();
        raw.erase(at, end - at);
    }
    // The KJV's closing notes on who wrote an epistle from where are not scripture text.
    for (std::size_t at = raw.find("type=\"colophon\""); at != std::string::npos; at = raw.find("type=\"colophon\"")) {
        std::size_t start = raw.rfind("<div", at);
        std::size_t end = raw.find("</div>", at);
        if (start == std::string::npos || end == std::string::npos)
            break;
        raw.erase(start, end + std::string("</div>").size() - start);
    }
    // The ASV's acrostic letters of Psalm 119 ("ב BETH.") sit, centred, after the verse before
    // their stanza: headings, not text.
    eraseCenteredLines(raw);
    // The ASV opens each "Selah" with a bracket it never closes.
    static const std::string selah = "type=\"selah\"/>";
    for (std::size_t at = raw.find(selah); at != std::string::npos; at = raw.find(selah, at + 1))
        if (raw.compare(at + selah.size(), 1, "[") == 0)
            raw.erase(at + selah.size(), 1);
    separateAdjacentWords(raw);
    return raw;
}

} // namespace

SwordConverter::SwordConverter(std::optional<std::filesystem::path> swordPath) : m_swordPath(std::move(swordPath)) {}

std::string SwordConverter::cleanedText(std::string_view rendered) {
    std::string text;
    text.reserve(rendered.size());
    bool pendingSpace = false;
    for (std::size_t i = 0; i < rendered.size(); ++i) {
        char c = rendered[i];
        if (rendered.compare(i, 2, "\xC2\xB6") == 0) { // pilcrow
            ++i;
            pendingSpace = true;
            continue;
        }
        if (isSpace(c) || c == '|') { // "|" separates the reference from the text in our files
            pendingSpace = true;
            continue;
        }
        if (pendingSpace && !text.empty())
            text.push_back(' ');
        pendingSpace = false;
        text.push_back(c);
    }
    return text;
}

std::string SwordConverter::convert(const std::string& moduleName, SwordConversion& report) const {
    auto manager = m_swordPath ? std::make_unique<sword::SWMgr>(m_swordPath->string().c_str(), true,
                                                                new sword::MarkupFilterMgr(sword::FMT_PLAIN))
                               : std::make_unique<sword::SWMgr>(new sword::MarkupFilterMgr(sword::FMT_PLAIN));
    for (const char* option : {"Strong's Numbers", "Morphological Tags", "Footnotes", "Headings", "Cross-references",
                               "Lemmas", "Words of Christ in Red", "Hebrew Vowel Points", "Hebrew Cantillation",
                               "Greek Accents", "Textual Variants", "Glosses", "Morpheme Segmentation"})
        manager->setGlobalOption(option, "Off");
    sword::SWModule* module = manager->getModule(moduleName.c_str());
    if (!module)
        throw SwordConversionError("Quillon could not find the SWORD module “" + moduleName + "”.");
    std::unique_ptr<sword::SWKey> key(module->createKey());
    auto* verseKey = dynamic_cast<sword::VerseKey*>(key.get());
    if (!verseKey)
        throw SwordConversionError("The SWORD module “" + moduleName + "” is not a Bible.");
    // Quillon's verse keys follow the King James versification whatever the module uses.
    verseKey->setVersificationSystem("KJV");
    verseKey->setIntros(false);
    verseKey->setAutoNormalize(true);

    std::string output;
    output.reserve(5 * 1024 * 1024);
    report = SwordConversion{};
    for (const BibleBook& book : allBibleBooks()) {
        for (int chapter = 1; chapter <= book.chapterCount(); ++chapter) {
            for (int verse = 1; verse <= book.verseCount(chapter); ++verse) {
                verseKey->setTestament(book.id <= 39 ? 1 : 2);
                verseKey->setBook(static_cast<char>(book.id <= 39 ? book.id : book.id - 39));
                verseKey->setChapter(chapter);
                verseKey->setVerse(verse);
                module->setKey(*verseKey);
                std::string raw = preparedMarkup(module->getRawEntry());
                std::string text = cleanedText(module->renderText(raw.c_str()).c_str());
                std::string reference = book.abbreviation + " " + std::to_string(chapter) + ":" + std::to_string(verse);
                if (text.empty()) {
                    report.missingVerses.push_back(reference);
                    continue;
                }
                output += reference;
                output += '|';
                output += text;
                output += '\n';
                ++report.verseCount;
            }
        }
    }
    setTypewriterTypography(output);
    return output;
}

SwordConversion SwordConverter::convertToFile(const std::string& moduleName,
                                              const std::filesystem::path& target) const {
    SwordConversion report;
    std::string text = convert(moduleName, report);
    if (report.verseCount == 0)
        throw SwordConversionError("The SWORD module “" + moduleName + "” holds no verse text.");
    platform::writeFileAtomically(target, text);
    return report;
}

} // namespace quillon::scripture
