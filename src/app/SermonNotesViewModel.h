#pragma once

#include "app/DeleteType.h"
#include "app/ExportFormat.h"
#include "app/FileJobs.h"
#include "app/InterfaceState.h"
#include "app/RecordingTranscriptionStage.h"
#include "app/SermonNotesListener.h"
#include "app/Sheet.h"
#include "app/StatusMessage.h"
#include "export/SelfTest.h"
#include "export/VerseTextSource.h"
#include "model/BibleVersion.h"
#include "model/SermonNote.h"
#include "platform/Clock.h"
#include "platform/Preferences.h"
#include "store/SermonBackupManager.h"
#include "store/SermonNotesManager.h"
#include "store/SermonTemplate.h"
#include "store/SermonTrashManager.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::app {

/// The selected sermon and outline items; each deeper id is absent unless the shallower ones are set.
struct OutlineSelection {
    std::optional<model::Uuid> sermonId;
    std::optional<model::Uuid> topicId;
    std::optional<model::Uuid> subTopicId;
    std::optional<model::Uuid> scriptureId;

    bool operator==(const OutlineSelection&) const = default;
};

/// What the new-sermon form asks for.
struct NewSermon {
    std::string title;
    std::string speaker;
    /// The day it is preached; absent means today.
    std::optional<model::DateTime> date;
    std::optional<std::string> series;
    store::SermonTemplate sermonTemplate = store::SermonTemplate::blank;
};

/// A change of a sermon's metadata; only the fields that are set change. An empty series, venue
/// or colour removes it.
struct SermonMetadataChange {
    std::optional<std::string> title{};
    std::optional<std::string> speaker{};
    std::optional<std::string> series{};
    std::optional<std::string> venue{};
    std::optional<model::DateTime> date{};
    std::optional<std::vector<std::string>> tags{};
    /// "#RRGGBB" or "RRGGBB", either case.
    std::optional<std::string> colour{};
};

/// The desk's one controller, between the interface and the sermon store: it owns the selection,
/// the persisted look of the desk, the open flag of every sheet and confirmation, and every
/// command the menus, the palette, the sheets and the command line invoke.
///
/// Every change to a sermon is one `update` of the store (an undo checkpoint, coalesced as the store
/// does, a version snapshot when due, an atomic write). Outcomes are published as StatusMessage
/// values to every listener; the controller never prints and never opens a window. Failures are
/// never thrown: a command that cannot go ahead publishes an alert, returns false or nothing, and
/// leaves the library as it was. Lives on the main thread.
///
/// Recording to draft hooks in here: the transcription flow keeps its stage in recordingStage(),
/// publishes its texts through post() and adds the draft with createDraft(); its own files sit
/// beside this one in src/app.
class SermonNotesViewModel {
public:
    static constexpr const char* selectedSermonKey = "Quillon.selectedSermonIdForNavigation";
    static constexpr const char* selectedTopicKey = "Quillon.selectedTopicId";
    static constexpr const char* selectedSubTopicKey = "Quillon.selectedSubTopicId";
    static constexpr const char* selectedScriptureKey = "Quillon.selectedScriptureId";

    /// `store` (already loaded, or loaded by start()), `preferences`, `verses` and `clock` must
    /// outlive the controller. Reads the persisted interface state and restores the selection.
    SermonNotesViewModel(store::SermonNotesManager& store, platform::Preferences& preferences,
                         const exports::VerseTextSource& verses,
                         const platform::Clock& clock = platform::SystemClock::shared());
    SermonNotesViewModel(const SermonNotesViewModel&) = delete;
    SermonNotesViewModel& operator=(const SermonNotesViewModel&) = delete;

    /// Loads the library through the store, seeds the samples and restores the selection.
    void start();

    store::SermonNotesManager& store() { return m_store; }
    const store::SermonNotesManager& store() const { return m_store; }
    /// The sermon with `id`, or null.
    const model::SermonNote* sermon(const model::Uuid& id) const { return m_store.sermon(id); }

    // Listeners -------------------------------------------------------------------------------

    /// `listener` is told of every change until it is removed; it must outlive that.
    void addListener(SermonNotesListener& listener);
    void removeListener(SermonNotesListener& listener);
    /// Publishes `message` to every listener (and opens the status alert for an alert).
    void post(StatusMessage message);
    /// The last message published, if any.
    const std::optional<StatusMessage>& lastStatus() const { return m_lastStatus; }

    // Interface state -------------------------------------------------------------------------

    const InterfaceState& interfaceState() const { return m_interface; }
    void setTopicColumnWidth(double width);
    void setSubtopicColumnWidth(double width);
    void setScriptureColumnWidth(double width);
    void setCompactLayout(bool on);
    void setReadingMode(bool on);
    void setLayoutStyle(AppLayoutStyle style);
    void setScriptureSearchQuery(std::string query);

