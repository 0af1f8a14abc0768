#pragma once

#include "cli/Desk.h"

#include <vector>

namespace quillon::cli {

/// `quillon delete ID... [--yes]`: moves one sermon or a batch to the trash after asking.
class DeleteCommand final : public DeskCommand {
public:
    std::string name() const override { return "delete"; }
    std::string description() const override { return "Move one or more sermons to the trash"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    std::vector<std::string> m_ids;
    bool m_yes = false;
};

} // namespace quillon::cli
