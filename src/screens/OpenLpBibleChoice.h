#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::screens {

/// The Bible among OpenLP's `bibles` closest to the announced version ("KJV"), by this rule:
///  1. a Bible that is the announced version: its name is the code ("KJV", "kjv"), holds the code
///     as a word ("KJV 1769", "English (KJV)") or spells the version out ("King James Version");
///     a name that could be two versions counts as the longer ("New King James" is NKJV, not KJV);
///  2. else a Bible that is the version's nearest kin, in this order of kinship:
///     KJV: NKJV, ASV, YLT · NKJV: KJV, ASV, NLT · ASV: KJV, AMP, NKJV · YLT: LSV, KJV, ASV ·
///     LSV: YLT, ASV, KJV · NLT: AMP, NKJV, KJV · AMP: ASV, NKJV, NLT
///     (revisions first, then the translations they revise or that share their method);
///  3. else nothing: the Bible OpenLP has selected stays, since any other guess is no closer.
/// Among Bibles that are the same version, the first listed wins.
std::optional<std::string> closestOpenLpBible(std::string_view announcedVersion,
                                              const std::vector<std::string>& bibles);

} // namespace quillon::screens
