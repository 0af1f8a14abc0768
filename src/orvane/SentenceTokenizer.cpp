#include "orvane/SentenceTokenizer.h"

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <memory>

namespace orvane::SentenceTokenizer {
namespace {

// Creating a break iterator loads its rules; cloning a prepared one is much cheaper.
std::unique_ptr<icu::BreakIterator> makeSentenceIterator() {
    static const std::unique_ptr<icu::BreakIterator> prototype = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> iterator{
            icu::BreakIterator::createSentenceInstance(icu::Locale::getEnglish(), status)};
        return U_SUCCESS(status) ? std::move(iterator) : nullptr;
    }();
    return prototype ? std::unique_ptr<icu::BreakIterator>(prototype->clone()) : nullptr;
}

std::string trimmedUTF8(const icu::UnicodeString& text, int32_t start, int32_t end) {
    while (start < end && u_isUWhiteSpace(text.char32At(start)))
        start = text.moveIndex32(start, 1);
    while (end > start) {
        const auto previous = text.moveIndex32(end, -1);
        if (!u_isUWhiteSpace(text.char32At(previous)))
            break;
        end = previous;
    }
    std::string result;
    text.tempSubStringBetween(start, end).toUTF8String(result);
    return result;
}

} // namespace

std::vector<std::string> sentences(std::string_view text) {
    std::vector<std::string> result;
    if (text.empty())
        return result;
    const auto unicode = icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    auto iterator = makeSentenceIterator();
    if (!iterator) {
        // Without sentence rules the whole text is one sentence rather than nothing.
        if (auto whole = trimmedUTF8(unicode, 0, unicode.length()); !whole.empty())
            result.push_back(std::move(whole));
        return result;
    }
    iterator->setText(unicode);
    int32_t start = iterator->first();
    for (int32_t end = iterator->next(); end != icu::BreakIterator::DONE; start = end, end = iterator->next())
        if (auto sentence = trimmedUTF8(unicode, start, end); !sentence.empty())
            result.push_back(std::move(sentence));
    return result;
}

} // namespace orvane::SentenceTokenizer
