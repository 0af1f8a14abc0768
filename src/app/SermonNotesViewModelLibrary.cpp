// Whole sermons in SermonNotesViewModel: create, trash, tag, open, import and shared content.

#include "app/SermonNotesViewModel.h"

#include "app/ControllerTexts.h"
#include "app/TextRules.h"
#include "export/DocumentImporter.h"
#include "export/ExportError.h"
#include "export/LibraryReferences.h"
#include "model/SermonDocument.h"
#include "platform/FileError.h"

#include <spdlog/spdlog.h>

#include <algorithm>

namespace quillon::app {

namespace {

bool isBlank(std::string_view text) {
    return trimmed(text).empty();
}

std::string fileName(const std::filesystem::path& file) {
    const auto name = file.filename().string();
    return name.empty() ? file.parent_path().filename().string() : name;
}

} // namespace

std::optional<model::Uuid> SermonNotesViewModel::createSermon(const NewSermon& form) {
    for (const auto* text : {&form.title, &form.speaker})
        if (!isValidText(*text)) {
            post({"Create Failed", "The sermon's details must be plain UTF-8 text.", StatusMessage::Kind::alert});
            return std::nullopt;
        }
    if (isBlank(form.title) || (form.series && !isValidText(*form.series))) {
        post({"Create Failed", "A sermon needs a title.", StatusMessage::Kind::alert});
        return std::nullopt;
    }
    const auto now = model::toDateTime(m_clock.now());
    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = form.title;
    sermon.date = form.date.value_or(std::chrono::floor<std::chrono::days>(now));
    sermon.speaker = form.speaker;
    if (form.series && !isBlank(*form.series))
        sermon.series = form.series;
    sermon.createdAt = sermon.modifiedAt = now;
    sermon.topics = store::outline(form.sermonTemplate);
    if (!m_store.add(sermon)) {
        // The sermon stays in memory, as after any failed save; the next edit writes it again.
        post({"Create Failed", "Quillon could not save the sermon " + curlyQuoted(sermon.title) + ".",
              StatusMessage::Kind::alert});
        return std::nullopt;
    }
    notifyLibrary();
    selectSermon(sermon.id);
    post({"Sermon Created", curlyQuoted(sermon.title), StatusMessage::Kind::toast});
    return sermon.id;
}

std::optional<std::string> SermonNotesViewModel::newSermonStorageNote() const {
    if (auto available = m_backups.freeSpaceWarning(m_store.storage().sermonsFolder()))
        return store::lowStorageForNewSermonMessage(*available);
    return std::nullopt;
}

bool SermonNotesViewModel::createDraft(const model::SermonNote& draft) {
    if (!m_store.add(draft)) {
        post({"Create Failed", "Quillon could not save the sermon " + curlyQuoted(draft.title) + ".",
              StatusMessage::Kind::alert});
        return false;
    }
    notifyLibrary();
    selectSermon(draft.id);
    post({"Draft Created", "Created " + draft.title, StatusMessage::Kind::toast});
    return true;
}

// Batch selection and the trash ---------------------------------------------------------------

void SermonNotesViewModel::setBatchSelection(bool on) {
    m_batchSelection = on;
    if (!on)
        m_batchSelected.clear();
    notifySelection();
}

void SermonNotesViewModel::setBatchSelected(const model::Uuid& sermonId, bool selected) {
    if (selected)
        m_batchSelected.insert(sermonId);
    else
        m_batchSelected.erase(sermonId);
    notifySelection();
}

void SermonNotesViewModel::requestMoveToTrash(std::vector<model::Uuid> sermonIds) {
    m_pendingTrash = std::move(sermonIds);
    setSheet(Sheet::sermonDeleteConfirmation, true);
}

std::string SermonNotesViewModel::trashConfirmationMessage() const {
    std::vector<std::string> titles;
    for (const auto& id : m_pendingTrash)
        if (const auto* sermon = m_store.sermon(id))
            titles.push_back(sermon->title);
    return app::trashConfirmationMessage(titles, m_pendingTrash.size(), m_trash.retentionDays());
}

void SermonNotesViewModel::cancelMoveToTrash() {
    m_pendingTrash.clear();
    setSheet(Sheet::sermonDeleteConfirmation, false);
}

std::size_t SermonNotesViewModel::confirmMoveToTrash() {
    const auto ids = m_pendingTrash;
    cancelMoveToTrash();
    std::size_t moved = 0;
    std::vector<std::string> failed;
    for (const auto& id : ids) {
        const model::SermonNote* sermon = m_store.sermon(id);
        if (!sermon)
            continue;
        const model::SermonNote copy = *sermon;
        if (!m_trash.moveToTrash(copy)) {
            failed.push_back(copy.title);
            continue;
        }
        ++moved;
        m_batchSelected.erase(id);
        if (m_selection.sermonId == id)
            m_selection = {};
    }
    rememberSelection();
    notifyLibrary();
    notifySelection();
    if (moved == 0 && !failed.empty()) {
        post({"Move to Trash Failed", "Quillon could not move " + curlyQuoted(failed.front()) + " to Trash.",
              StatusMessage::Kind::alert});
        return 0;
    }
    post({"Moved to Trash", movedToTrashDetail(moved), StatusMessage::Kind::toast});
    return moved;
}

std::optional<model::Uuid> SermonNotesViewModel::duplicateSermon(const model::Uuid& sermonId) {
    const model::SermonNote* sermon = m_store.sermon(sermonId);
    if (!sermon) {
        failEdit("Quillon could not find that sermon; it may have been moved to Trash.");
        return std::nullopt;
    }
    const model::SermonNote copy = m_store.duplicate(*sermon);
    notifyLibrary();
    selectSermon(copy.id);
    post({"Sermon Duplicated", curlyQuoted(copy.title), StatusMessage::Kind::toast});
    return copy.id;
}

bool SermonNotesViewModel::restoreVersion(const model::SermonNote& snapshot) {
    return edit(snapshot.id, "Version Restored", [&](model::SermonNote& sermon) {
        sermon = snapshot;
        return true;
    });
}

bool SermonNotesViewModel::restoreFromTrash(const model::Uuid& sermonId) {
    const auto restored = m_trash.restore(sermonId);
    if (!restored) {
        post({"Restore Failed", "Quillon could not find that sermon in Trash.", StatusMessage::Kind::alert});
        return false;
    }
    notifyLibrary();
    post({"Restored from Trash", curlyQuoted(restored->title), StatusMessage::Kind::toast});
    return true;
}

std::size_t SermonNotesViewModel::applyTag(const std::string& tag, const std::vector<model::Uuid>& sermonIds) {
    const std::string clean(trimmed(tag));
    if (clean.empty() || !isValidText(clean)) {
        post({"Tag Not Applied", "A tag needs a name in plain text.", StatusMessage::Kind::alert});
        return 0;
    }
    std::size_t tagged = 0;
    for (const auto& id : sermonIds) {
        const model::SermonNote* sermon = m_store.sermon(id);
        if (!sermon)
            continue;
        ++tagged;
        if (std::find(sermon->tags.begin(), sermon->tags.end(), clean) != sermon->tags.end())
            continue;
        model::SermonNote copy = *sermon;
        copy.tags.push_back(clean);
        m_store.update(copy);
        notifySermon(id);
    }
    post({"Tag Applied", curlyQuoted(clean) + " applied to " + counted(tagged, "sermon", "sermons") + ".",
          StatusMessage::Kind::toast});
    return tagged;
}

// Open and import -----------------------------------------------------------------------------

std::optional<model::Uuid> SermonNotesViewModel::openDocument(const std::filesystem::path& file) {
    std::vector<model::SermonNote> read;
    try {
        read = model::readSermonImportFile(file);
    } catch (const std::exception& failure) {
        spdlog::error("Failed to open {}: {}", file.string(), failure.what());
    }
    if (read.size() != 1) {
        post({"Open Failed", "Could not read " + fileName(file), StatusMessage::Kind::alert});
        return std::nullopt;
    }
    const model::SermonNote& sermon = read.front();
    // A document that is already in the library replaces it: opening it is taking that copy.
    m_store.importSermons(read, model::SermonImportMode::replaceDuplicates);
    if (!m_store.sermon(sermon.id)) {
        post({"Open Failed", "Could not read " + fileName(file), StatusMessage::Kind::alert});
        return std::nullopt;
    }
    m_interface.rememberRecentFile(std::filesystem::absolute(file).lexically_normal().string());
    persistInterface();
    notifyLibrary();
    notifySermon(sermon.id);
    m_selection = {};
    selectSermon(sermon.id);
    post({"Opened", curlyQuoted(sermon.title), StatusMessage::Kind::toast});
    return sermon.id;
}

std::optional<int> SermonNotesViewModel::importArchive(const std::filesystem::path& file,
                                                       model::SermonImportMode mode) {
    std::vector<model::SermonNote> incoming;
    try {
        incoming = model::readSermonImportFile(file);
    } catch (const std::exception& failure) {
        spdlog::error("Failed to import {}: {}", file.string(), failure.what());
    }
    if (incoming.empty()) {
        post({"Import Failed", "Failed to import " + fileName(file), StatusMessage::Kind::alert});
        return std::nullopt;
    }
    const bool allPresent = std::all_of(incoming.begin(), incoming.end(),
                                        [&](const model::SermonNote& sermon) { return m_store.sermon(sermon.id); });
    const int count = m_store.importSermons(incoming, mode);
    notifyLibrary();
    if (allPresent && count == 0) {
        post({"Nothing Imported", "Every sermon in " + curlyQuoted(fileName(file)) + " is already in your library.",
              StatusMessage::Kind::toast});
        return 0;
    }
    post({"Imported", counted(static_cast<std::size_t>(count), "sermon", "sermons"), StatusMessage::Kind::toast});
    return count;
}

std::optional<model::Uuid> SermonNotesViewModel::importOutlineDocument(const std::filesystem::path& file) {
    model::SermonNote draft;
    try {
        exports::DocumentImporter importer(exports::libraryReferenceRecognizer());
        draft = importer.importFile(file, model::toDateTime(m_clock.now()));
    } catch (const exports::ExportError& failure) {
        post({"Import Failed", failure.what(), StatusMessage::Kind::alert});
        return std::nullopt;
    }
    if (!m_store.add(draft)) {
        post({"Import Failed", "Quillon could not save the imported draft " + curlyQuoted(draft.title) + ".",
              StatusMessage::Kind::alert});
        return std::nullopt;
    }
    notifyLibrary();
    selectSermon(draft.id);
    post({"Imported", counted(1, "sermon", "sermons"), StatusMessage::Kind::toast});
    return draft.id;
}

std::size_t SermonNotesViewModel::receiveSharedSermons(const std::vector<model::SermonNote>& sermons) {
    std::vector<const model::SermonNote*> added;
    for (const auto& sermon : sermons)
        if (m_store.add(sermon))
            added.push_back(&sermon);
    if (added.empty())
        return 0;
    notifyLibrary();
    selectSermon(added.front()->id);
    if (added.size() == 1)
        post({"Sermon Created", curlyQuoted(added.front()->title) + " from a share.", StatusMessage::Kind::toast});
    else
        post({"Sermons Created", std::to_string(added.size()) + " sermons from shared content.",
              StatusMessage::Kind::toast});
    return added.size();
}

} // namespace quillon::app
