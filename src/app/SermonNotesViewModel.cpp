#include "app/SermonNotesViewModel.h"

#include "app/ControllerTexts.h"
#include "app/OutlineEditing.h"
#include "scripture/ScriptureLink.h"

#include <algorithm>

namespace quillon::app {

namespace {

std::optional<model::Uuid> storedId(const platform::Preferences& preferences, const char* key) {
    return model::Uuid::parse(preferences.string(key));
}

void storeId(platform::Preferences& preferences, const char* key, const std::optional<model::Uuid>& id) {
    // Only a real change is written: every write of the preferences replaces their file.
    if (storedId(preferences, key) == id && preferences.contains(key) == id.has_value())
        return;
    if (id)
        preferences.set(key, id->text());
    else
        preferences.remove(key);
}

} // namespace

SermonNotesViewModel::SermonNotesViewModel(store::SermonNotesManager& store, platform::Preferences& preferences,
                                           const exports::VerseTextSource& verses, const platform::Clock& clock)
    : m_store(store), m_preferences(preferences), m_verses(verses), m_clock(clock), m_trash(store, preferences, clock),
      m_backups([&store] { return store.storage().mediaFolder(); }, preferences, clock),
      m_interface(InterfaceState::read(preferences)) {
    restoreSelection();
}

void SermonNotesViewModel::start() {
    m_interface = InterfaceState::read(m_preferences);
    m_store.load();
    m_store.seedSampleSermons();
    restoreSelection();
    notifyLibrary();
    notifySelection();
}

// Listeners -----------------------------------------------------------------------------------

void SermonNotesViewModel::addListener(SermonNotesListener& listener) {
    if (std::find(m_listeners.begin(), m_listeners.end(), &listener) == m_listeners.end())
        m_listeners.push_back(&listener);
}

void SermonNotesViewModel::removeListener(SermonNotesListener& listener) {
    std::erase(m_listeners, &listener);
}

void SermonNotesViewModel::post(StatusMessage message) {
    m_lastStatus = message;
    if (message.kind == StatusMessage::Kind::alert)
        setSheet(Sheet::statusAlert, true);
    // A copy, so a listener may remove itself while being told.
    const auto listeners = m_listeners;
    for (auto* listener : listeners)
        listener->statusPosted(message);
}

void SermonNotesViewModel::notifySelection() {
    const auto listeners = m_listeners;
    for (auto* listener : listeners)
        listener->selectionChanged();
}

void SermonNotesViewModel::notifySermon(const model::Uuid& sermonId) {
    const auto listeners = m_listeners;
    for (auto* listener : listeners)
        listener->sermonChanged(sermonId);
}

void SermonNotesViewModel::notifyLibrary() {
    const auto listeners = m_listeners;
    for (auto* listener : listeners)
        listener->libraryChanged();
}

void SermonNotesViewModel::notifyInterface() {
    const auto listeners = m_listeners;
    for (auto* listener : listeners)
        listener->interfaceStateChanged();
}

// Interface state -----------------------------------------------------------------------------

void SermonNotesViewModel::persistInterface() {
    const InterfaceState stored = InterfaceState::read(m_preferences);
    auto write = [&](const char* key, auto value, auto before) {
        if (value != before)
            m_preferences.set(key, value);
    };
    write(InterfaceState::topicColumnWidthKey, m_interface.topicColumnWidth, stored.topicColumnWidth);
    write(InterfaceState::subtopicColumnWidthKey, m_interface.subtopicColumnWidth, stored.subtopicColumnWidth);
    write(InterfaceState::scriptureColumnWidthKey, m_interface.scriptureColumnWidth, stored.scriptureColumnWidth);
    write(InterfaceState::compactLayoutKey, m_interface.compactLayout, stored.compactLayout);
    write(InterfaceState::readingModeKey, m_interface.readingMode, stored.readingMode);
    write(InterfaceState::layoutStyleKey, std::string(rawValue(m_interface.layoutStyle)),
          std::string(rawValue(stored.layoutStyle)));
    write(InterfaceState::scriptureSearchQueryKey, m_interface.scriptureSearchQuery, stored.scriptureSearchQuery);
    write(InterfaceState::recentSermonFilesKey, m_interface.recentSermonFiles, stored.recentSermonFiles);
    notifyInterface();
}

void SermonNotesViewModel::setTopicColumnWidth(double width) {
    m_interface.topicColumnWidth = InterfaceState::columnWidth(width, InterfaceState::topicColumnWidthCap,
                                                               InterfaceState::defaultTopicColumnWidth);
    persistInterface();
}

void SermonNotesViewModel::setSubtopicColumnWidth(double width) {
    m_interface.subtopicColumnWidth = InterfaceState::columnWidth(width, InterfaceState::subtopicColumnWidthCap,
                                                                  InterfaceState::defaultSubtopicColumnWidth);
    persistInterface();
}

void SermonNotesViewModel::setScriptureColumnWidth(double width) {
    m_interface.scriptureColumnWidth = InterfaceState::columnWidth(width, InterfaceState::scriptureColumnWidthCap,
                                                                   InterfaceState::defaultScriptureColumnWidth);
    persistInterface();
}

void SermonNotesViewModel::setCompactLayout(bool on) {
    m_interface.compactLayout = on;
    persistInterface();
}

void SermonNotesViewModel::setReadingMode(bool on) {
    m_interface.readingMode = on;
    persistInterface();
}

void SermonNotesViewModel::setLayoutStyle(AppLayoutStyle style) {
    m_interface.layoutStyle = style;
    persistInterface();
}

void SermonNotesViewModel::setScriptureSearchQuery(std::string query) {
    m_interface.scriptureSearchQuery = std::move(query);
    persistInterface();
}

// Sheets --------------------------------------------------------------------------------------

void SermonNotesViewModel::setSheet(Sheet sheet, bool open) {
    bool& flag = m_sheets[static_cast<std::size_t>(sheet)];
    if (flag == open)
        return;
    flag = open;
    const auto listeners = m_listeners;
    for (auto* listener : listeners)
        listener->sheetChanged(sheet, open);
}

void SermonNotesViewModel::open(Sheet sheet) {
    setSheet(sheet, true);
}

void SermonNotesViewModel::close(Sheet sheet) {
    setSheet(sheet, false);
}

// Selection -----------------------------------------------------------------------------------

const model::SermonNote* SermonNotesViewModel::selectedSermon() const {
    return m_selection.sermonId ? m_store.sermon(*m_selection.sermonId) : nullptr;
}

std::string SermonNotesViewModel::detailTitle() const {
    const model::SermonNote* sermon = selectedSermon();
    return sermon ? sermon->title : noSermonSelectedText;
}

void SermonNotesViewModel::rememberSelection() {
    storeId(m_preferences, selectedSermonKey, m_selection.sermonId);
    storeId(m_preferences, selectedTopicKey, m_selection.topicId);
    storeId(m_preferences, selectedSubTopicKey, m_selection.subTopicId);
    storeId(m_preferences, selectedScriptureKey, m_selection.scriptureId);
}

void SermonNotesViewModel::restoreSelection() {
    OutlineSelection restored;
    restored.sermonId = storedId(m_preferences, selectedSermonKey);
    // Without a remembered sermon the store's current one (the newest, or the first sample) is shown.
    if (!restored.sermonId || !m_store.sermon(*restored.sermonId))
        restored.sermonId = m_store.currentSermonId();
    restored.topicId = storedId(m_preferences, selectedTopicKey);
    restored.subTopicId = storedId(m_preferences, selectedSubTopicKey);
    restored.scriptureId = storedId(m_preferences, selectedScriptureKey);
    m_selection = restored;
    repairSelection();
}

void SermonNotesViewModel::repairSelection() {
    // Keeps the longest chain of ids that still nest inside each other; everything below a
    // missing level is cleared.
    const model::SermonNote* sermon = selectedSermon();
    if (!sermon) {
        m_selection = {};
        return;
    }
    const model::SermonTopic* topic = m_selection.topicId ? findTopic(*sermon, *m_selection.topicId) : nullptr;
    if (!topic) {
        m_selection.topicId.reset();
        m_selection.subTopicId.reset();
        m_selection.scriptureId.reset();
        return;
    }
    auto subTopic = std::find_if(topic->subTopics.begin(), topic->subTopics.end(),
                                 [&](const auto& item) { return m_selection.subTopicId == item.id; });
    if (subTopic == topic->subTopics.end()) {
        m_selection.subTopicId.reset();
        m_selection.scriptureId.reset();
        return;
    }
    const bool scriptureThere = std::any_of(subTopic->scriptures.begin(), subTopic->scriptures.end(),
                                            [&](const auto& item) { return m_selection.scriptureId == item.id; });
    if (!scriptureThere)
        m_selection.scriptureId.reset();
}

bool SermonNotesViewModel::selectSermon(std::optional<model::Uuid> id) {
    if (id && !m_store.sermon(*id))
        return false;
    if (m_selection.sermonId == id)
        return true;
    m_selection = OutlineSelection{id, std::nullopt, std::nullopt, std::nullopt};
    m_store.setCurrentSermonId(id);
    rememberSelection();
    notifySelection();
    return true;
}

bool SermonNotesViewModel::selectTopic(std::optional<model::Uuid> id) {
    const model::SermonNote* sermon = selectedSermon();
    if (id && (!sermon || !findTopic(*sermon, *id)))
        return false;
    if (m_selection.topicId != id) {
        m_selection.topicId = id;
        m_selection.subTopicId.reset();
        m_selection.scriptureId.reset();
    }
    rememberSelection();
    notifySelection();
    return true;
}

bool SermonNotesViewModel::selectSubTopic(std::optional<model::Uuid> id) {
    if (!id) {
        m_selection.subTopicId.reset();
        m_selection.scriptureId.reset();
    } else {
        const model::SermonNote* sermon = selectedSermon();
        const auto location = sermon ? locate(*sermon, *id) : std::nullopt;
        if (!location || location->type() != DeleteType::subTopic)
            return false;
        if (m_selection.subTopicId != id)
            m_selection.scriptureId.reset();
        m_selection.topicId = location->topicId;
        m_selection.subTopicId = id;
    }
    rememberSelection();
    notifySelection();
    return true;
}

bool SermonNotesViewModel::selectScripture(std::optional<model::Uuid> id) {
    if (!id) {
        m_selection.scriptureId.reset();
    } else {
        const model::SermonNote* sermon = selectedSermon();
        const auto location = sermon ? locate(*sermon, *id) : std::nullopt;
        if (!location || location->type() != DeleteType::scripture)
            return false;
        m_selection.topicId = location->topicId;
        m_selection.subTopicId = location->subTopicId;
        m_selection.scriptureId = id;
    }
    rememberSelection();
    notifySelection();
    return true;
}

bool SermonNotesViewModel::openScriptureLink(std::string_view link) {
    const auto scriptureId = scripture::scriptureFromLink(link);
    if (!scriptureId)
        return false;
    // The selected sermon is the likeliest holder: a manuscript's links point into its own outline.
    std::vector<const model::SermonNote*> candidates;
    if (const auto* selected = selectedSermon())
        candidates.push_back(selected);
    for (const auto& sermon : m_store.sermons())
        candidates.push_back(&sermon);
    for (const auto* sermon : candidates) {
        const auto location = locate(*sermon, *scriptureId);
        if (!location || location->type() != DeleteType::scripture)
            continue;
        if (m_selection.sermonId != sermon->id)
            m_store.setCurrentSermonId(sermon->id);
        m_selection = OutlineSelection{sermon->id, location->topicId, location->subTopicId, location->scriptureId};
        rememberSelection();
        notifySelection();
        return true;
    }
    return false;
}

// Undo and redo -------------------------------------------------------------------------------

bool SermonNotesViewModel::undo() {
    if (!canUndo())
        return false;
    const model::Uuid sermonId = m_store.undoStack().back().sermonId;
    m_store.undo();
    repairSelection();
    rememberSelection();
    notifySermon(sermonId);
    notifySelection();
    post({"Undone", m_store.lastSyncStatus(), StatusMessage::Kind::toast});
    return true;
}

bool SermonNotesViewModel::redo() {
    if (!canRedo())
        return false;
    const model::Uuid sermonId = m_store.redoStack().back().sermonId;
    m_store.redo();
    repairSelection();
    rememberSelection();
    notifySermon(sermonId);
    notifySelection();
    post({"Redone", m_store.lastSyncStatus(), StatusMessage::Kind::toast});
    return true;
}

// Outline deletion ----------------------------------------------------------------------------

void SermonNotesViewModel::requestDeletion(DeleteType type, const model::Uuid& itemId) {
    m_pendingDeleteType = type;
    m_pendingDeleteId = itemId;
    setSheet(Sheet::deleteConfirmation, true);
}

std::string SermonNotesViewModel::deletionMessage() const {
    if (!m_pendingDeleteType || !m_pendingDeleteId)
        return {};
    const model::SermonNote* holder = nullptr;
    for (const auto& sermon : m_store.sermons())
        if (locate(sermon, *m_pendingDeleteId)) {
            holder = &sermon;
            break;
        }
    return outlineDeletionMessage(holder, *m_pendingDeleteType, *m_pendingDeleteId);
}

void SermonNotesViewModel::cancelDeletion() {
    m_pendingDeleteType.reset();
    m_pendingDeleteId.reset();
    setSheet(Sheet::deleteConfirmation, false);
}

bool SermonNotesViewModel::confirmDeletion() {
    if (!m_pendingDeleteType || !m_pendingDeleteId) {
        cancelDeletion();
        return false;
    }
    const DeleteType type = *m_pendingDeleteType;
    const model::Uuid itemId = *m_pendingDeleteId;
    cancelDeletion();

    std::optional<model::Uuid> sermonId;
    std::optional<OutlineLocation> location;
    for (const auto& sermon : m_store.sermons())
        if ((location = locate(sermon, itemId))) {
            sermonId = sermon.id;
            break;
        }
    if (!sermonId || location->type() != type)
        return failEdit("Quillon could not find that item; it may have been deleted already.");

    const bool removed =
        edit(*sermonId, "Deleted", [&](model::SermonNote& copy) { return removeOutlineItem(copy, type, itemId); });
    if (!removed || m_selection.sermonId != sermonId)
        return removed;
    // The selection moves to the parent of what was removed when it pointed into it.
    const bool selectionInside =
        m_selection.topicId == itemId || m_selection.subTopicId == itemId || m_selection.scriptureId == itemId;
    if (selectionInside) {
        if (type == DeleteType::topic) {
            m_selection.topicId.reset();
            m_selection.subTopicId.reset();
            m_selection.scriptureId.reset();
        } else if (type == DeleteType::subTopic) {
            m_selection.topicId = location->topicId;
            m_selection.subTopicId.reset();
            m_selection.scriptureId.reset();
        } else {
            m_selection.topicId = location->topicId;
            m_selection.subTopicId = location->subTopicId;
            m_selection.scriptureId.reset();
        }
    }
    repairSelection();
    rememberSelection();
    notifySelection();
    return true;
}

} // namespace quillon::app
