#pragma once

#include "intelligence/CommentaryLibrary.h"
#include "search/UnifiedSearch.h"

#include <memory>

namespace quillon::intelligence {

/// The commentaries group of the unified search: when the query reads as a reference, the notes
/// each installed commentary has on that passage, work by work in the library's order. Other
/// queries find nothing here (the commentaries are looked up by passage, not searched by word).
search::UnifiedSearch::Source commentarySearchSource(std::shared_ptr<const CommentaryLibrary> library);

} // namespace quillon::intelligence
