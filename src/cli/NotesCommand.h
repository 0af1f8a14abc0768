#pragma once

#include "cli/Desk.h"

#include <optional>

namespace quillon::cli {

/// `quillon notes ID (--file FILE|- | --text TEXT)`: the sermon's manuscript; an RTF file is kept
/// as its rich twin.
class NotesCommand final : public DeskCommand {
public:
    std::string name() const override { return "notes"; }
    std::string description() const override { return "Set a sermon's notes (its manuscript)"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    std::string m_sermon;
    std::optional<std::string> m_file;
    std::optional<std::string> m_text;
};

} // namespace quillon::cli
