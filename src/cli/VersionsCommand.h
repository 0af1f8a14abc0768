#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon versions ID` lists a sermon's snapshots, newest first, with how long ago each was
/// kept; `quillon versions restore ID SNAPSHOT` puts one back through the store's update, so the
/// state it replaces is kept as a snapshot in turn.
class VersionsCommand final : public LibraryCommand {
public:
    std::string name() const override { return "versions"; }
    std::string description() const override { return "List or restore earlier versions of a sermon"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    CLI::App* m_restore = nullptr;
    std::string m_id;
    std::string m_restoreId;
    std::string m_snapshotId;
};

} // namespace quillon::cli
