#pragma once

#include "cli/LibraryCommand.h"

#include <string>
#include <vector>

namespace quillon::cli {

/// `quillon search QUERY [--limit N]`: the sermons that best match the query, with the correction notice first when
/// the query had to be corrected. With `--in GROUPS` (or `--in all`), the grouped search over the Bible, the
/// commentaries and the sermons instead, at most N hits a group.
class SearchCommand final : public LibraryCommand {
public:
    static constexpr int defaultLimit = 20;

    std::string name() const override { return "search"; }
    std::string description() const override {
        return "Search your sermons (titles, notes, outline, scripture references, tags)";
    }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::vector<std::string> m_words;
    int m_limit = defaultLimit;
    std::string m_groups;
};

} // namespace quillon::cli
