#include "store/SermonNotesManager.h"

#include "model/SermonDocument.h"
#include "platform/FileError.h"
#include "platform/Paths.h"
#include "platform/PlatformWording.h"
#include "store/SampleSermons.h"

#include <spdlog/spdlog.h>

#include <algorithm>
#include <unordered_map>

namespace quillon::store {
namespace fs = std::filesystem;
namespace wording = platform::wording;
using model::SermonNote;
using model::Uuid;

namespace {

constexpr const char* loadedLocally = "Loaded locally";
constexpr const char* savedLocally = "Saved locally";
constexpr const char* syncChecked = "Sync checked";

void trimToLimit(std::deque<UndoCheckpoint>& stack) {
    while (stack.size() > SermonNotesManager::undoLimit)
        stack.pop_front();
}

/// New identities for the copy's outline too, so a scripture link ("quillscripture://<id>") keeps
/// naming exactly one passage in the library.
void renewChildIds(SermonNote& sermon) {
    for (auto& topic : sermon.topics) {
        topic.id = Uuid::random();
        for (auto& subTopic : topic.subTopics) {
            subTopic.id = Uuid::random();
            for (auto& scripture : subTopic.scriptures)
                scripture.id = Uuid::random();
        }
    }
}

bool concernsSermonFiles(const std::string& name) {
    // An empty name is an event about the folder itself or a queue overflow: re-read to be safe.
    if (name.empty())
        return true;
    for (std::string_view suffix : {".json", ".json.nextcloud", ".json.owncloud"})
        if (name.size() >= suffix.size() && name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0)
            return true;
    return false;
}

} // namespace

SermonNotesManager::SermonNotesManager(SermonStorage& storage, platform::Preferences& preferences,
                                       const platform::Clock& clock)
    : m_storage(storage), m_preferences(preferences), m_clock(clock) {}

const SermonNote* SermonNotesManager::sermon(const Uuid& id) const {
    auto found = std::find_if(m_sermons.begin(), m_sermons.end(), [&](const SermonNote& s) { return s.id == id; });
    return found == m_sermons.end() ? nullptr : &*found;
}

SermonNote* SermonNotesManager::findMutable(const Uuid& id) {
    return const_cast<SermonNote*>(std::as_const(*this).sermon(id));
}

void SermonNotesManager::setCurrentSermonId(std::optional<Uuid> id) {
    m_currentSermonId = id;
    if (id)
        m_preferences.set(selectedSermonKey, id->text());
    else
        m_preferences.remove(selectedSermonKey);
}

void SermonNotesManager::setPinned(const Uuid& id, bool pinned) {
    if (pinned ? m_pinnedSermonIds.insert(id).second : m_pinnedSermonIds.erase(id) > 0)
        persistIdSet(pinnedSermonsKey, m_pinnedSermonIds);
}

void SermonNotesManager::setHidden(const Uuid& id, bool hidden) {
    if (hidden ? m_hiddenSermonIds.insert(id).second : m_hiddenSermonIds.erase(id) > 0)
        persistIdSet(hiddenSermonsKey, m_hiddenSermonIds);
}

void SermonNotesManager::persistIdSet(const char* key, const std::set<Uuid>& ids) {
    nlohmann::json list = nlohmann::json::array();
    for (const auto& id : ids)
        list.push_back(id.text());
    m_preferences.set(key, std::move(list));
}

std::set<Uuid> SermonNotesManager::restoreIdSet(const char* key) const {
    std::set<Uuid> ids;
    for (const auto& text : m_preferences.stringList(key))
        if (auto id = Uuid::parse(text))
            ids.insert(*id);
    return ids;
}

double SermonNotesManager::undoCoalesceInterval() const {
    return m_preferences.positiveNumber(undoCoalesceIntervalKey, defaultUndoCoalesceInterval);
}

std::string SermonNotesManager::withPendingSuffix(std::string status, int pendingCount) const {
    if (pendingCount <= 0)
        return status;
    status += " — " + std::to_string(pendingCount) + (pendingCount == 1 ? " sermon is" : " sermons are");
    status += wording::stillDownloadingFromCloud;
    return status;
}

void SermonNotesManager::load() {
    SermonLoadResult result = m_storage.loadAllSermons();
    m_sermons = std::move(result.sermons);
    m_hiddenSermonIds = restoreIdSet(hiddenSermonsKey);
    m_pinnedSermonIds = restoreIdSet(pinnedSermonsKey);
    m_undoStack.clear();
    m_redoStack.clear();

    m_currentSermonId.reset();
    if (auto selected = Uuid::parse(m_preferences.string(selectedSermonKey)); selected && sermon(*selected))
        m_currentSermonId = selected;
    else if (!m_sermons.empty())
        m_currentSermonId = std::max_element(m_sermons.begin(), m_sermons.end(), [](const auto& a, const auto& b) {
                                return a.modifiedAt < b.modifiedAt;
                            })->id;

    m_lastSyncStatus =
        withPendingSuffix(m_storage.isUsingCloud() ? wording::loadedFromCloud : loadedLocally, result.pendingCount);
}

bool SermonNotesManager::store(const SermonNote& sermon) {
    if (!m_storage.saveSermon(sermon))
        return false;
    m_lastSavedAt = model::toDateTime(m_clock.now());
    return true;
}

void SermonNotesManager::setSavedStatus() {
    m_lastSyncStatus = m_storage.isUsingCloud() ? wording::savedToCloud : savedLocally;
}

void SermonNotesManager::takeUndoCheckpoint(const SermonNote& before) {
    const auto now = m_clock.now();
    const std::chrono::duration<double> interval(undoCoalesceInterval());
    if (!m_undoStack.empty() && m_undoStack.back().sermonId == before.id && now - m_undoStack.back().time < interval) {
        // A burst of quick edits undoes in one step, back to the state before the first of them.
        m_undoStack.back().time = now;
    } else {
        m_undoStack.push_back({before.id, before, now});
        trimToLimit(m_undoStack);
    }
    m_redoStack.clear();
}

bool SermonNotesManager::update(const SermonNote& sermon) {
    SermonNote* stored = findMutable(sermon.id);
    if (!stored)
        return false;
    if (!m_isApplyingUndoRedo) {
        takeUndoCheckpoint(*stored);
        if (m_versionHistory) {
            try {
                m_versionHistory->recordSnapshot(*stored);
            } catch (const std::exception& failure) {
                // The history is a safety net; losing one snapshot must not lose the edit itself.
                spdlog::error("Failed to record a version of \"{}\": {}", stored->title, failure.what());
            }
        }
    }
    *stored = sermon;
    stored->modifiedAt = model::toDateTime(m_clock.now());
    // A failed write keeps the previous status and time: the interface must not claim a save that
    // did not happen. The change stays in memory and the next update writes it again.
    if (!store(*stored))
        return false;
    setSavedStatus();
    return true;
}

void SermonNotesManager::applyCheckpoint(std::deque<UndoCheckpoint>& from, std::deque<UndoCheckpoint>& to) {
    if (from.empty())
        return;
    UndoCheckpoint checkpoint = std::move(from.back());
    from.pop_back();
    const SermonNote* current = sermon(checkpoint.sermonId);
    if (!current)
        return; // the sermon left the library since; its checkpoint has nothing to restore into
    to.push_back({checkpoint.sermonId, *current, m_clock.now()});
    trimToLimit(to);

    m_isApplyingUndoRedo = true;
    try {
        update(checkpoint.value);
    } catch (...) {
        m_isApplyingUndoRedo = false;
        throw;
    }
    m_isApplyingUndoRedo = false;
    setCurrentSermonId(checkpoint.sermonId);
}

void SermonNotesManager::undo() {
    applyCheckpoint(m_undoStack, m_redoStack);
}

void SermonNotesManager::redo() {
    applyCheckpoint(m_redoStack, m_undoStack);
}

void SermonNotesManager::syncFromCloud() {
    SermonLoadResult result = m_storage.loadAllSermons();
    if (result.sermons.empty()) {
        m_lastSyncStatus = withPendingSuffix(syncChecked, result.pendingCount);
        return;
    }
    std::unordered_map<Uuid, std::size_t> positions;
    for (std::size_t index = 0; index < m_sermons.size(); ++index)
        positions.emplace(m_sermons[index].id, index);

    bool changed = false;
    for (auto& read : result.sermons) {
        auto found = positions.find(read.id);
        if (found == positions.end()) {
            positions.emplace(read.id, m_sermons.size());
            m_sermons.push_back(std::move(read));
            changed = true;
        } else if (read.modifiedAt > m_sermons[found->second].modifiedAt) {
            // Strictly later only: an equal time means the copy in memory is the one just written.
            m_sermons[found->second] = std::move(read);
            changed = true;
        }
    }
    m_lastSyncStatus =
        withPendingSuffix(changed ? wording::syncedLatestCloudChanges : syncChecked, result.pendingCount);
}

int SermonNotesManager::importSermons(const std::vector<SermonNote>& incoming, model::SermonImportMode mode) {
    // An index by id: a restore brings thousands of sermons into a library of thousands.
    std::unordered_map<Uuid, std::size_t> positions;
    positions.reserve(m_sermons.size() + incoming.size());
    for (std::size_t index = 0; index < m_sermons.size(); ++index)
        positions.emplace(m_sermons[index].id, index); // the first of equal ids, as sermon(id) finds
    int count = 0;
    for (const auto& sermon : incoming) {
        auto found = positions.find(sermon.id);
        if (found == positions.end()) {
            positions.emplace(sermon.id, m_sermons.size());
            m_sermons.push_back(sermon);
            store(sermon);
            ++count;
            continue;
        }
        SermonNote* present = &m_sermons[found->second];
        switch (mode) {
        case model::SermonImportMode::skipDuplicates:
            break;
        case model::SermonImportMode::replaceDuplicates:
            *present = sermon;
            store(sermon);
            ++count;
            break;
        case model::SermonImportMode::importCopies:
            positions.emplace(duplicate(sermon).id, m_sermons.size() - 1);
            ++count;
            break;
        } // no default, so the compiler warns about a new mode
    }
    // Always the plural form, also for one sermon.
    m_lastSyncStatus = "Imported " + std::to_string(count) + " sermons";
    return count;
}

SermonNote SermonNotesManager::duplicate(const SermonNote& sermon) {
    SermonNote copy = sermon;
    copy.id = Uuid::random();
    copy.title += " Copy";
    copy.createdAt = copy.modifiedAt = model::toDateTime(m_clock.now());
    renewChildIds(copy);
    m_sermons.push_back(copy);
    store(copy);
    return copy;
}

bool SermonNotesManager::remove(const Uuid& id) {
    auto found = std::find_if(m_sermons.begin(), m_sermons.end(), [&](const SermonNote& s) { return s.id == id; });
    if (found == m_sermons.end())
        return false;
    m_sermons.erase(found);
    auto forThisSermon = [&](const UndoCheckpoint& checkpoint) { return checkpoint.sermonId == id; };
    std::erase_if(m_undoStack, forThisSermon);
    std::erase_if(m_redoStack, forThisSermon);
    setPinned(id, false);
    setHidden(id, false);
    if (m_currentSermonId == id)
        setCurrentSermonId(std::nullopt);
    return true;
}

void SermonNotesManager::seedSampleSermons() {
    if (m_preferences.boolean(sampleSermonsHiddenKey, false)) {
        // The same words as after an update, deliberately.
        m_lastSyncStatus = "Updated sample sermons";
        return;
    }
    const std::vector<SermonNote> samples = buildSampleSermons(model::toDateTime(m_clock.now()));
    std::optional<std::vector<std::string>> recorded = m_storage.seededSampleIds();
    bool changed = !recorded;
    std::vector<std::string> seeded = recorded.value_or(std::vector<std::string>{});
    if (!recorded && m_preferences.value(sampleSermonsSeededKey)) {
        // The list older versions kept for all libraries belongs to the one that already holds
        // sermons; an empty library is a new one and gets its samples.
        if (!m_sermons.empty())
            seeded = m_preferences.stringList(sampleSermonsSeededKey);
        m_preferences.remove(sampleSermonsSeededKey);
    }
    for (const SermonNote& sample : samples) {
        const std::string id = sample.id.text();
        if (std::find(seeded.begin(), seeded.end(), id) != seeded.end())
            continue;
        if (!sermon(sample.id)) {
            m_sermons.push_back(sample);
            store(sample);
        }
        seeded.push_back(id);
        changed = true;
    }
    if (changed)
        m_storage.saveSeededSampleIds(seeded);
    if (!samples.empty() && (!m_currentSermonId || !sermon(*m_currentSermonId)) && sermon(samples.front().id))
        setCurrentSermonId(samples.front().id);
    m_lastSyncStatus = "Loaded sample sermons";
}

void SermonNotesManager::hideSampleSermons() {
    m_preferences.set(sampleSermonsHiddenKey, true);
    for (const SermonNote& sermon : m_sermons)
        if (isSampleSermon(sermon.id))
            setHidden(sermon.id, true);
}

void SermonNotesManager::showSampleSermons() {
    m_preferences.set(sampleSermonsHiddenKey, false);
    m_storage.saveSeededSampleIds({});
    for (const SermonNote& sample : buildSampleSermons(model::toDateTime(m_clock.now())))
        setHidden(sample.id, false);
    seedSampleSermons();
}

bool SermonNotesManager::add(const SermonNote& sermon) {
    if (SermonNote* present = findMutable(sermon.id))
        *present = sermon;
    else
        m_sermons.push_back(sermon);
    if (!store(sermon))
        return false;
    setSavedStatus();
    return true;
}

std::optional<fs::path> SermonNotesManager::exportArchive() const {
    return exportArchive(platform::temporaryFolder());
}

std::optional<fs::path> SermonNotesManager::exportArchive(const fs::path& folder) const {
    return model::writeArchive(m_sermons, model::toDateTime(m_clock.now()), folder);
}

std::optional<int> SermonNotesManager::startWatching() {
    if (!m_storage.isUsingCloud())
        return std::nullopt;
    try {
        m_watcher = std::make_unique<platform::FolderWatcher>(m_storage.sermonsFolder());
        return m_watcher->fileDescriptor();
    } catch (const platform::FileError& failure) {
        spdlog::warn("Changes in the sync folder will not be noticed: {}", failure.what());
        return std::nullopt;
    }
}

bool SermonNotesManager::handleFolderChanges() {
    if (!m_watcher)
        return false;
    auto names = m_watcher->readChanges();
    if (std::none_of(names.begin(), names.end(), concernsSermonFiles))
        return false;
    syncFromCloud();
    return true;
}

} // namespace quillon::store
