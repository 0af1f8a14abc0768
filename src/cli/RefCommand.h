#pragma once

#include "cli/Command.h"

#include <string>

namespace quillon::cli {

/// `quillon ref [--explain] TEXT`: shows how a typed reference is read (book, chapter, verses) and,
/// with --explain, what the normalising step did to the text first.
class RefCommand : public Command {
public:
    std::string name() const override { return "ref"; }
    std::string description() const override { return "Parse a scripture reference"; }
    void configure(CLI::App& command) override;
    int execute(CommandContext& context) override;

private:
    std::string m_text;
    bool m_explain = false;
};

} // namespace quillon::cli
