#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon ask QUESTION`: an answer from the preacher's own sermons and Bible text, each point
/// traced to its source.
class AskCommand final : public LibraryCommand {
public:
    std::string name() const override { return "ask"; }
    std::string description() const override { return "Ask what your sermons and Bible text say"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::string m_question;
};

} // namespace quillon::cli
