#pragma once

#include "cli/LibraryCommand.h"

#include <string>

namespace quillon::cli {

/// `quillon export ID --format docx|pptx|md|rtf|pdf [-o PATH]`: writes one sermon as a document
/// and prints where it went.
class ExportCommand : public LibraryCommand {
public:
    std::string name() const override { return "export"; }
    std::string description() const override {
        return "Write a sermon as a Word, PowerPoint, Markdown, RTF or PDF file";
    }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::string m_id;
    std::string m_format;
    std::string m_output;
};

} // namespace quillon::cli
