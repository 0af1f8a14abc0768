#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon show ID`: the sermon's metadata, outline (numbered 2, 2.1, 2.1.3 as the editing
/// commands address items) and manuscript; with --json exactly the
/// JSON stored for it.
class ShowCommand final : public LibraryCommand {
public:
    std::string name() const override { return "show"; }
    std::string description() const override { return "Show one sermon (with --json: its stored JSON)"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::string m_id;
};

} // namespace quillon::cli
