#include "cli/SetCommand.h"

#include "cli/TextInput.h"

namespace quillon::cli {

void SetCommand::configure(CLI::App& command) {
    command.add_option("ID", m_sermon, "The sermon's id (or a unique beginning of it)")->required();
    command.add_option("--title", m_change.title, "The sermon's title");
    command.add_option("--speaker", m_change.speaker, "Who preaches it");
    command.add_option("--series", m_change.series, "The series it belongs to (empty removes it)");
    command.add_option("--venue", m_change.venue, "Where it is preached (empty removes it)");
    command.add_option("--date", m_date, "When it is preached")->type_name("YYYY-MM-DD");
    command.add_option("--tags", m_tags, "Its tags, separated by commas (empty removes them all)")->type_name("a,b");
    command.add_option("--colour,--color", m_change.colour, "Its text colour (empty removes it)")->type_name("#RRGGBB");
}

int SetCommand::runOnDesk(CommandContext& context, Desk& desk) {
    const model::Uuid sermonId = desk.sermon(m_sermon).id;
    app::SermonMetadataChange change = m_change;
    if (m_date)
        change.date = parseDay(*m_date);
    if (m_tags) {
        std::vector<std::string> tags;
        std::size_t start = 0;
        while (start <= m_tags->size()) {
            const std::size_t comma = std::min(m_tags->find(',', start), m_tags->size());
            tags.push_back(m_tags->substr(start, comma - start));
            start = comma + 1;
        }
        change.tags = std::move(tags);
    }
    const bool any =
        change.title || change.speaker || change.series || change.venue || change.date || change.tags || change.colour;
    if (!any)
        throw UserError("Say what to change: --title, --speaker, --series, --venue, --date, --tags or --colour.");
    desk.controller().setMetadata(sermonId, change);
    return desk.report(context);
}

} // namespace quillon::cli
