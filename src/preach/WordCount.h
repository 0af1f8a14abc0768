#pragma once

#include <string_view>

namespace quillon::preach {

/// The number of words a speaker says: ICU word-boundary segments that hold letters, digits,
/// kana or ideographs (punctuation and blanks between them do not count). Invalid UTF-8 counts
/// what survives replacement. Safe to call from several threads.
int countSpokenWords(std::string_view text);

} // namespace quillon::preach
