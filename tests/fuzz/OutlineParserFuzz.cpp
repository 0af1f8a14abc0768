// Plain text and Markdown become a draft outline line by line; any text gives a sermon, and every
// topic, sub-topic and scripture of it is numbered in order.
#include "FuzzInput.h"

#include "export/LibraryReferences.h"
#include "export/MarkdownReader.h"
#include "export/OutlineParser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillon::exports;
    using quillon::fuzz::require;
    const std::string_view text = quillon::fuzz::text(data, size);
    static const OutlineParser parser(libraryReferenceRecognizer());
    const auto sermon = parser.parse(text);
    for (std::size_t t = 0; t < sermon.topics.size(); ++t) {
        require(sermon.topics[t].sortOrder == static_cast<int>(t));
        for (std::size_t s = 0; s < sermon.topics[t].subTopics.size(); ++s)
            require(sermon.topics[t].subTopics[s].sortOrder == static_cast<int>(s));
    }
    parser.parse(MarkdownReader::read(text));
    return 0;
}
