#pragma once

#include "cli/Desk.h"

namespace quillon::cli {

/// `quillon restore BACKUP_DIR [--yes]`: after asking, brings the backup's sermons into the library
/// (a restored sermon replaces the one with the same id; everything else stays) and copies cover
/// images that are missing.
class RestoreCommand final : public DeskCommand {
public:
    std::string name() const override { return "restore"; }
    std::string description() const override { return "Restore sermons and cover images from a backup folder"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    std::string m_backup;
    bool m_yes = false;
};

} // namespace quillon::cli
