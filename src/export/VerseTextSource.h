#pragma once

#include "model/SermonScripture.h"

#include <string>

namespace quillon::exports {

/// What the Bible library holds for one attached passage.
struct PassageText {
    /// False when the passage's own version is not in the library.
    bool versionAvailable = false;
    /// The verses joined by spaces; empty when none was found (unknown book, verse out of range).
    std::string text;
};

/// Where exporters get verse text; the Bible library in the program, a fixed table in tests.
class VerseTextSource {
public:
    virtual ~VerseTextSource() = default;
    virtual PassageText passage(const model::SermonScripture& scripture) const = 0;
};

/// A source without any Bible: every version is unavailable.
class NoVerseText : public VerseTextSource {
public:
    PassageText passage(const model::SermonScripture&) const override { return {}; }
};

} // namespace quillon::exports
