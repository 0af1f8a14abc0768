#include "app/SettingsCatalogue.h"

#include "app/InterfaceState.h"
#include "intelligence/LocalModelSettings.h"
#include "platform/Preferences.h"
#include "preach/PreachPace.h"
#include "screens/OpenLpOptions.h"
#include "speech/TranscriptionSettings.h"
#include "store/SermonBackupManager.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"
#include "store/SermonTrashManager.h"
#include "store/SermonVersionHistory.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <charconv>
#include <cmath>

namespace quillon::app {

namespace {

using K = SettingKind;

// clang-format off
const SettingDescription settings[] = {
    {store::SermonStorage::syncFolderKey, "Storage", "Sync folder",
     "A folder your sync service keeps (Nextcloud, Syncthing…); sermons are stored there instead of on this computer only.",
     K::folder, 0, 0, "Sermons stay in Quillon’s own folder"},
    {store::SermonTrashManager::retentionDaysKey, "Storage", "Keep trashed sermons for (days)",
     "How long a sermon moved to the trash can still be brought back before it is deleted for good.",
     K::wholeNumber, 1, 3650, "30"},
    {store::SermonBackupManager::storageWarningThresholdKey, "Storage", "Low disk warning (percent free)",
     "A backup warns before it starts when the disk has less than this share of free space.",
     K::number, 1, 90, "10"},
    {store::SermonNotesManager::sampleSermonsHiddenKey, "Storage", "Hide the sample sermons",
     "Keeps the sermons Quillon ships as examples out of the list.", K::boolean},

    {store::SermonVersionHistory::snapshotIntervalKey, "History", "Version interval (seconds)",
     "How often, while you edit, a version of the sermon is kept for the version history.",
     K::number, 10, 86400, "300"},
    {store::SermonVersionHistory::maxVersionsKey, "History", "Versions kept per sermon",
     "The oldest versions of a sermon are dropped beyond this many.", K::wholeNumber, 1, 1000, "50"},
    {store::SermonNotesManager::undoCoalesceIntervalKey, "History", "Undo coalescing (seconds)",
     "Typing within this many seconds of the last change is undone together in one step.",
     K::number, 0.1, 60, "0.9"},
    {InterfaceState::recentSermonLimitKey, "History", "Recent files listed",
     "How many files Open Recent remembers.", K::wholeNumber, 1, 50, "10"},

    {preach::PreachPace::proseWordsPerMinuteKey, "Preach Preview", "Starting pace (words a minute)",
     "The speaking pace Preach Preview estimates with until it has learned yours.", K::number, 60, 260, "130"},
    {preach::PreachPace::scriptureFactorKey, "Preach Preview", "Scripture reading pace (share of your pace)",
     "Scripture read aloud is usually slower: 0.75 reads it at three quarters of your pace.",
     K::number, 0.2, 2, "0.75"},
    {preach::PreachPace::listFactorKey, "Preach Preview", "List pace (share of your pace)",
     "Lists read point by point, with pauses between, at this share of your pace.", K::number, 0.2, 2, "0.8"},
    {preach::PreachPace::measuredFromRecordingKey, "Preach Preview", "Measure my pace from recorded sermons",
     "Each actual time you record moves the pace towards how you really speak.", K::boolean},

    {intelligence::LocalModelSettings::endpointKey, "Model server", "Model server address",
     "The address of a local OpenAI-compatible model server (llama-server, Ollama…) the assistant asks.",
     K::address, 0, 0, intelligence::LocalModelSettings::defaultEndpoint},
    {intelligence::LocalModelSettings::modelKey, "Model server", "Model",
     "Which of the server’s models to ask; empty asks the first one it lists.", K::text, 0, 0,
     "The first model the server lists"},
    {intelligence::LocalModelSettings::timeoutKey, "Model server", "Reply time limit (seconds)",
     "How long to wait for the model before giving the model-free answer instead.", K::number, 1, 1800, "120"},
    {intelligence::LocalModelSettings::embeddingsKey, "Model server", "Search by meaning (embeddings)",
     "Ranks sermon search by the model server’s embeddings as well as by words.", K::boolean},
    {intelligence::LocalModelSettings::disabledKey, "Model server", "Turn the assistant off",
     "Never asks a model: every assistant sheet gives its model-free answer.", K::boolean},

    {speech::TranscriptionSettings::endpointKey, "Transcription", "Transcription server address",
     "A local speech-to-text server for recordings; without one Quillon transcribes on this computer.",
     K::address, 0, 0, "Transcribe on this computer"},
    {speech::TranscriptionSettings::modelKey, "Transcription", "Transcription model",
     "Which of the transcription server’s models to use.", K::text, 0, 0, "The server’s default"},
    {speech::TranscriptionSettings::modelFolderKey, "Transcription", "Speech model folder",
     "A folder with a pocketsphinx acoustic model to use instead of the one installed.", K::folder, 0, 0,
     "The installed model"},

    {"vantalink.port", "Mesh", "Mesh port", "A fixed port for the scripture mesh; 0 lets the system choose one.",
     K::port, 0, 65535, "0"},
    {"vantalink.tlsPort", "Mesh", "Secure mesh port", "A fixed port for encrypted mesh links; 0 lets the system choose.",
     K::port, 0, 65535, "0"},
    {"vantalink.calvaneAddress", "Mesh", "Calvane address",
     "host:port of Calvane’s bridge, for networks where discovery does not reach it.", K::hostAndPort, 0, 0,
     "Found on the network"},
    {"vantalink.requireEncrypted", "Mesh", "Encrypted links only",
     "Sends sermon content only over encrypted mesh links.", K::boolean},
    {"vantalink.tlsHandshakeTimeoutSeconds", "Mesh", "Secure handshake limit (seconds)",
     "How long a secure link may take to set up before it is dropped.", K::number, 1, 120, "10"},
    {"Quillon.suiteMesh.requirePairing", "Mesh", "Trust paired devices only",
     "Only screens and apps that proved their pairing code may receive and send verses.", K::boolean},
    {"Quillon.suiteMesh.pairingWindowSeconds", "Mesh", "Pairing code lifetime (seconds)",
     "How long a six-digit pairing code stays valid after it is shown.", K::wholeNumber, 30, 3600, "120"},

    {"Quillon.screens.livePage", "Screens", "Live page for streaming software",
     "Serves the passage on screen as a web page OBS and similar software can show.", K::boolean},
    {"Quillon.screens.livePage.address", "Screens", "Live page address",
     "Which address the live page listens on; keep 127.0.0.1 unless another computer shows it.", K::text, 0, 0,
     "127.0.0.1"},
    {"Quillon.screens.livePage.port", "Screens", "Live page port", "The port of the live page.", K::port, 1, 65535,
     "7316"},

    {"Quillon.screens.openlp", "Screens", "Send passages to OpenLP",
     "Shows each passage you send to the screen in OpenLP through its remote interface.", K::boolean},
    {"Quillon.screens.openlp.address", "Screens", "OpenLP address",
     "The computer running OpenLP, with its remote port when it is not 4316.", K::host, 0, 0, "127.0.0.1:4316"},
    {"Quillon.screens.openlp.user", "Screens", "OpenLP user", "The user OpenLP’s remote asks for, when it asks for one.",
     K::text},
    {"Quillon.screens.bibleSync", "Screens", "Announce passages with BibleSync",
     "Xiphos, BibleTime and other BibleSync programs on the network follow the passages you send.", K::boolean},
    {"Quillon.screens.bibleSync.user", "Screens", "BibleSync name", "The name other BibleSync programs list Quillon under.",
     K::text, 0, 0, "Quillon"},
    {"Quillon.screens.bibleSync.passphrase", "Screens", "BibleSync passphrase",
     "Only programs with the same passphrase are heard.", K::text, 0, 0, "BibleSync"},
    {"Quillon.screens.bibleSync.trustedSpeakers", "Screens", "BibleSync speakers to follow",
     "Names or addresses, separated by commas, whose passages Quillon follows; empty follows nobody.", K::list},

    {InterfaceState::layoutStyleKey, "Layout and reading", "Outline layout",
     "classic shows topic, sub-topic and scripture columns; modernOutline shows one tree.", K::choice, 0, 0,
     "classic", "classic|modernOutline"},
    {InterfaceState::compactLayoutKey, "Layout and reading", "Compact layout",
     "Tighter spacing, for small screens.", K::boolean},
    {InterfaceState::readingModeKey, "Layout and reading", "Reading mode",
     "Shows the sermon for reading, without editing.", K::boolean},
    {InterfaceState::topicColumnWidthKey, "Layout and reading", "Topic column width",
     "The width of the topic column in the classic layout, in points.", K::number, 60, 165, "150"},
    {InterfaceState::subtopicColumnWidthKey, "Layout and reading", "Sub-topic column width",
     "The width of the sub-topic column in the classic layout, in points.", K::number, 60, 195, "180"},
    {InterfaceState::scriptureColumnWidthKey, "Layout and reading", "Scripture column width",
     "The width of the scripture column in the classic layout, in points.", K::number, 60, 165, "150"},
};
// clang-format on

std::string trimmedSetting(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos)
        return {};
    const auto last = text.find_last_not_of(" \t\r\n");
    return std::string(text.substr(first, last - first + 1));
}

std::optional<double> number(const std::string& text) {
    double value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<bool> boolean(const std::string& text) {
    if (text == "true" || text == "on" || text == "yes" || text == "1")
        return true;
    if (text == "false" || text == "off" || text == "no" || text == "0")
        return false;
    return std::nullopt;
}

std::vector<std::string> listItems(const std::string& text) {
    std::vector<std::string> items;
    std::string_view rest = text;
    while (!rest.empty()) {
        const auto comma = rest.find(',');
        if (std::string item = trimmedSetting(rest.substr(0, comma)); !item.empty())
            items.push_back(std::move(item));
        rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 1);
    }
    return items;
}

std::string figure(double value) {
    return fmt::format("{:g}", value);
}

std::optional<std::string> rangeProblem(const SettingDescription& setting, const std::string& text) {
    const std::optional<double> value = number(text);
    const bool whole = setting.kind != SettingKind::number;
    if (!value || (whole && std::floor(*value) != *value))
        return fmt::format("{} must be {} from {} to {}.", setting.label, whole ? "a whole number" : "a number",
                           figure(setting.minimum), figure(setting.maximum));
    if (*value < setting.minimum || *value > setting.maximum)
        return fmt::format("{} must be from {} to {}.", setting.label, figure(setting.minimum),
                           figure(setting.maximum));
    return std::nullopt;
}

std::optional<std::string> addressProblem(const SettingDescription& setting, const std::string& text) {
    if (!(text.starts_with("http://") || text.starts_with("https://")) || text.find(' ') != std::string::npos ||
        text.size() <= text.find("//") + 2)
        return fmt::format("{} must be a web address such as http://127.0.0.1:8080/v1.", setting.label);
    return std::nullopt;
}

std::optional<std::string> hostAndPortProblem(const SettingDescription& setting, const std::string& text) {
    const auto colon = text.rfind(':');
    const std::optional<double> port = colon == std::string::npos ? std::nullopt : number(text.substr(colon + 1));
    if (colon == 0 || !port || *port < 1 || *port > 65535 || std::floor(*port) != *port ||
        text.find(' ') != std::string::npos)
        return fmt::format("{} must be a host and a port, such as 192.168.1.20:7318.", setting.label);
    return std::nullopt;
}

} // namespace

