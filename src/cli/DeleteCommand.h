#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon delete ID`: moves the sermon to the trash.
class DeleteCommand final : public LibraryCommand {
public:
    std::string name() const override { return "delete"; }
    std::string description() const override { return "Move a sermon to the trash"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::string m_id;
};

} // namespace quillon::cli
