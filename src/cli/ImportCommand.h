#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon import FILE [--mode skip|replace|copies]`: brings in a ".quillet" document or a
/// library archive; sermons already present are skipped, replaced or copied.
class ImportCommand final : public LibraryCommand {
public:
    std::string name() const override { return "import"; }
    std::string description() const override { return "Import a .quillet document or a .vrnsermons archive"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    int importDocument(CommandContext& context, Library& library);

    std::string m_file;
    std::string m_mode = "skip";
};

} // namespace quillon::cli
