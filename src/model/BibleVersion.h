#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quillon::model {

/// A Bible translation, identified in files by its code text ("KJV", …). The default is KJV.
enum class BibleVersion { kjv, asv, ylt, lsv, nlt, nkjv, amp };

inline constexpr std::array<BibleVersion, 7> allBibleVersions = {
    BibleVersion::kjv, BibleVersion::asv,  BibleVersion::ylt, BibleVersion::lsv,
    BibleVersion::nlt, BibleVersion::nkjv, BibleVersion::amp};

/// The code text: "KJV", "ASV", "YLT", "LSV", "NLT", "NKJV", "AMP".
std::string_view rawValue(BibleVersion version);
/// The version whose code text is exactly `text`; else nothing.
std::optional<BibleVersion> bibleVersionFromRawValue(std::string_view text);

} // namespace quillon::model
