#pragma once

#include "cli/Desk.h"

#include <optional>

namespace quillon::cli {

/// `quillon details ID ITEM (--file FILE|- | --text TEXT)`: the details under a topic or subtopic;
/// an RTF file is kept as their rich twin.
class DetailsCommand final : public DeskCommand {
public:
    std::string name() const override { return "details"; }
    std::string description() const override { return "Set the details of a topic or subtopic"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    std::string m_sermon;
    std::string m_item;
    std::optional<std::string> m_file;
    std::optional<std::string> m_text;
};

} // namespace quillon::cli
