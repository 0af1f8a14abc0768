#pragma once

#include "cli/Desk.h"

namespace quillon::cli {

/// `quillon topic add|rename|move|delete`: a sermon's main points, addressed by their number in
/// `show` ("2") or an id prefix.
class TopicCommand final : public DeskCommand {
public:
    std::string name() const override { return "topic"; }
    std::string description() const override { return "Add, rename, move or delete a topic of a sermon"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    CLI::App* m_add = nullptr;
    CLI::App* m_rename = nullptr;
    CLI::App* m_move = nullptr;
    CLI::App* m_delete = nullptr;
    std::string m_sermon;
    std::string m_item;
    std::string m_title;
    std::size_t m_to = 1;
    bool m_yes = false;
};

} // namespace quillon::cli
