#pragma once

#include "cli/Desk.h"

#include <vector>

namespace quillon::cli {

/// `quillon tag TAG ID...`: adds one tag to every sermon named.
class TagCommand final : public DeskCommand {
public:
    std::string name() const override { return "tag"; }
    std::string description() const override { return "Add a tag to one or more sermons"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    std::string m_tag;
    std::vector<std::string> m_ids;
};

} // namespace quillon::cli