    bool isEditing() const { return m_isEditing; }
    void setEditing(bool on) { m_isEditing = on; }
    int activeVerseIndex() const { return m_activeVerseIndex; }
    void setActiveVerseIndex(int index) { m_activeVerseIndex = index; }
    bool showsSermonListTitle() const { return m_showsSermonListTitle; }
    void setShowsSermonListTitle(bool on) { m_showsSermonListTitle = on; }
    /// True while search looks in every group (the start state).
    bool searchesAllGroups() const { return m_searchesAllGroups; }
    void setSearchesAllGroups(bool on) { m_searchesAllGroups = on; }

    // Sheets and confirmations ----------------------------------------------------------------

    bool isOpen(Sheet sheet) const { return m_sheets[static_cast<std::size_t>(sheet)]; }
    void open(Sheet sheet);
    void close(Sheet sheet);

    // Selection and navigation ----------------------------------------------------------------

    const OutlineSelection& selection() const { return m_selection; }
    /// The selected sermon, or null.
    const model::SermonNote* selectedSermon() const;
    /// The selected sermon's title, or "No Sermon Selected".
    std::string detailTitle() const;
    /// Selects a sermon (none clears the selection) and clears the outline selection. False when
    /// there is no such sermon.
    bool selectSermon(std::optional<model::Uuid> id);
    /// Select an item of the selected sermon; its parents are selected with it and deeper items
    /// are cleared. None clears that level and the ones below. False when there is no such item.
    bool selectTopic(std::optional<model::Uuid> id);
    bool selectSubTopic(std::optional<model::Uuid> id);
    bool selectScripture(std::optional<model::Uuid> id);
    /// Follows "quillscripture://<UUID>": selects the sermon, topic, sub-topic and scripture that
    /// hold it. False, with the selection unchanged, when the link is not one or its scripture is gone.
    bool openScriptureLink(std::string_view link);

    // Outline editing: each change is one store update --------------------------------------------

    /// Appends a topic; its id, or nothing when the sermon is gone or the title is empty.
    std::optional<model::Uuid> addTopic(const model::Uuid& sermonId, const std::string& title);
    std::optional<model::Uuid> addSubTopic(const model::Uuid& sermonId, const model::Uuid& topicId,
                                           const std::string& title);
    /// Reads `typed` as a reference ("rom 8 28-30"); a trailing version code ("John 3:16 ASV") is
    /// taken as its version unless `version` is given. Text that is not a reference changes
    /// nothing and publishes an alert saying so.
    std::optional<model::Uuid> addScripture(const model::Uuid& sermonId, const model::Uuid& subTopicId,
                                            std::string_view typed,
                                            std::optional<model::BibleVersion> version = std::nullopt);
    /// Renames a topic or sub-topic.
    bool renameOutlineItem(const model::Uuid& sermonId, const model::Uuid& itemId, const std::string& title);
    /// Moves a topic to `to` (0 is first; past the end is last).
    bool moveTopic(const model::Uuid& sermonId, const model::Uuid& topicId, std::size_t to);
    /// Moves a sub-topic to `to` within `toTopic` (default: its own topic).
    bool moveSubTopic(const model::Uuid& sermonId, const model::Uuid& subTopicId, std::size_t to,
                      std::optional<model::Uuid> toTopic = std::nullopt);
    /// Moves a scripture to `to` within `toSubTopic` (default: its own sub-topic).
    bool moveScripture(const model::Uuid& sermonId, const model::Uuid& scriptureId, std::size_t to,
                       std::optional<model::Uuid> toSubTopic = std::nullopt);
    /// Sets a topic's or sub-topic's details; `rtf` is the rich twin (absent removes a stale one).
    bool setDetails(const model::Uuid& sermonId, const model::Uuid& itemId, const std::string& text,
                    std::optional<std::string> rtf = std::nullopt);
    /// Sets the manuscript; `rtf` is the rich twin (absent removes a stale one).
    bool setNotes(const model::Uuid& sermonId, const std::string& text, std::optional<std::string> rtf = std::nullopt);
    bool setMetadata(const model::Uuid& sermonId, const SermonMetadataChange& change);
    /// Stores JPEG bytes as the cover image in the store's media folder.
    bool setCoverImage(const model::Uuid& sermonId, std::string_view jpegBytes);
    bool removeCoverImage(const model::Uuid& sermonId);
    bool setPinned(const model::Uuid& sermonId, bool pinned);
    bool setHidden(const model::Uuid& sermonId, bool hidden);
    bool setScriptureVersion(const model::Uuid& sermonId, const model::Uuid& scriptureId, model::BibleVersion version);
    /// Highlights word `word` of the passage in `colour`; nothing removes the highlight.
    bool setWordHighlight(const model::Uuid& sermonId, const model::Uuid& scriptureId, int word,
                          std::optional<std::string> colour);
    /// Shows or removes a line break after word `word` of the passage.
    bool setLineBreak(const model::Uuid& sermonId, const model::Uuid& scriptureId, int word, bool on);

