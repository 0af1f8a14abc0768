#include "preach/WordCount.h"

#include <unicode/brkiter.h>
#include <unicode/unistr.h>

#include <memory>

namespace quillon::preach {

int countSpokenWords(std::string_view text) {
    if (text.empty())
        return 0;
    // Building a word iterator costs far more than counting a section; keep one per thread.
    thread_local std::unique_ptr<icu::BreakIterator> words = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> iterator(
            icu::BreakIterator::createWordInstance(icu::Locale::getRoot(), status));
        return U_SUCCESS(status) ? std::move(iterator) : nullptr;
    }();
    icu::UnicodeString unicode =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    if (!words) {
        // Without ICU's data the blanks between words are the next best rule.
        int count = 0;
        bool inWord = false;
        for (char c : text) {
            bool blank = c == ' ' || c == '\n' || c == '\t' || c == '\r';
            count += !blank && !inWord;
            inWord = !blank;
        }
        return count;
    }
    words->setText(unicode);
    int count = 0;
    for (int32_t end = words->next(); end != icu::BreakIterator::DONE; end = words->next())
        if (words->getRuleStatus() >= UBRK_WORD_NONE_LIMIT)
            ++count;
    return count;
}

} // namespace quillon::preach
