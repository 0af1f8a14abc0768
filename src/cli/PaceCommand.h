#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon pace record ID MINUTES`: how long a sermon really took, so estimates learn the
/// preacher's own pace.
class PaceCommand final : public LibraryCommand {
public:
    std::string name() const override { return "pace"; }
    std::string description() const override { return "Record how long a sermon actually took to preach"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::string m_id;
    double m_minutes = 0;
};

} // namespace quillon::cli
