#pragma once

#include "cli/Command.h"
#include "search/SearchGroup.h"

#include <string>
#include <vector>

namespace quillon::cli {

class Library;

/// `quillon search --in GROUPS QUERY`: the search field's grouped search over the Bible, the
/// commentaries and the sermons, printed group by group (or as JSON).
int runUnifiedSearch(CommandContext& context, Library& library, const std::string& query,
                     const std::vector<search::SearchGroup>& focus, int limitPerGroup);

/// The groups named in "scripture,sermons" or "all"; throws UserError for an unknown name.
std::vector<search::SearchGroup> searchGroupsNamed(const std::string& list);

} // namespace quillon::cli
