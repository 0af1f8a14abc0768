#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon duplicate ID`: adds a copy of the sermon (title + " Copy") and prints the copy's id.
class DuplicateCommand final : public LibraryCommand {
public:
    std::string name() const override { return "duplicate"; }
    std::string description() const override { return "Add a copy of a sermon and print its id"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::string m_id;
};

} // namespace quillon::cli
