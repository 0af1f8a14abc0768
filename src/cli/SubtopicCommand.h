#pragma once

#include "cli/Desk.h"

#include <optional>

namespace quillon::cli {

/// `quillon subtopic add|rename|move|delete`: the sub-points under a topic, addressed by their
/// number in `show` ("2.1") or an id prefix.
class SubtopicCommand final : public DeskCommand {
public:
    std::string name() const override { return "subtopic"; }
    std::string description() const override { return "Add, rename, move or delete a subtopic of a sermon"; }
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
    std::optional<std::string> m_topic;
    bool m_yes = false;
};

} // namespace quillon::cli
