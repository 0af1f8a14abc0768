#include "cli/LibraryCommand.h"

namespace quillon::cli {

int LibraryCommand::execute(CommandContext& context) {
    Library library(context);
    return run(context, library);
}

} // namespace quillon::cli
