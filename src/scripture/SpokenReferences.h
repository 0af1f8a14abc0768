#pragma once

#include "scripture/ScriptureReference.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillon::scripture {

/// A reference said aloud in a transcript, and where it was said.
struct SpokenReference {
    ScriptureReference reference;
    /// Byte offset of its first word in the transcript.
    std::size_t offset = 0;
    /// Bytes from its first word to the end of its last.
    std::size_t length = 0;

    bool operator==(const SpokenReference&) const = default;
};

/// The references a transcript names, in the order said: numbers spoken as words or written as
/// digits ("John chapter three verse sixteen", "first corinthians thirteen four", "Romans 8:28",
/// "psalm one hundred nineteen"), ranges with "through", "to" or a hyphen. Book names must be said
/// in full (or by an alias); a book that is also an everyday word ("mark", "acts", "job", "john")
/// needs "chapter" or a verse after it, so "mark two things" is not Mark 2. Verses beyond the
/// chapter make the words not a reference: a recogniser's slip must not attach a passage that
/// does not exist. Nor is a book swapped for one that sounds alike ("john" chapter 30 for Job 30):
/// a number misheard ("thirty" for "three") makes the same impossible reference. Never throws.
std::vector<SpokenReference> spokenReferences(std::string_view transcript);

} // namespace quillon::scripture
