#pragma once

#include "cli/Command.h"

namespace quillon::cli {

/// `quillon model status`: the readiness of each backend kind, with the reason when one cannot be used.
class ModelStatusCommand final : public Command {
public:
    std::string name() const override { return "model"; }
    std::string description() const override { return "Show whether the local language model can be used"; }
    void configure(CLI::App& command) override;
    int execute(CommandContext& context) override;
};

} // namespace quillon::cli
