#include "intelligence/ScriptureQuoteChecker.h"

#include "intelligence/FeatureText.h"

#include <unicode/regex.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <memory>

namespace quillon::intelligence {

std::string ScriptureQuoteChecker::Finding::message() const {
    std::string title = subtopicTitle;
    if (kind == Kind::translationNotInThisBuild)
        return "“" + title + "” quotes " + translation +
               ", which is not included in this edition, so the wording could not be checked.";
    return "“" + quotation + "” does not appear in the verses attached to “" + title + "”.";
}

std::vector<std::string> ScriptureQuoteChecker::quotations(const std::string& notes) {
    std::vector<std::string> found;
    UErrorCode status = U_ZERO_ERROR;
    static const icu::UnicodeString pattern = icu::UnicodeString::fromUTF8("[\"“]([^\"“”]{3,400})[\"”]");
    icu::UnicodeString text = icu::UnicodeString::fromUTF8(notes);
    std::unique_ptr<icu::RegexMatcher> matcher(new icu::RegexMatcher(pattern, text, 0, status));
    if (U_FAILURE(status))
        return found;
    while (matcher->find(status) && U_SUCCESS(status)) {
        std::string quotation;
        matcher->group(1, status).toUTF8String(quotation);
        found.push_back(std::move(quotation));
    }
    return found;
}

std::vector<std::string> ScriptureQuoteChecker::comparableWords(const std::string& text) {
    icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(text);
    unicode.findAndReplace(u"’", u"'").findAndReplace(u"‘", u"'");
    unicode.foldCase();
    std::vector<std::string> words;
    icu::UnicodeString word;
    auto flush = [&] {
        // Punctuation at the ends goes; inner apostrophes and hyphens ("don't", "well-being") stay.
        int32_t start = 0;
        int32_t end = word.length();
        while (start < end && (u_ispunct(word.char32At(start)) || u_isUWhiteSpace(word.char32At(start))))
            start = word.moveIndex32(start, 1);
        while (end > start && (u_ispunct(word.char32At(word.moveIndex32(end, -1))) ||
                               u_isUWhiteSpace(word.char32At(word.moveIndex32(end, -1)))))
            end = word.moveIndex32(end, -1);
        if (end > start) {
            std::string utf8;
            word.tempSubStringBetween(start, end).toUTF8String(utf8);
            words.push_back(std::move(utf8));
        }
        word.remove();
    };
    for (int32_t i = 0; i < unicode.length(); i = unicode.moveIndex32(i, 1)) {
        UChar32 c = unicode.char32At(i);
        if (u_isUWhiteSpace(c) || c == u'—' || c == u'–')
            flush();
        else
            word.append(c);
    }
    flush();
    return words;
}

std::vector<ScriptureQuoteChecker::Finding> ScriptureQuoteChecker::check(const model::SermonNote& sermon) const {
    std::vector<Finding> findings;
    for (const model::SermonTopic& topic : sermon.topics) {
        for (const model::SermonSubTopic& subTopic : topic.subTopics) {
            std::vector<std::string> quoted = quotations(subTopic.details);
            if (quoted.empty() || subTopic.scriptures.empty())
                continue;
            std::string title = featureText::trimmed(subTopic.title).empty() ? "this subtopic" : subTopic.title;
            std::optional<std::string> missingTranslation;
            std::vector<std::string> verseWords;
            for (const model::SermonScripture& scripture : subTopic.scriptures) {
                std::optional<std::string> text = m_verseText ? m_verseText(scripture) : std::nullopt;
                if (!text) {
                    missingTranslation = std::string(model::rawValue(scripture.version));
                    break;
                }
                std::vector<std::string> words = comparableWords(*text);
                verseWords.insert(verseWords.end(), words.begin(), words.end());
            }
            for (const std::string& quotation : quoted) {
                if (missingTranslation) {
                    findings.push_back(
                        {subTopic.id, title, quotation, Finding::Kind::translationNotInThisBuild, *missingTranslation});
                    continue;
                }
                std::vector<std::string> words = comparableWords(quotation);
                bool found = !words.empty() && std::search(verseWords.begin(), verseWords.end(), words.begin(),
                                                           words.end()) != verseWords.end();
                if (!found)
                    findings.push_back({subTopic.id, title, quotation, Finding::Kind::doesNotMatchAttachedVerses, {}});
            }
        }
    }
    return findings;
}

} // namespace quillon::intelligence
