#pragma once

#include "cli/Command.h"

namespace quillon::cli {

/// `quillon commentary REF [--question Q]`: what the bundled commentators say about a passage.
class CommentaryCommand final : public Command {
public:
    std::string name() const override { return "commentary"; }
    std::string description() const override { return "Ask the bundled commentaries about a passage"; }
    void configure(CLI::App& command) override;
    int execute(CommandContext& context) override;

private:
    std::string m_reference;
    std::string m_question;
};

} // namespace quillon::cli
