#pragma once

#include "cli/LibraryCommand.h"

#include <optional>

namespace quillon::cli {

/// `quillon document ID [-o DIR]`: writes the sermon as a ".quillet" document named after its
/// title and prints where it went (default: the temporary folder).
class DocumentCommand final : public LibraryCommand {
public:
    std::string name() const override { return "document"; }
    std::string description() const override { return "Write one sermon as a .quillet document"; }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::string m_id;
    std::optional<std::string> m_folder;
};

} // namespace quillon::cli
