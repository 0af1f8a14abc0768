#include "cli/ExportVerses.h"

#include "export/BibleVerseText.h"
#include "scripture/BibleLoader.h"

namespace quillon::cli {

namespace {

/// Owns the loader for the run so the source's reference stays valid.
class LibraryVerses : public exports::VerseTextSource {
public:
    exports::PassageText passage(const model::SermonScripture& scripture) const override {
        return m_text.passage(scripture);
    }

private:
    mutable scripture::BibleLoader m_loader;
    exports::BibleVerseText m_text{m_loader};
};

} // namespace

std::unique_ptr<exports::VerseTextSource> exportVerseSource() {
    return std::make_unique<LibraryVerses>();
}

} // namespace quillon::cli
