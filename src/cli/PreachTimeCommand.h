#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon preach-time ID`: how long a sermon will take to preach, section by section.
class PreachTimeCommand final : public LibraryCommand {
public:
    std::string name() const override { return "preach-time"; }
    std::string description() const override { return "Estimate how long a sermon takes to preach"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::string m_id;
};

} // namespace quillon::cli
