#include "cli/DetailsCommand.h"

#include "cli/ManuscriptInput.h"

namespace quillon::cli {

void DetailsCommand::configure(CLI::App& command) {
    command.add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    command.add_option("ITEM", m_item, "The topic (2) or subtopic (2.1) as show numbers it, or its id")->required();
    auto* file =
        command.add_option("--file", m_file, "Read the details from FILE (- for standard input; .rtf kept rich)")
            ->type_name("FILE");
    auto* text = command.add_option("--text", m_text, "The details as one argument");
    file->excludes(text);
}

int DetailsCommand::runOnDesk(CommandContext& context, Desk& desk) {
    const model::SermonNote& sermon = desk.sermon(m_sermon);
    const auto location = desk.item(sermon, m_item);
    if (location.type() == app::DeleteType::scripture)
        throw UserError("“" + m_item + "” is a scripture; details belong to a topic or subtopic.");
    if (!m_file && !m_text)
        throw UserError("Give the text with --file FILE (- for standard input) or --text TEXT.");
    const ManuscriptInput input = m_file ? readManuscriptInput(*m_file) : ManuscriptInput{*m_text, std::nullopt};
    desk.controller().setDetails(sermon.id, location.itemId(), input.text, input.rtf);
    return desk.report(context);
}

} // namespace quillon::cli
