#include "cli/Cli.h"

#include "cli/Commands.h"

#include <spdlog/spdlog.h>

#include <algorithm>
#include <iostream>

namespace quillon::cli {

int runCli(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    CLI::App app{"Quillon: a sermon-preparation desk.", "quillon"};
    app.require_subcommand(1);
    app.set_help_all_flag("--help-all", "Show help for every command");

    std::string library;
    bool json = false;
    app.add_option("--library", library, "Storage root for this run")->type_name("DIR");
    app.add_flag("--json", json, "Machine-readable output on stdout");
    // Global options may follow the command too (`quillon show ID --json`).
    app.fallthrough();

    auto commands = allCommands();
    std::vector<std::pair<CLI::App*, Command*>> parsers;
    for (auto& command : commands) {
        CLI::App* sub = app.add_subcommand(command->name(), command->description());
        command->configure(*sub);
        parsers.emplace_back(sub, command.get());
    }

    // CLI11 parses the last argument first.
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    try {
        app.parse(reversed);
    } catch (const CLI::CallForHelp&) {
        out << app.help();
        return 0;
    } catch (const CLI::CallForAllHelp&) {
        out << app.help("", CLI::AppFormatMode::All);
        return 0;
    } catch (const CLI::ParseError& error) {
        // Help asked of a subcommand surfaces here too.
        if (error.get_exit_code() == 0) {
            for (auto& [sub, command] : parsers)
                if (sub->parsed()) {
                    out << sub->help();
                    return 0;
                }
            out << app.help();
            return 0;
        }
        err << "quillon: " << error.what() << "\n";
        return 1;
    }

    CommandContext context{out, err, std::nullopt, json};
    if (!library.empty())
        context.library = std::filesystem::path(library);

    for (auto& [sub, command] : parsers) {
        if (!sub->parsed())
            continue;
        try {
            return command->execute(context);
        } catch (const UserError& error) {
            err << error.what() << "\n";
            return 1;
        } catch (const std::exception& error) {
            // A failure we did not anticipate still ends in a sentence, never an abort.
            spdlog::error("{} failed: {}", command->name(), error.what());
            err << "Quillon could not finish “" << command->name() << "”: " << error.what() << "\n";
            return 1;
        }
    }
    return 1;
}

} // namespace quillon::cli
