#include "cli/DeleteCommand.h"

#include "store/SermonTrashManager.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace quillon::cli {

void DeleteCommand::configure(CLI::App& command) {
    command.add_option("ID", m_id, "The sermon's id (or a unique prefix of it)")->required();
}

int DeleteCommand::run(CommandContext& context, Library& library) {
    const model::SermonNote sermon = library.find(m_id);
    store::SermonTrashManager trash(library.manager(), library.preferences());
    if (!trash.moveToTrash(sermon))
        throw UserError("Quillon could not move “" + sermon.title + "” to the trash.");
    const int days = trash.retentionDays();
    if (context.json) {
        context.out
            << nlohmann::ordered_json{{"id", sermon.id.text()}, {"title", sermon.title}, {"retentionDays", days}}.dump(
                   2)
            << "\n";
    } else {
        context.out << "Moved “" << sermon.title << "” to the trash. It stays there for " << days
                    << (days == 1 ? " day" : " days") << " before it is deleted permanently.\n";
    }
    return 0;
}

} // namespace quillon::cli