    bool canUndo() const { return !m_store.undoStack().empty(); }
    bool canRedo() const { return !m_store.redoStack().empty(); }
    bool undo();
    bool redo();

    // Outline deletion: ask, then remove ----------------------------------------------------------

    /// Notes the item awaiting deletion and opens the confirmation.
    void requestDeletion(DeleteType type, const model::Uuid& itemId);
    std::optional<DeleteType> pendingDeleteType() const { return m_pendingDeleteType; }
    std::optional<model::Uuid> pendingDeleteId() const { return m_pendingDeleteId; }
    /// The confirmation's sentence, built from the item as it stands now.
    std::string deletionMessage() const;
    /// Removes the pending item and everything under it (one undo step) and moves the selection
    /// to its parent. False when nothing was pending or the item is gone.
    bool confirmDeletion();
    void cancelDeletion();

    // Sermons: create, trash, tag ----------------------------------------------------------------

    /// Adds a sermon from the form, selects it and publishes "Sermon Created".
    std::optional<model::Uuid> createSermon(const NewSermon& form);
    /// The note for the new-sermon form when the library's volume is nearly full.
    std::optional<std::string> newSermonStorageNote() const;
    /// Adds a sermon made elsewhere (a transcribed draft) as it is, selects it and publishes
    /// "Draft Created".
    bool createDraft(const model::SermonNote& draft);

    bool batchSelection() const { return m_batchSelection; }
    /// Turning batch selection off empties the set.
    void setBatchSelection(bool on);
    const std::set<model::Uuid>& batchSelectedSermonIds() const { return m_batchSelected; }
    void setBatchSelected(const model::Uuid& sermonId, bool selected);

    /// Notes the sermons awaiting the trash (one, or a batch) and opens the confirmation.
    void requestMoveToTrash(std::vector<model::Uuid> sermonIds);
    const std::vector<model::Uuid>& pendingTrashIds() const { return m_pendingTrash; }
    /// The question for the pending sermons. A batch names its first three titles
    /// (batchTrashNamedTitles) and counts the rest: "“A”, “B”, “C” and 2 more — will move to Trash…".
    std::string trashConfirmationMessage() const;
    /// Moves the pending sermons to the trash and publishes "Moved to Trash"; returns how many moved.
    std::size_t confirmMoveToTrash();
    void cancelMoveToTrash();
    int trashRetentionDays() const { return m_trash.retentionDays(); }

    /// Adds a copy (" Copy" after the title, a new id), selects it and publishes "Sermon Duplicated".
    std::optional<model::Uuid> duplicateSermon(const model::Uuid& sermonId);
    /// Puts an earlier state of a sermon back as one update, so the state it replaces is itself
    /// kept in the history and undoable.
    bool restoreVersion(const model::SermonNote& snapshot);
    /// Takes a sermon out of the trash and back into the library.
    bool restoreFromTrash(const model::Uuid& sermonId);
    /// The trash, for listing what it holds.
    store::SermonTrashManager& trash() { return m_trash; }

    /// Adds `tag` to each sermon (once) and publishes "Tag Applied"; returns how many were tagged.
    std::size_t applyTag(const std::string& tag, const std::vector<model::Uuid>& sermonIds);

    // Files: export, back up, restore, open, import ----------------------------------------------

    /// Writes the sermon in `format` to `destination` (a folder gets the export's own name) and
    /// publishes the format's success title, or "Export Failed" with its sentence.
    std::optional<std::filesystem::path> exportSermon(const model::Uuid& sermonId, ExportFormat format,
                                                      const std::filesystem::path& destination);
    /// Writes the library archive (a folder gets "Quillon.vrnsermons").
    std::optional<std::filesystem::path> exportLibraryArchive(const std::filesystem::path& destination);
    /// exportLibraryArchive() in three steps (FileJobs.h): the job, the writing (worker-safe) and
    /// the message. A cancelled archive is never written and publishes nothing.
    ArchiveJob prepareLibraryArchive(const std::filesystem::path& destination) const;
    static ArchiveOutcome writeLibraryArchive(const ArchiveJob& job, std::stop_token stop = {});
    std::optional<std::filesystem::path> finishLibraryArchive(const ArchiveOutcome& outcome);
    void reportPrintFailure(const model::Uuid& sermonId);
    void reportShareFailure();

