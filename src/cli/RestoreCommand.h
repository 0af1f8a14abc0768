#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon restore BACKUP_DIR`: brings the backup's sermons into the library (a restored sermon
/// replaces the one with the same id; everything else stays) and copies cover images that are missing.
class RestoreCommand final : public LibraryCommand {
public:
    std::string name() const override { return "restore"; }
    std::string description() const override { return "Restore sermons and cover images from a backup folder"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::string m_backup;
};

} // namespace quillon::cli
