#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon check-quotes ID`: quotations in a sermon's notes that do not match the verses attached
/// beside them.
class CheckQuotesCommand final : public LibraryCommand {
public:
    std::string name() const override { return "check-quotes"; }
    std::string description() const override { return "Check a sermon's quotations against its attached verses"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::string m_id;
};

} // namespace quillon::cli
