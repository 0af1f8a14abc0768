#include "cli/NewCommand.h"

#include "cli/TemplatesCommand.h"

#include "cli/TextInput.h"
#include "store/SermonBackupManager.h"
#include "store/SermonTemplate.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

void NewCommand::configure(CLI::App& command) {
    command.add_option("--title", m_title, "The sermon's title")->required();
    command.add_option("--speaker", m_speaker, "Who preaches it");
    command.add_option("--date", m_date, "When it is preached (default: today)")->type_name("YYYY-MM-DD");
    command.add_option("--series", m_series, "The series it belongs to");
    command.add_option("--template", m_template, "A starting outline")
        ->check(CLI::IsMember({"blank", "expository", "topical", "textual", "seriesKickoff"}));
    command.footer("Templates (also listed by “quillon templates”):\n" + templateList());
}

int NewCommand::run(CommandContext& context, Library& library) {
    requireText(m_title, "title");
    if (trimmed(m_title).empty())
        throw UserError("A sermon needs a title.");
    requireText(m_speaker, "speaker");
    if (m_series)
        requireText(*m_series, "series");

    const auto now = model::toDateTime(platform::SystemClock::shared().now());
    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = m_title;
    sermon.date = m_date ? parseDay(*m_date) : std::chrono::floor<std::chrono::days>(now);
    sermon.speaker = m_speaker;
    sermon.series = m_series;
    sermon.createdAt = sermon.modifiedAt = now;
    sermon.topics =
        store::outline(store::sermonTemplateFromRawValue(m_template).value_or(store::SermonTemplate::blank));

    auto& manager = library.manager();
    if (!manager.add(sermon))
        throw UserError("Quillon could not save the sermon “" + m_title + "”.");
    manager.setCurrentSermonId(sermon.id);

    // Creating stays allowed on a nearly full disk; the note warns that a later save may fail.
    store::SermonBackupManager space([&library] { return library.storage().mediaFolder(); }, library.preferences());
    if (auto available = space.freeSpaceWarning(library.storage().sermonsFolder()))
        context.err << store::lowStorageForNewSermonMessage(*available) << "\n";

    if (context.json)
        context.out << nlohmann::ordered_json{{"id", sermon.id.text()}}.dump(2) << "\n";
    else
        context.out << sermon.id.text() << "\n";
    return 0;
}

} // namespace quillon::cli
