#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon trash list|restore ID|delete ID|purge`: what is in the trash, bringing a sermon back,
/// deleting one for good, and removing everything past the retention period.
class TrashCommand final : public LibraryCommand {
public:
    std::string name() const override { return "trash"; }
    std::string description() const override { return "List, restore, delete or purge trashed sermons"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    CLI::App* m_list = nullptr;
    CLI::App* m_restore = nullptr;
    CLI::App* m_delete = nullptr;
    CLI::App* m_purge = nullptr;
    std::string m_id;
};

} // namespace quillon::cli
