#pragma once

#include "cli/Desk.h"

namespace quillon::cli {

/// `quillon selftest`: the diagnostics checks, one result line each; exit 1 when any needs attention.
class SelftestCommand final : public DeskCommand {
public:
    std::string name() const override { return "selftest"; }
    std::string description() const override { return "Check the import parser, the Bible loader and archive export"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;
};

} // namespace quillon::cli
