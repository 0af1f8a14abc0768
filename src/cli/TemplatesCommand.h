#pragma once

#include "cli/Command.h"

namespace quillon::cli {

/// `quillon templates`: the starting outlines `new --template` offers, with what each gives.
class TemplatesCommand final : public Command {
public:
    std::string name() const override { return "templates"; }
    std::string description() const override { return "List the starting outlines for new sermons"; }
    void configure(CLI::App&) override {}
    int execute(CommandContext& context) override;
};

/// One line per template: its name for --template, its display name and its description.
std::string templateList();

} // namespace quillon::cli
