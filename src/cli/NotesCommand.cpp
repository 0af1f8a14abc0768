#include "cli/NotesCommand.h"

#include "cli/ManuscriptInput.h"

namespace quillon::cli {

void NotesCommand::configure(CLI::App& command) {
    command.add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    auto* file =
        command.add_option("--file", m_file, "Read the notes from FILE (- for standard input; .rtf kept rich)")
            ->type_name("FILE");
    auto* text = command.add_option("--text", m_text, "The notes as one argument");
    file->excludes(text);
}

int NotesCommand::runOnDesk(CommandContext& context, Desk& desk) {
    const model::Uuid sermonId = desk.sermon(m_sermon).id;
    if (!m_file && !m_text)
        throw UserError("Give the text with --file FILE (- for standard input) or --text TEXT.");
    const ManuscriptInput input = m_file ? readManuscriptInput(*m_file) : ManuscriptInput{*m_text, std::nullopt};
    desk.controller().setNotes(sermonId, input.text, input.rtf);
    return desk.report(context);
}

} // namespace quillon::cli
