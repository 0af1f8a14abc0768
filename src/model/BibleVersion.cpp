#include "model/BibleVersion.h"

namespace quillon::model {

std::string_view rawValue(BibleVersion version) {
    switch (version) {
    case BibleVersion::kjv:
        return "KJV";
    case BibleVersion::asv:
        return "ASV";
    case BibleVersion::ylt:
        return "YLT";
    case BibleVersion::lsv:
        return "LSV";
    case BibleVersion::nlt:
        return "NLT";
    case BibleVersion::nkjv:
        return "NKJV";
    case BibleVersion::amp:
        return "AMP";
    } // no default case, so the compiler can warn about missing cases
    return "KJV";
}

std::optional<BibleVersion> bibleVersionFromRawValue(std::string_view text) {
    for (BibleVersion version : allBibleVersions)
        if (rawValue(version) == text)
            return version;
    return std::nullopt;
}

} // namespace quillon::model
