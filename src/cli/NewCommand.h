#pragma once

#include "cli/LibraryCommand.h"

#include <optional>

namespace quillon::cli {

/// `quillon new --title T [--speaker S] [--date YYYY-MM-DD] [--series S] [--template T]`: adds a sermon, empty or
/// with a template's starting outline, and prints its id.
class NewCommand final : public LibraryCommand {
public:
    std::string name() const override { return "new"; }
    std::string description() const override { return "Create a sermon and print its id"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::string m_title;
    std::string m_speaker;
    std::optional<std::string> m_date;
    std::optional<std::string> m_series;
    std::string m_template = "blank";
};

} // namespace quillon::cli
