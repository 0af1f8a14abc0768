#pragma once

#include "cli/LibraryCommand.h"

#include <optional>

namespace quillon::cli {

/// `quillon export-archive [-o FILE]`: writes every sermon into one ".vrnsermons" archive and
/// prints where it went (default: "Quillon.vrnsermons" in the temporary folder).
class ExportArchiveCommand final : public LibraryCommand {
public:
    std::string name() const override { return "export-archive"; }
    std::string description() const override { return "Write the whole library as a .vrnsermons archive"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::optional<std::string> m_output;
};

} // namespace quillon::cli
