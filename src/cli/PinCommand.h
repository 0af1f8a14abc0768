#pragma once

#include "cli/Desk.h"

namespace quillon::cli {

/// `quillon pin ID [--off]`: keeps a sermon at the top of the list, or lets it go.
class PinCommand final : public DeskCommand {
public:
    std::string name() const override { return "pin"; }
    std::string description() const override { return "Pin a sermon to the top of the list (--off unpins)"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    std::string m_sermon;
    bool m_off = false;
};

} // namespace quillon::cli
