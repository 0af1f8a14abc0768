#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon sync`: re-reads the library folder once, merges newer sermons and prints the status
/// line (with how many sermons a sync client is still downloading).
class SyncCommand final : public LibraryCommand {
public:
    std::string name() const override { return "sync"; }
    std::string description() const override { return "Merge changes from the sync folder once and print the status"; }
    void configure(CLI::App&) override {}

protected:
    int run(CommandContext& context, Library& library) override;
};

} // namespace quillon::cli
