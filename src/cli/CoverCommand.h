#pragma once

#include "cli/Desk.h"

#include <optional>

namespace quillon::cli {

/// `quillon cover ID IMAGE.jpg` or `quillon cover ID --remove`: the sermon's cover image, kept
/// in the library's Media folder.
class CoverCommand final : public DeskCommand {
public:
    std::string name() const override { return "cover"; }
    std::string description() const override { return "Set or remove a sermon's cover image (JPEG)"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    std::string m_sermon;
    std::optional<std::string> m_image;
    bool m_remove = false;
};

} // namespace quillon::cli
