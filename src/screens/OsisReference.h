#pragma once

#include "mesh/MeshScriptureReference.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillon::screens {

/// The OSIS form Bible programs exchange over BibleSync for a printed reference: "John 3:16" is
/// "John.3.16", "John 3:16-18" is "John.3.16-John.3.18", "Psalms 23" is "Ps.23". Nothing when the
/// text is not a reference.
std::optional<std::string> osisReference(std::string_view printed);

/// The first passage a BibleSync reference names: OSIS ("1Cor.13.4-1Cor.13.7", "Ps.23", a list
/// "Rom.8.28;Rom.8.31" gives Romans 8:28) or, failing that, a reference as people write it
/// ("John 3:16"). Nothing when neither reads as a reference of the book table.
std::optional<mesh::MeshScriptureReference> referenceFromOsis(std::string_view text);

} // namespace quillon::screens