    /// Backs the library up into `folder`. On a nearly full volume publishes "Low on Storage" and
    /// stops, unless `continueWhenLow`.
    std::optional<std::filesystem::path> backUp(const std::filesystem::path& folder, bool continueWhenLow = false);
    /// backUp() in three steps (FileJobs.h). The checks publish their alert and give no job; the
    /// writing is safe on a worker thread while the controller lives and leaves no folder when
    /// stopped; finishing publishes "Backup Complete" or "Backup Failed", nothing when cancelled.
    std::optional<BackupJob> prepareBackUp(const std::filesystem::path& folder, bool continueWhenLow = false);
    BackupOutcome writeBackUp(const BackupJob& job, std::stop_token stop = {}) const;
    std::optional<std::filesystem::path> finishBackUp(const BackupOutcome& outcome);
    /// Notes the backup to restore and opens the question; nothing is replaced before confirmRestore().
    void requestRestore(const std::filesystem::path& backupFolder);
    const std::optional<std::filesystem::path>& pendingRestore() const { return m_pendingRestore; }
    std::string restoreQuestion() const;
    std::optional<store::RestoreResult> confirmRestore();
    /// confirmRestore() in three steps (FileJobs.h): the confirmed folder (the question closes;
    /// nothing when none was pending), the reading (worker-safe), then the replacing with "Restore
    /// Complete" or "Restore Failed". A cancelled read replaces nothing and publishes nothing.
    std::optional<std::filesystem::path> takeConfirmedRestore();
    static RestoreRead readBackup(const std::filesystem::path& folder, std::stop_token stop = {});
    std::optional<store::RestoreResult> finishRestore(RestoreRead read);
    void cancelRestore();

    /// Opens a ".quillet" document: adds it, or replaces the sermon with its identity, selects it
    /// and remembers the file among the recent files.
    std::optional<model::Uuid> openDocument(const std::filesystem::path& file);
    /// Imports a library archive or ".quillet" file; returns how many sermons were added or replaced.
    std::optional<int> importArchive(const std::filesystem::path& file,
                                     model::SermonImportMode mode = model::SermonImportMode::skipDuplicates);
    /// Imports a Word, Markdown, RTF or text outline as a new draft sermon.
    std::optional<model::Uuid> importOutlineDocument(const std::filesystem::path& file);
    /// Adds sermons made from content shared by another application.
    std::size_t receiveSharedSermons(const std::vector<model::SermonNote>& sermons);

    // Recording to draft and diagnostics -------------------------------------------------------

    std::optional<RecordingTranscriptionStage> recordingStage() const { return m_recordingStage; }
    void setRecordingStage(std::optional<RecordingTranscriptionStage> stage) { m_recordingStage = stage; }

    /// Runs the diagnostics checks and writes each result to the diagnostics log.
    std::vector<exports::SelfTestResult> runSelfTest() const;

private:
    /// Applies `change` to a copy of the sermon and hands it to the store as one update, then
    /// publishes `doneTitle` with `note`, or with the save status when there is no note (a failed save
    /// is said over either). `change` returns false (after failEdit) to leave everything as it was.
    bool edit(const model::Uuid& sermonId, std::string_view doneTitle,
              const std::function<bool(model::SermonNote&)>& change, const std::string& note = {});
    /// Publishes an "Edit Failed" alert with `sentence`; returns false.
    bool failEdit(const std::string& sentence);
    void rememberSelection();
    void restoreSelection();
    void repairSelection();
    void persistInterface();
    void notifySelection();
    void notifySermon(const model::Uuid& sermonId);
    void notifyLibrary();
    void notifyInterface();
    void setSheet(Sheet sheet, bool open);

    store::SermonNotesManager& m_store;
    platform::Preferences& m_preferences;
    const exports::VerseTextSource& m_verses;
    const platform::Clock& m_clock;
    store::SermonTrashManager m_trash;
    store::SermonBackupManager m_backups;
    std::vector<SermonNotesListener*> m_listeners;
    std::optional<StatusMessage> m_lastStatus;

    InterfaceState m_interface;
    bool m_isEditing = true;
    int m_activeVerseIndex = 0;
    bool m_showsSermonListTitle = true;
    bool m_searchesAllGroups = true;
    std::array<bool, sheetCount> m_sheets{};

    OutlineSelection m_selection;
    std::optional<DeleteType> m_pendingDeleteType;
    std::optional<model::Uuid> m_pendingDeleteId;
    bool m_batchSelection = false;
    std::set<model::Uuid> m_batchSelected;
    std::vector<model::Uuid> m_pendingTrash;
    std::optional<std::filesystem::path> m_pendingRestore;
    std::optional<RecordingTranscriptionStage> m_recordingStage;
};

} // namespace quillon::app
