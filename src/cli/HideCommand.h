#pragma once

#include "cli/Desk.h"

namespace quillon::cli {

/// `quillon hide ID [--off]`: hides a sermon from the list, or shows it again.
class HideCommand final : public DeskCommand {
public:
    std::string name() const override { return "hide"; }
    std::string description() const override { return "Hide a sermon from the list (--off shows it again)"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    std::string m_sermon;
    bool m_off = false;
};

} // namespace quillon::cli
