#pragma once

#include "export/VerseTextSource.h"
#include "scripture/BibleLoader.h"

namespace quillon::exports {

/// Verse text from the Bible library, in each passage's own version.
class BibleVerseText : public VerseTextSource {
public:
    explicit BibleVerseText(scripture::BibleLoader& loader) : m_loader(loader) {}

    PassageText passage(const model::SermonScripture& scripture) const override;

private:
    scripture::BibleLoader& m_loader;
};

} // namespace quillon::exports
