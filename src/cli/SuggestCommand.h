#pragma once

#include "cli/LibraryCommand.h"

namespace quillon::cli {

/// `quillon suggest KIND ID [--room R] [--section N]`: one of the generation features on a sermon,
/// saying whether a model wrote it or the model-free fallback did.
class SuggestCommand final : public LibraryCommand {
public:
    std::string name() const override { return "suggest"; }
    std::string description() const override {
        return "Suggest questions, an outline, an article, series, tags, highlights, titles, listener questions, a "
               "media package or a rewrite for a sermon";
    }
    void configure(CLI::App& command) override;

protected:
    int run(CommandContext& context, Library& library) override;

private:
    std::string m_kind;
    std::string m_id;
    std::string m_room = "largeSanctuary";
    int m_section = 1;
};

} // namespace quillon::cli
