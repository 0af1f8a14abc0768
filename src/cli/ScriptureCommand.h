#pragma once

#include "cli/Desk.h"

#include <optional>

namespace quillon::cli {

/// `quillon scripture add|move|delete|version|highlight|break`: the passages attached to a
/// subtopic, addressed by their number in `show` ("2.1.3") or an id prefix.
class ScriptureCommand final : public DeskCommand {
public:
    std::string name() const override { return "scripture"; }
    std::string description() const override { return "Attach, move, delete or mark a scripture of a sermon"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    CLI::App* m_add = nullptr;
    CLI::App* m_move = nullptr;
    CLI::App* m_delete = nullptr;
    CLI::App* m_setVersion = nullptr;
    CLI::App* m_highlight = nullptr;
    CLI::App* m_break = nullptr;
    std::string m_sermon;
    std::string m_item;
    std::string m_reference;
    std::optional<std::string> m_version;
    std::size_t m_to = 1;
    std::optional<std::string> m_subtopic;
    int m_word = 0;
    std::optional<std::string> m_colour;
    bool m_off = false;
    bool m_yes = false;
};

} // namespace quillon::cli
