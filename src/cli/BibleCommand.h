#pragma once

#include "cli/Command.h"

#include <string>

namespace quillon::cli {

/// `quillon bible QUERY`: the Bible search box; `bible versions` lists the texts and
/// `bible import-sword MODULE --as CODE` converts an installed SWORD module into the user's folder.
class BibleCommand : public Command {
public:
    std::string name() const override { return "bible"; }
    std::string description() const override { return "Look up or search the Bible"; }
    void configure(CLI::App& command) override;
    int execute(CommandContext& context) override;

private:
    int search(CommandContext& context);
    int listVersions(CommandContext& context);
    int importSword(CommandContext& context);

    CLI::App* m_versionsCommand = nullptr;
    CLI::App* m_importCommand = nullptr;
    std::string m_query;
    std::string m_versions;
    int m_limit = 50;
    std::string m_module;
    std::string m_code;
    std::string m_swordPath;
    std::string m_folder;
};

} // namespace quillon::cli
