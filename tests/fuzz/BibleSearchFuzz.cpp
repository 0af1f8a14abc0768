// The Bible search box takes any text: references, topics, quoted phrases, AND/OR/NOT and -terms.
// It searches the shipped King James text and must answer within the limit, never fail.
#include "FuzzInput.h"

#include "scripture/BibleLoader.h"

namespace {

quillon::scripture::BibleLoader& loader() {
    static quillon::scripture::BibleLoader shared(
        quillon::scripture::BibleResourceBundle({std::filesystem::path(QUILLON_FUZZ_RESOURCES) / "bibles"}));
    return shared;
}

} // namespace

// Reading and indexing two whole Bibles takes seconds under the sanitizers; it is not the search.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    for (auto version : {quillon::model::BibleVersion::kjv, quillon::model::BibleVersion::asv})
        loader().wordIndex(version);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using quillon::model::BibleVersion;
    // The first byte picks the versions, as the search sheet's toggles do.
    const std::vector<BibleVersion> versions =
        size > 0 && (data[0] & 1) ? std::vector{BibleVersion::kjv, BibleVersion::asv} : std::vector<BibleVersion>{};
    const auto results = loader().search(quillon::fuzz::text(data, size), versions, 25);
    quillon::fuzz::require(results.size() <= 25);
    return 0;
}
