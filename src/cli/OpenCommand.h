#pragma once

#include "cli/Desk.h"

namespace quillon::cli {

/// `quillon open FILE.quillet`: takes a sermon document into the library (replacing the sermon it
/// is a copy of), selects it and remembers the file among the recent files.
class OpenCommand final : public DeskCommand {
public:
    std::string name() const override { return "open"; }
    std::string description() const override { return "Open a .quillet sermon document"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    std::string m_file;
};

} // namespace quillon::cli
