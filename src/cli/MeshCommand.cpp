#include "cli/MeshCommand.h"

#include "cli/Library.h"
#include "cli/MeshSermonTools.h"
#include "cli/MeshServeSession.h"
#include "mesh/ScriptureBridge.h"
#include "mesh/SuiteMeshPairingStore.h"
#include "model/DateTime.h"
#include "platform/Paths.h"
#include "platform/Preferences.h"
#include "platform/SecretStore.h"
#include "screens/OpenLpOptions.h"

#include <nlohmann/json.hpp>

#include <csignal>
#include <iostream>

namespace quillon::cli {

namespace {

struct PairingFiles {
    /// `preferences` must outlive the files; the serving desk passes its library's own, so that one
    /// object writes the preferences file.
    explicit PairingFiles(platform::Preferences& preferences) : store{secrets, preferences} {}

    platform::SecretStore secrets{
        mesh::SuiteMeshPairingStore::serviceName(),
        platform::SecretStore::defaultFallbackFile(mesh::SuiteMeshPairingStore::serviceName())};
    mesh::SuiteMeshPairingStore store;
};

} // namespace

void MeshCommand::configure(CLI::App& command) {
    command.require_subcommand(1);
    m_serve = command.add_subcommand("serve", "Run the scripture bridge and read commands on stdin "
                                              "(announce REF [VERSION], clear, open ID, pair PEER, peers, status, "
                                              "quit)");
    m_serve->add_option("--port", m_port, "Plain listening port (default: vantalink.port, else any)")
        ->check(CLI::Range(0, 65535));
    m_serve->add_option("--tls-port", m_tlsPort, "Secure listening port (default: vantalink.tlsPort, else any)")
        ->check(CLI::Range(0, 65535));
    m_serve->add_option("--calvane", m_calvane, "Calvane's bridge as host:port, without discovery");
    m_serve->add_flag("--no-discovery", m_noDiscovery, "Do not publish or browse with Avahi");
    m_serve->add_option("--sermon", m_sermon, "The sermon open on the desk (its id or a prefix), for peers asking")
        ->type_name("ID");
    m_serve->add_flag("--live-page", m_outlets.livePage,
                      "Serve the live passage page for streaming software (default: Quillon.screens.livePage)");
    m_serve->add_option("--live-page-address", m_outlets.livePageAddress,
                        "Address the page listens on (default 127.0.0.1; any other needs the URL's token)");
    m_serve->add_option("--live-page-port", m_outlets.livePagePort, "The page's port (default 7316; 0 picks any)")
        ->check(CLI::Range(0, 65535));
    m_serve->add_flag("--openlp", m_outlets.openLp,
                      "Make each passage live in OpenLP (default: Quillon.screens.openlp)");
    m_serve->add_option("--openlp-address", m_outlets.openLpAddress,
                        "OpenLP's remote API as host:port (default: Quillon.screens.openlp.address, else "
                        "127.0.0.1:4316)");
    m_serve->add_flag("--bible-sync", m_outlets.bibleSync,
                      "Announce each passage to Xiphos and BibleTime over BibleSync (default: "
                      "Quillon.screens.bibleSync)");
    m_openLpLogin = command.add_subcommand(
        "openlp-login", "Keep OpenLP's remote login: the user in the preferences, the password (one line on stdin) "
                        "in the Secret Service");
    m_openLpLogin->add_option("--user", m_openLpUser, "The user name set in OpenLP's remote settings")->required();
    m_pairings = command.add_subcommand("pairings", "List the peers this desk is paired with");
    m_unpair = command.add_subcommand("unpair", "Remove the stored pairing with a peer");
    m_unpair->add_option("peer", m_peer, "The peer's name, as listed by `mesh pairings`")->required();
}

int MeshCommand::execute(CommandContext& context) {
    if (m_serve->parsed())
        return serve(context);
    if (m_pairings->parsed())
        return pairings(context);
    if (m_openLpLogin->parsed())
        return openLpLogin(context);
    return unpair(context);
}

int MeshCommand::serve(CommandContext& context) {
    // Loaded here, before the network thread exists: peers' tool requests only ever read it.
    Library library(context);
    MeshSermonTools tools(library);
    if (!m_sermon.empty())
        tools.open(m_sermon);
    PairingFiles files(library.preferences());
    auto settings = mesh::MeshSettings::fromPreferences(library.preferences());
    if (m_port >= 0)
        settings.port = static_cast<std::uint16_t>(m_port);
    if (m_tlsPort >= 0)
        settings.tlsPort = static_cast<std::uint16_t>(m_tlsPort);
    if (!m_calvane.empty())
        settings.calvaneAddress = m_calvane;
    settings.discovery = !m_noDiscovery;

    // Writing to a peer that just vanished must end in an error code, not the default SIGPIPE exit.
    std::signal(SIGPIPE, SIG_IGN);
    mesh::SerialExecutor mainThread;
    mesh::ScriptureBridge bridge(settings, files.store, mainThread.executor());
    MeshServeSession session(bridge, context.out, context.json, &tools);
    bridge.onEvent = [&session](const mesh::MeshEvent& event) { session.printEvent(event); };
    // Declared after the bridge, so the outlets stop before it goes.
    auto outlets = screens::attachScreenOutlets(bridge, library.preferences(), m_outlets);
    session.setOutlets(outlets.get());
    bridge.start();
    if (bridge.plainPort() == 0 && bridge.securePort() == 0) {
        bridge.stop();
        throw UserError("Quillon could not open the scripture mesh listeners; see the log for the reason.");
    }
    session.run(std::cin);
    bridge.stop();
    mainThread.drain();
    return 0;
}

int MeshCommand::pairings(CommandContext& context) {
    platform::Preferences preferences(platform::preferencesFile());
    PairingFiles files(preferences);
    nlohmann::json list = nlohmann::json::array();
    for (const auto& name : files.store.pairedPeerNames()) {
        auto pairing = files.store.pairing(name);
        std::string established = pairing ? model::formatDateTime(model::toDateTime(pairing->establishedAt)) : "";
        if (context.json)
            list.push_back({{"peer", name},
                            {"establishedAt", pairing ? nlohmann::json(established) : nlohmann::json()},
                            {"capabilities", pairing ? pairing->capabilities.rawValue : 0},
                            {"secretStored", pairing.has_value()}});
        else
            context.out << name << "\t"
                        << (pairing ? "paired " + established : std::string("listed, but no secret is stored")) << "\n";
    }
    if (context.json)
        context.out << list.dump(2) << "\n";
    else if (files.store.pairedPeerNames().empty())
        context.out << "No pairings.\n";
    return 0;
}

int MeshCommand::openLpLogin(CommandContext& context) {
    std::string password;
    std::getline(std::cin, password);
    if (!password.empty() && password.back() == '\r')
        password.pop_back();
    platform::Preferences preferences(platform::preferencesFile());
    const std::string service = screens::OpenLpOptions::secretService();
    platform::SecretStore secrets(service, platform::SecretStore::defaultFallbackFile(service));
    if (!secrets.write(m_openLpUser, password))
        throw UserError("Quillon could not keep OpenLP's password; see the log for the reason.");
    preferences.set("Quillon.screens.openlp.user", m_openLpUser);
    if (context.json)
        context.out << nlohmann::json{{"openlpUser", m_openLpUser}, {"secretStored", true}}.dump() << "\n";
    else
        context.out << "Quillon will log in to OpenLP as " << m_openLpUser << ".\n";
    return 0;
}

int MeshCommand::unpair(CommandContext& context) {
    platform::Preferences preferences(platform::preferencesFile());
    PairingFiles files(preferences);
    if (!files.store.remove(m_peer))
        throw UserError("Quillon has no pairing with “" + m_peer + "”.");
    if (context.json)
        context.out << nlohmann::json{{"removed", m_peer}}.dump() << "\n";
    else
        context.out << "Removed the pairing with " << m_peer << ".\n";
    return 0;
}

} // namespace quillon::cli
