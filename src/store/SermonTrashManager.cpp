#include "store/SermonTrashManager.h"

#include "model/SermonCoding.h"
#include "platform/FileError.h"
#include "store/SermonNotesManager.h"

#include <spdlog/spdlog.h>

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace quillon::store {
namespace fs = std::filesystem;

SermonTrashManager::SermonTrashManager(SermonNotesManager& store, const platform::Preferences& preferences,
                                       const platform::Clock& clock)
    : m_store(store), m_preferences(preferences), m_clock(clock) {}

orvane::TrashFolder SermonTrashManager::folder() const {
    return orvane::TrashFolder(m_store.storage().root() / "Trash", m_clock);
}

int SermonTrashManager::retentionDays() const {
    const double stored = m_preferences.positiveNumber(retentionDaysKey, defaultRetentionDays);
    return stored >= 1 ? static_cast<int>(stored) : defaultRetentionDays;
}

bool SermonTrashManager::moveToTrash(const model::SermonNote& sermon) {
    orvane::TrashFolder trash = folder();
    const std::string id = sermon.id.text();
    try {
        trash.put(id, model::encodeSermonFile(sermon));
        const fs::path file = m_store.storage().sermonFile(sermon.id);
        if (::unlink(file.c_str()) != 0 && errno != ENOENT) {
            const int error = errno;
            // The sermon stays where it was, so it must not also linger in the trash.
            trash.remove(id);
            throw platform::FileError("Could not remove “" + file.filename().string() + "”: " + std::strerror(error) +
                                      ".");
        }
    } catch (const std::exception& error) {
        spdlog::error("Failed to move sermon \"{}\" to trash: {}", sermon.title, error.what());
        return false;
    }
    m_store.remove(sermon.id);
    return true;
}

std::vector<TrashedSermon> SermonTrashManager::allTrashed() const {
    std::vector<TrashedSermon> entries;
    for (const orvane::TrashedItem& item : folder().items()) {
        try {
            entries.push_back(
                {model::decodeSermonFile(item.bytes), std::chrono::floor<std::chrono::seconds>(item.trashedAt)});
        } catch (const model::DecodingError&) {
            // Not ours to judge: a file we cannot read stays in the folder until it is purged.
        }
    }
    return entries;
}

std::optional<model::SermonNote> SermonTrashManager::restore(const model::Uuid& id) {
    orvane::TrashFolder trash = folder();
    auto item = trash.item(id.text());
    if (!item)
        return std::nullopt;
    model::SermonNote sermon;
    try {
        sermon = model::decodeSermonFile(item->bytes);
    } catch (const model::DecodingError& error) {
        spdlog::error("Failed to restore sermon {} from trash: {}", id.text(), error.what());
        return std::nullopt;
    }
    bool saved = true;
    if (m_store.sermon(sermon.id))
        m_store.update(sermon);
    else
        saved = m_store.add(sermon);
    // A sermon whose file could not be written keeps its trash copy, the only one on disk.
    if (saved)
        trash.remove(id.text());
    return sermon;
}

bool SermonTrashManager::deletePermanently(const model::Uuid& id) {
    return folder().remove(id.text());
}

int SermonTrashManager::purgeExpired() {
    const auto cutoff = orvane::TrashFolder::calendarDaysBefore(m_clock.now(), retentionDays());
    return static_cast<int>(folder().removeOlderThan(cutoff).size());
}

} // namespace quillon::store
