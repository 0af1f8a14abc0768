#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon samples hide|show`: hides the shipped sample sermons from the list (remembered in the
/// preferences) or brings them back.
class SamplesCommand final : public LibraryCommand {
public:
    std::string name() const override { return "samples"; }
    std::string description() const override { return "Hide or show the sample sermons"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    CLI::App* m_hide = nullptr;
    CLI::App* m_show = nullptr;
};

} // namespace quillon::cli
