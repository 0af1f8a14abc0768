#pragma once

#include "cli/Command.h"
#include "screens/ScreenOutlets.h"

#include <cstdint>

namespace quillon::cli {

/// `quillon mesh serve|pairings|unpair`: the scripture mesh from the command line.
class MeshCommand : public Command {
public:
    std::string name() const override { return "mesh"; }
    std::string description() const override { return "Share scripture with Brenmoor and Calvane on this network"; }
    void configure(CLI::App& command) override;
    int execute(CommandContext& context) override;

private:
    int serve(CommandContext& context);
    int pairings(CommandContext& context);
    int unpair(CommandContext& context);
    int openLpLogin(CommandContext& context);

    CLI::App* m_serve = nullptr;
    CLI::App* m_pairings = nullptr;
    CLI::App* m_unpair = nullptr;
    int m_port = -1;
    int m_tlsPort = -1;
    std::string m_calvane;
    bool m_noDiscovery = false;
    std::string m_peer;
    std::string m_sermon;
    screens::ScreenOutletChoices m_outlets;
    CLI::App* m_openLpLogin = nullptr;
    std::string m_openLpUser;
};

} // namespace quillon::cli
