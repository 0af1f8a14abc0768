#include "store/SermonStorage.h"

#include "model/SermonCoding.h"
#include "platform/AtomicFile.h"
#include "platform/ParallelFor.h"
#include "platform/Paths.h"
#include "platform/WorkFileName.h"

#include <nlohmann/json.hpp>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <array>
#include <set>

namespace quillon::store {
namespace fs = std::filesystem;

namespace {

/// Sync clients with virtual-file support leave "<name>.<suffix>" in place of a file they have not
/// downloaded yet; the real file appears beside it (and the placeholder goes) once it has arrived.
constexpr std::array<std::string_view, 2> placeholderSuffixes = {".nextcloud", ".owncloud"};

bool endsWith(std::string_view text, std::string_view suffix) {
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

/// The sermon file a placeholder stands for, when `name` is one.
std::optional<std::string> placeholderTarget(std::string_view name) {
    for (auto suffix : placeholderSuffixes)
        if (endsWith(name, suffix)) {
            std::string_view target = name.substr(0, name.size() - suffix.size());
            if (endsWith(target, ".json"))
                return std::string(target);
        }
    return std::nullopt;
}

void writeAtomically(const fs::path& target, std::string_view bytes) {
    platform::writeFileAtomically(target, bytes);
}

} // namespace

SermonStorage::SermonStorage(const platform::Preferences* preferences, std::optional<fs::path> fixedRoot)
    : m_preferences(preferences), m_fixedRoot(std::move(fixedRoot)), m_writer(writeAtomically) {}

SermonStorage::SermonStorage(const platform::Preferences& preferences) : SermonStorage(&preferences, std::nullopt) {}

SermonStorage SermonStorage::atRoot(fs::path root) {
    return SermonStorage(nullptr, std::move(root));
}

std::optional<fs::path> SermonStorage::syncFolder() const {
    if (m_fixedRoot || !m_preferences)
        return std::nullopt;
    std::string chosen = m_preferences->string(syncFolderKey);
    if (chosen.empty())
        return std::nullopt;
    std::error_code error;
    if (!fs::is_directory(chosen, error))
        return std::nullopt; // not mounted or removed: fall back silently, nothing is moved
    return fs::path(chosen);
}

fs::path SermonStorage::root() const {
    if (m_fixedRoot)
        return *m_fixedRoot;
    if (auto folder = syncFolder())
        return *folder;
    return platform::applicationDataFolder();
}

bool SermonStorage::isUsingCloud() const {
    return syncFolder().has_value();
}

fs::path SermonStorage::sermonsFolder() const {
    fs::path folder = root() / "Sermons";
    platform::createFolderQuietly(folder);
    return folder;
}

fs::path SermonStorage::mediaFolder() const {
    fs::path folder = root() / "Media";
    platform::createFolderQuietly(folder);
    return folder;
}

fs::path SermonStorage::sermonFile(const model::Uuid& id) const {
    return sermonsFolder() / (id.text() + ".json");
}

fs::path SermonStorage::seededSamplesFile() const {
    return root() / "Seeded Samples.json";
}

std::optional<std::vector<std::string>> SermonStorage::seededSampleIds() const {
    const fs::path file = seededSamplesFile();
    std::error_code error;
    if (!fs::exists(file, error))
        return std::nullopt;
    try {
        nlohmann::json json = nlohmann::json::parse(platform::readFile(file));
        std::vector<std::string> ids;
        for (const nlohmann::json& id : json.at("seeded"))
            if (id.is_string())
                ids.push_back(id.get<std::string>());
        return ids;
    } catch (const std::exception& failure) {
        spdlog::error("Failed to read the seeded samples of this library: {}", failure.what());
        return std::nullopt;
    }
}

bool SermonStorage::saveSeededSampleIds(const std::vector<std::string>& ids) const {
    try {
        platform::createFolderQuietly(root());
        m_writer(seededSamplesFile(), nlohmann::ordered_json{{"seeded", ids}}.dump(2) + "\n");
        return true;
    } catch (const std::exception& failure) {
        spdlog::error("Failed to record the seeded samples of this library: {}", failure.what());
        return false;
    }
}

bool SermonStorage::saveSermon(const model::SermonNote& sermon) const {
    try {
        m_writer(sermonFile(sermon.id), model::encodeSermonFile(sermon));
        return true;
    } catch (const std::exception& failure) {
        spdlog::debug("Failed to save sermon: {}", failure.what());
        spdlog::error("Failed to save sermon \"{}\": {}", sermon.title, failure.what());
        return false;
    }
}

SermonLoadResult SermonStorage::loadAllSermons() const {
    SermonLoadResult result;
    const fs::path folder = sermonsFolder();
    // A save, restore or cover image cut off by a crash leaves its hidden work file; the file it
    // was meant to replace is whole, so the work file only takes space.
    platform::workFileName::removeAbandoned(folder);
    platform::workFileName::removeAbandoned(mediaFolder());
    std::set<std::string> names;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error))
        names.insert(it->path().filename().string());

    std::vector<std::string> toRead;
    for (const auto& name : names) {
        if (auto target = placeholderTarget(name)) {
            // Counted once the real file is missing; a finished download may leave both for a moment.
            if (!names.contains(*target))
                ++result.pendingCount;
            continue;
        }
        if (fs::path(name).extension() == ".json")
            toRead.push_back(name);
    }

    // Files are read and decoded on a few threads; the outcomes are kept per file and taken in
    // name order afterwards, so the library's order and the log do not depend on the timing.
    std::vector<std::optional<model::SermonNote>> decoded(toRead.size());
    std::vector<std::string> failures(toRead.size());
    platform::parallelFor(toRead.size(), [&](std::size_t index) {
        try {
            decoded[index] = model::decodeSermonFile(platform::readFile(folder / toRead[index]));
        } catch (const std::exception& failure) {
            failures[index] = failure.what();
        }
    });

    result.sermons.reserve(toRead.size());
    for (std::size_t index = 0; index < toRead.size(); ++index) {
        if (decoded[index])
            result.sermons.push_back(std::move(*decoded[index]));
        else
            spdlog::error("Failed to load sermon from {}: {}", toRead[index], failures[index]);
    }
    return result;
}

std::optional<std::string> SermonStorage::saveCoverImage(const model::Uuid& id, std::string_view jpegBytes) const {
    std::string name = id.text() + "_cover.jpg";
    try {
        m_writer(mediaFolder() / name, jpegBytes);
        return name;
    } catch (const std::exception& failure) {
        spdlog::error("Failed to save the cover image {}: {}", name, failure.what());
        return std::nullopt;
    }
}

void SermonStorage::removeCoverImage(const model::Uuid& id) const {
    std::error_code ignored;
    fs::remove(mediaFolder() / (id.text() + "_cover.jpg"), ignored);
}

} // namespace quillon::store
