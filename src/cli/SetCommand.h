#pragma once

#include "cli/Desk.h"

#include <optional>

namespace quillon::cli {

/// `quillon set ID [--title T] [--speaker S] [--series S] [--venue V] [--date YYYY-MM-DD]
/// [--tags a,b] [--colour #RRGGBB]`: changes the sermon's details in one step; an empty series,
/// venue or colour removes it.
class SetCommand final : public DeskCommand {
public:
    std::string name() const override { return "set"; }
    std::string description() const override {
        return "Change a sermon's title, speaker, series, venue, date, tags or colour";
    }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    std::string m_sermon;
    app::SermonMetadataChange m_change;
    std::optional<std::string> m_date;
    std::optional<std::string> m_tags;
};

} // namespace quillon::cli
