#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon backup DIR [--yes]`: writes a backup folder of the whole library into DIR and prints
/// its location. On a nearly full volume it stops with the low-storage warning unless --yes.
class BackupCommand final : public LibraryCommand {
public:
    std::string name() const override { return "backup"; }
    std::string description() const override { return "Back up every sermon and cover image into a folder"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::string m_destination;
    bool m_yes = false;
};

} // namespace quillon::cli
