// Bible text files may be dropped into the user's folder or converted from any SWORD module. Every
// line the reader keeps is indexed, and each indexed word finds the verse it came from.
#include "FuzzInput.h"

#include "scripture/BibleLoader.h"
#include "scripture/WordIndex.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillon::scripture;
    using quillon::fuzz::require;
    auto verses = BibleLoader::parseVerseFile(quillon::fuzz::text(data, size));
    if (!verses || verses->empty())
        return 0;
    const auto index = WordIndex::build(std::make_shared<const VerseDictionary>(std::move(*verses)));
    require(index->verseCount() == index->verses().size());
    const auto& [key, verse] = index->entry(0);
    WordIndex::forEachNormalisedWord(verse.text, [&](std::string&& word) {
        const auto found = index->versesWith(word);
        require(std::find(found.begin(), found.end(), WordIndex::Ordinal{0}) != found.end());
    });
    if (verse.text.empty())
        return 0;
    const auto containing = index->versesContaining(verse.text);
    require(std::find(containing.begin(), containing.end(), WordIndex::Ordinal{0}) != containing.end());
    return 0;
}