std::span<const SettingDescription> SettingsCatalogue::all() {
    return settings;
}

std::vector<std::string> SettingsCatalogue::groups() {
    std::vector<std::string> groups;
    for (const SettingDescription& setting : settings)
        if (groups.empty() || groups.back() != setting.group)
            groups.emplace_back(setting.group);
    return groups;
}

const SettingDescription* SettingsCatalogue::find(std::string_view key) {
    for (const SettingDescription& setting : settings)
        if (key == setting.key)
            return &setting;
    return nullptr;
}

std::vector<std::string> SettingsCatalogue::choices(const SettingDescription& setting) {
    std::vector<std::string> found;
    std::string_view rest = setting.choices;
    while (!rest.empty()) {
        const auto bar = rest.find('|');
        found.emplace_back(rest.substr(0, bar));
        rest = bar == std::string_view::npos ? std::string_view() : rest.substr(bar + 1);
    }
    return found;
}

std::optional<std::string> SettingsCatalogue::problem(const SettingDescription& setting, std::string_view typed) {
    const std::string text = trimmedSetting(typed);
    if (text.empty())
        return std::nullopt;
    switch (setting.kind) {
    case SettingKind::number:
    case SettingKind::wholeNumber:
    case SettingKind::port:
        return rangeProblem(setting, text);
    case SettingKind::boolean:
        if (!boolean(text))
            return fmt::format("{} is either on or off.", setting.label);
        return std::nullopt;
    case SettingKind::address:
        return addressProblem(setting, text);
    case SettingKind::hostAndPort:
        return hostAndPortProblem(setting, text);
    case SettingKind::folder:
        if (!text.starts_with('/'))
            return fmt::format("{} must be a folder’s full path, starting with /.", setting.label);
        return std::nullopt;
    case SettingKind::choice: {
        for (const std::string& choice : choices(setting))
            if (choice == text)
                return std::nullopt;
        std::string listed;
        for (const std::string& choice : choices(setting))
            listed += (listed.empty() ? "" : " or ") + choice;
        return fmt::format("{} must be {}.", setting.label, listed);
    }
    case SettingKind::host:
        if (text.find(' ') != std::string::npos || !screens::OpenLpOptions().setAddress(text))
            return fmt::format("{} must be a computer’s name or address, with “:” and a port if it needs one.",
                               setting.label);
        return std::nullopt;
    case SettingKind::list:
    case SettingKind::text:
        if (text.find('\n') != std::string::npos)
            return fmt::format("{} must fit on one line.", setting.label);
        return std::nullopt;
    }
    return std::nullopt;
}

