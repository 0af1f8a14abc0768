#pragma once

#include "cli/Command.h"
#include "cli/Library.h"

namespace quillon::cli {

/// Base of every command that works on the sermon library: it opens and loads the library (from
/// --library or the preferences) and hands it to run(). Derive, implement run(), done.
class LibraryCommand : public Command {
public:
    int execute(CommandContext& context) final;

protected:
    virtual int run(CommandContext& context, Library& library) = 0;
};

} // namespace quillon::cli
