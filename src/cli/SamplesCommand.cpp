#include "cli/SamplesCommand.h"

#include <ostream>

namespace quillon::cli {

void SamplesCommand::configure(CLI::App& command) {
    command.require_subcommand(1);
    m_hide = command.add_subcommand("hide", "Hide the sample sermons");
    m_show = command.add_subcommand("show", "Show the sample sermons again");
}

int SamplesCommand::run(CommandContext& context, Library& library) {
    auto& manager = library.manager();
    if (m_hide->parsed()) {
        manager.hideSampleSermons();
        context.out << "The sample sermons are hidden.\n";
    } else {
        manager.showSampleSermons();
        context.out << "The sample sermons are shown.\n";
    }
    return 0;
}

} // namespace quillon::cli