std::optional<std::string> SettingsCatalogue::apply(platform::Preferences& preferences,
                                                    const SettingDescription& setting, std::string_view typed) {
    if (auto refused = problem(setting, typed))
        return refused;
    const std::string text = trimmedSetting(typed);
    if (text.empty()) {
        preferences.remove(setting.key);
        return std::nullopt;
    }
    switch (setting.kind) {
    case SettingKind::number:
        preferences.set(setting.key, *number(text));
        break;
    case SettingKind::wholeNumber:
    case SettingKind::port:
        preferences.set(setting.key, static_cast<long long>(*number(text)));
        break;
    case SettingKind::boolean:
        preferences.set(setting.key, *boolean(text));
        break;
    case SettingKind::list:
        preferences.set(setting.key, listItems(text));
        break;
    default:
        preferences.set(setting.key, text);
        break;
    }
    return std::nullopt;
}

std::string SettingsCatalogue::displayed(const platform::Preferences& preferences, const SettingDescription& setting) {
    const std::optional<nlohmann::json> value = preferences.value(setting.key);
    if (!value || value->is_null())
        return {};
    if (value->is_string())
        return value->get<std::string>();
    if (value->is_boolean())
        return value->get<bool>() ? "true" : "false";
    if (value->is_number())
        return figure(value->get<double>());
    if (value->is_array()) {
        std::string joined;
        for (const nlohmann::json& item : *value)
            if (item.is_string())
                joined += (joined.empty() ? "" : ", ") + item.get<std::string>();
        return joined;
    }
    return value->dump();
}

} // namespace quillon::app
