#pragma once

#include "cli/Desk.h"

namespace quillon::cli {

/// `quillon import FILE [--mode skip|replace|copies]`: brings in a ".quillet" document or a
/// library archive (sermons already present are skipped, replaced or copied), or a Word,
/// Markdown, RTF or text outline as a new draft. Prints the controller's message.
class ImportCommand final : public DeskCommand {
public:
    std::string name() const override { return "import"; }
    std::string description() const override { return "Import a .quillet document or a .vrnsermons archive"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    std::string m_file;
    std::string m_mode = "skip";
};

} // namespace quillon::cli
