#include "cli/Commands.h"
#include "cli/MeshCommand.h"

#include "cli/AskCommand.h"
#include "cli/BackupCommand.h"
#include "cli/BibleCommand.h"
#include "cli/CheckQuotesCommand.h"
#include "cli/CommentaryCommand.h"
#include "cli/CoverCommand.h"
#include "cli/DeleteCommand.h"
#include "cli/DetailsCommand.h"
#include "cli/DocumentCommand.h"
#include "cli/DuplicateCommand.h"
#include "cli/ExportArchiveCommand.h"
#include "cli/ExportCommand.h"
#include "cli/HideCommand.h"
#include "cli/ImportCommand.h"
#include "cli/ListCommand.h"
#include "cli/ModelStatusCommand.h"
#include "cli/NewCommand.h"
#include "cli/NotesCommand.h"
#include "cli/OpenCommand.h"
#include "cli/PaceCommand.h"
#include "cli/PinCommand.h"
#include "cli/PreachTimeCommand.h"
#include "cli/RefCommand.h"
#include "cli/RestoreCommand.h"
#include "cli/SamplesCommand.h"
#include "cli/ScriptureCommand.h"
#include "cli/SearchCommand.h"
#include "cli/SelftestCommand.h"
#include "cli/SetCommand.h"
#include "cli/ShowCommand.h"
#include "cli/SubtopicCommand.h"
#include "cli/SuggestCommand.h"
#include "cli/SyncCommand.h"
#include "cli/TagCommand.h"
#include "cli/TemplatesCommand.h"
#include "cli/TopicCommand.h"
#include "cli/TranscribeCommand.h"
#include "cli/TrashCommand.h"
#include "cli/VersionsCommand.h"

namespace quillon::cli {

std::vector<std::unique_ptr<Command>> allCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    // One line per command; keep related commands together.
    commands.push_back(std::make_unique<ListCommand>());
    commands.push_back(std::make_unique<NewCommand>());
    commands.push_back(std::make_unique<ShowCommand>());
    commands.push_back(std::make_unique<TemplatesCommand>());
    // Editing a sermon through the desk's controller.
    commands.push_back(std::make_unique<TopicCommand>());
    commands.push_back(std::make_unique<SubtopicCommand>());
    commands.push_back(std::make_unique<ScriptureCommand>());
    commands.push_back(std::make_unique<DetailsCommand>());
    commands.push_back(std::make_unique<NotesCommand>());
    commands.push_back(std::make_unique<SetCommand>());
    commands.push_back(std::make_unique<CoverCommand>());
    commands.push_back(std::make_unique<PinCommand>());
    commands.push_back(std::make_unique<HideCommand>());
    commands.push_back(std::make_unique<TagCommand>());
    commands.push_back(std::make_unique<OpenCommand>());
    commands.push_back(std::make_unique<DuplicateCommand>());
    commands.push_back(std::make_unique<ImportCommand>());
    commands.push_back(std::make_unique<ExportArchiveCommand>());
    commands.push_back(std::make_unique<DocumentCommand>());
    commands.push_back(std::make_unique<SyncCommand>());
    commands.push_back(std::make_unique<ModelStatusCommand>());
    commands.push_back(std::make_unique<CommentaryCommand>());
    commands.push_back(std::make_unique<AskCommand>());
    commands.push_back(std::make_unique<CheckQuotesCommand>());
    commands.push_back(std::make_unique<PreachTimeCommand>());
    commands.push_back(std::make_unique<PaceCommand>());
    commands.push_back(std::make_unique<SuggestCommand>());
    commands.push_back(std::make_unique<ExportCommand>());
    commands.push_back(std::make_unique<SelftestCommand>());
    commands.push_back(std::make_unique<RefCommand>());
    commands.push_back(std::make_unique<BibleCommand>());
    commands.push_back(std::make_unique<MeshCommand>());
    commands.push_back(std::make_unique<DeleteCommand>());
    commands.push_back(std::make_unique<TrashCommand>());
    commands.push_back(std::make_unique<VersionsCommand>());
    commands.push_back(std::make_unique<BackupCommand>());
    commands.push_back(std::make_unique<RestoreCommand>());
    commands.push_back(std::make_unique<SamplesCommand>());
    commands.push_back(std::make_unique<SearchCommand>());
    commands.push_back(std::make_unique<TranscribeCommand>());
    return commands;
}

} // namespace quillon::cli
