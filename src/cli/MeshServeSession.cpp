#include "cli/MeshServeSession.h"

#include "cli/Command.h"
#include "cli/MeshSermonTools.h"
#include "mesh/ScriptureBridge.h"
#include "model/BibleVersion.h"
#include "model/DateTime.h"
#include "screens/OutletHub.h"
#include "screens/OutletWording.h"
#include "scripture/ReferenceParser.h"

#include <nlohmann/json.hpp>

#include <istream>
#include <ostream>
#include <sstream>

namespace quillon::cli {

namespace {

std::string trim(const std::string& text) {
    auto first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

/// An outlet in the JSON lines, worded as in the text ones; `event` names the line when it is one.
nlohmann::json outletJson(const screens::OutletStatus& outlet, const std::string& event = {}) {
    nlohmann::json json = {{"name", outlet.name},
                           {"state", screens::outletStateSentence(outlet.state)},
                           {"failing", outlet.state.failing}};
    if (!event.empty())
        json["event"] = event;
    return json;
}

} // namespace

MeshServeSession::MeshServeSession(mesh::ScriptureBridge& bridge, std::ostream& out, bool json, MeshSermonTools* tools)
    : m_bridge(bridge), m_out(out), m_json(json), m_tools(tools) {
    if (m_tools)
        m_bridge.toolHandler = [tools](const std::string& tool, const std::string& query) {
            return tools->answer(tool, query);
        };
}

std::string MeshServeSession::passageText(const scripture::ScriptureReference& reference, model::BibleVersion version) {
    // Peers show the words on screen, so a version this machine lacks is announced without text.
    std::string text;
    for (const auto& result : m_bible.verses(reference, {version})) {
        if (!text.empty())
            text += ' ';
        text += result.verse.text;
    }
    return text;
}

void MeshServeSession::print(const std::string& textLine, const std::string& jsonLine) {
    std::lock_guard lock(m_outputMutex);
    m_out << (m_json ? jsonLine : textLine) << std::endl; // flushed: another program reads these as they come
}

void MeshServeSession::printEvent(const mesh::MeshEvent& event) {
    nlohmann::json json = {{"event", mesh::eventName(event.kind)}, {"peer", event.peer}, {"detail", event.detail}};
    std::string text(mesh::eventName(event.kind));
    if (!event.peer.empty())
        text += " " + event.peer;
    if (!event.detail.empty())
        text += ": " + event.detail;
    print(text, json.dump());
}

void MeshServeSession::run(std::istream& in) {
    nlohmann::json listening = {
        {"event", "listening"}, {"port", m_bridge.plainPort()}, {"tlsPort", m_bridge.securePort()}};
    print("listening on port " + std::to_string(m_bridge.plainPort()) + ", secure port " +
              std::to_string(m_bridge.securePort()),
          listening.dump());
    for (const auto& outlet : m_outlets ? m_outlets->statuses() : std::vector<screens::OutletHub::Status>{})
        print(screens::outletStatusLine(outlet), outletJson(outlet, "outlet").dump());
    std::string line;
    while (std::getline(in, line))
        if (!handle(line))
            return;
}

void MeshServeSession::open(const std::string& idText) {
    auto error = [this](const std::string& sentence) {
        print("error: " + sentence, nlohmann::json{{"event", "error"}, {"detail", sentence}}.dump());
    };
    if (!m_tools)
        return error("No sermon library is open here.");
    if (idText.empty())
        return error("Name the sermon to open by its id, for example: open 3F2A");
    try {
        const model::SermonNote sermon = m_tools->open(idText);
        print("opened " + sermon.title + " (" + sermon.id.text() + ")",
              nlohmann::json{{"event", "opened"}, {"id", sermon.id.text()}, {"title", sermon.title}}.dump(
                  -1, ' ', false, nlohmann::json::error_handler_t::replace));
    } catch (const UserError& failure) {
        error(failure.what());
    }
}

bool MeshServeSession::handle(const std::string& commandLine) {
    const std::string line = trim(commandLine);
    bool quit = false;
    std::istringstream words(line);
    std::string command;
    words >> command;
    std::string rest;
    std::getline(words, rest);
    rest = trim(rest);
    auto error = [this](const std::string& sentence) {
        print("error: " + sentence, nlohmann::json{{"event", "error"}, {"detail", sentence}}.dump());
    };

    if (command.empty()) {
        return true;
    } else if (command == "quit") {
        quit = true;
    } else if (command == "announce") {
        // Read as `ref` and the desk read it, so a pasted "NKJV: Matt 5:6" or "John 3:16 (ASV)"
        // announces the same passage here; a tag for a version Quillon lacks falls back to KJV.
        scripture::ReferenceReading reading = scripture::readReference(rest);
        if (!reading.reference) {
            error("Quillon could not read \"" + rest + "\" as a reference.");
            return true;
        }
        const scripture::ScriptureReference* reference = &*reading.reference;
        model::BibleVersion version = reading.version.value_or(model::BibleVersion::kjv);
        mesh::LiveScripture live{reference->description(), reference->book.name, std::string(model::rawValue(version)),
                                 passageText(*reference, version)};
        m_bridge.announce(live); // the screens beyond the mesh follow the bridge
        print("announced " + live.reference + " (" + live.version + ")",
              nlohmann::json{{"event", "announced"}, {"reference", live.reference}, {"version", live.version}}.dump());
    } else if (command == "open") {
        open(rest);
    } else if (command == "clear") {
        m_bridge.clear();
        print("cleared", R"({"event":"cleared"})");
    } else if (command == "pair") {
        if (rest.empty()) {
            error("Name the peer to pair with, for example: pair Brenmoor");
            return true;
        }
        auto code = m_bridge.startBootstrap(rest);
        std::string expires = model::formatDateTime(model::toDateTime(code.expiresAt));
        print("pairing code for " + code.peerName + ": " + code.code + " (expires " + expires +
                  "). Enter this in the peer app's own “Pair with Quillon” screen before the code expires.",
              nlohmann::json{
                  {"event", "pairingCode"}, {"peer", code.peerName}, {"code", code.code}, {"expiresAt", expires}}
                  .dump());
    } else if (command == "peers") {
        auto peers = m_bridge.peers();
        nlohmann::json list = nlohmann::json::array();
        std::string text = peers.empty() ? "no peers connected" : "";
        for (const auto& peer : peers) {
            if (!text.empty())
                text += "\n";
            text += "peer " + std::to_string(peer.identifier) + " " + peer.address + " claims " +
                    peer.claim.value_or("nothing yet") + ", " + (peer.verified ? "verified" : "not verified") + ", " +
                    (peer.secure ? "secure" : "plain") + (peer.status.empty() ? "" : ", " + peer.status);
            list.push_back({{"id", peer.identifier},
                            {"address", peer.address},
                            {"claim", peer.claim ? nlohmann::json(*peer.claim) : nlohmann::json()},
                            {"verified", peer.verified},
                            {"secure", peer.secure},
                            {"trusted", peer.trusted},
                            {"status", peer.status}});
        }
        print(text, nlohmann::json{{"event", "peers"}, {"peers", list}}.dump());
    } else if (command == "status") {
        auto live = m_bridge.liveReference();
        auto incoming = m_bridge.incomingReference();
        nlohmann::json json = {
            {"event", "status"},
            {"port", m_bridge.plainPort()},
            {"tlsPort", m_bridge.securePort()},
            {"isBrenmoorConnected", m_bridge.isBrenmoorConnected()},
            {"isCalvaneConnected", m_bridge.isCalvaneConnected()},
            {"liveReference", live ? nlohmann::json(live->reference) : nlohmann::json()},
            {"incomingReference", incoming ? nlohmann::json(incoming->description()) : nlohmann::json()},
            {"tlsStatus", m_bridge.tlsStatus()}};
        const auto sermon = m_tools ? m_tools->current() : std::nullopt;
        json["currentSermon"] = sermon ? nlohmann::json(sermon->id.text()) : nlohmann::json();
        std::string text =
            "port " + std::to_string(m_bridge.plainPort()) + ", secure port " + std::to_string(m_bridge.securePort()) +
            "; Brenmoor " + (m_bridge.isBrenmoorConnected() ? "connected" : "not connected") + "; Calvane " +
            (m_bridge.isCalvaneConnected() ? "connected" : "not connected") + "; live " +
            (live ? live->reference : "none") + "; incoming " + (incoming ? incoming->description() : "none") +
            "; sermon " + (sermon ? sermon->title : "none open");
        json["outlets"] = nlohmann::json::array();
        for (const auto& outlet : m_outlets ? m_outlets->statuses() : std::vector<screens::OutletHub::Status>{}) {
            json["outlets"].push_back(outletJson(outlet));
            text += "; " + screens::outletStatusLine(outlet);
        }
        print(text, json.dump());
    } else {
        error("Unknown command \"" + command + "\": use announce, clear, open, pair, peers, status or quit.");
    }
    return !quit;
}

} // namespace quillon::cli
