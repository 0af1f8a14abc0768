#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon list [--all]`: the sermons, pinned first, then the most recently changed.
class ListCommand final : public LibraryCommand {
public:
    std::string name() const override { return "list"; }
    std::string description() const override { return "List the sermons (id, last change, pinned, title)"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    bool m_includeHidden = false;
};

} // namespace quillon::cli
