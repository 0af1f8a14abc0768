// Files in SermonNotesViewModel: exports, backups and restores, printing and sharing failures,
// and the diagnostics self-test.

#include "app/SermonNotesViewModel.h"

#include "app/ControllerTexts.h"
#include "app/TextRules.h"
#include "export/ExportError.h"
#include "export/LibraryReferences.h"
#include "model/SermonDocument.h"
#include "platform/AtomicFile.h"
#include "platform/FileError.h"
#include "store/BackupError.h"

#include <spdlog/spdlog.h>

namespace quillon::app {

namespace {

constexpr const char* archiveFailure = "Quillon could not prepare the sermon archive.";
/// The archive's name when a folder is given.
constexpr const char* archiveFileName = "Quillon.vrnsermons";

bool isFolder(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
}

/// The folder's own name, also when the path ends in a separator.
std::string folderName(const std::filesystem::path& folder) {
    auto normal = folder.lexically_normal();
    if (normal.filename().empty())
        normal = normal.parent_path();
    return normal.filename().string();
}

} // namespace

std::optional<std::filesystem::path> SermonNotesViewModel::exportSermon(const model::Uuid& sermonId,
                                                                        ExportFormat format,
                                                                        const std::filesystem::path& destination) {
    const model::SermonNote* sermon = m_store.sermon(sermonId);
    if (!sermon) {
        post({"Export Failed", std::string(exportFailureSentence(format)), StatusMessage::Kind::alert});
        return std::nullopt;
    }
    const auto exporter = makeExporter(format, m_verses);
    try {
        std::filesystem::path written = destination;
        if (isFolder(destination))
            written = exporter->exportSermon(*sermon, destination);
        else
            exporter->exportSermonTo(*sermon, destination);
        post({std::string(exportedTitle(format)), written.string(), StatusMessage::Kind::toast});
        return written;
    } catch (const exports::ExportError& error) {
        const std::string sentence = *error.what() ? error.what() : std::string(exportFailureSentence(format));
        post({"Export Failed", sentence, StatusMessage::Kind::alert});
    }
    return std::nullopt;
}

std::optional<std::filesystem::path>
SermonNotesViewModel::exportLibraryArchive(const std::filesystem::path& destination) {
    return finishLibraryArchive(writeLibraryArchive(prepareLibraryArchive(destination)));
}

ArchiveJob SermonNotesViewModel::prepareLibraryArchive(const std::filesystem::path& destination) const {
    const std::filesystem::path file = isFolder(destination) ? destination / archiveFileName : destination;
    return {m_store.sermons(), file, model::toDateTime(m_clock.now())};
}

ArchiveOutcome SermonNotesViewModel::writeLibraryArchive(const ArchiveJob& job, std::stop_token stop) {
    ArchiveOutcome outcome;
    try {
        std::string bytes = model::encodeArchive(job.sermons, job.exportDate);
        // The last moment a cancel can leave everything as it was: the write itself is atomic.
        if (stop.stop_requested()) {
            outcome.cancelled = true;
            return outcome;
        }
        platform::writeFileAtomically(job.file, bytes);
        outcome.written = job.file;
    } catch (const std::exception& failure) {
        spdlog::error("Failed to write the sermon archive {}: {}", job.file.string(), failure.what());
    }
    return outcome;
}

std::optional<std::filesystem::path> SermonNotesViewModel::finishLibraryArchive(const ArchiveOutcome& outcome) {
    if (outcome.cancelled)
        return std::nullopt;
    if (!outcome.written) {
        post({"Export Failed", archiveFailure, StatusMessage::Kind::alert});
        return std::nullopt;
    }
    post({"Export Complete", outcome.written->string(), StatusMessage::Kind::toast});
    return outcome.written;
}

void SermonNotesViewModel::reportPrintFailure(const model::Uuid& sermonId) {
    const model::SermonNote* sermon = m_store.sermon(sermonId);
    post({"Print Failed", printFailedDetail(sermon ? sermon->title : "the sermon"), StatusMessage::Kind::alert});
}

void SermonNotesViewModel::reportShareFailure() {
    post({"Share Failed", "Quillon could not find a window to share from.", StatusMessage::Kind::alert});
}

// Backup and restore --------------------------------------------------------------------------

std::optional<std::filesystem::path> SermonNotesViewModel::backUp(const std::filesystem::path& folder,
                                                                  bool continueWhenLow) {
    auto job = prepareBackUp(folder, continueWhenLow);
    return job ? finishBackUp(writeBackUp(*job)) : std::nullopt;
}

std::optional<BackupJob> SermonNotesViewModel::prepareBackUp(const std::filesystem::path& folder,
                                                             bool continueWhenLow) {
    const auto& sermons = m_store.sermons();
    if (sermons.empty()) {
        post({"Nothing to Back Up", "There are no sermons in your library yet.", StatusMessage::Kind::alert});
        return std::nullopt;
    }
    if (auto available = m_backups.freeSpaceWarning(folder); available && !continueWhenLow) {
        setSheet(Sheet::storageWarning, true);
        post({store::lowOnStorageTitle, store::lowStorageBeforeBackupMessage(*available), StatusMessage::Kind::alert});
        return std::nullopt;
    }
    return BackupJob{sermons, folder, m_store.storage().mediaFolder()};
}

BackupOutcome SermonNotesViewModel::writeBackUp(const BackupJob& job, std::stop_token stop) const {
    BackupOutcome outcome;
    outcome.sermonCount = job.sermons.size();
    // A manager of its own, whose media folder is the job's: the store is not read off the main thread.
    const store::SermonBackupManager backups([media = job.mediaFolder] { return media; }, m_preferences, m_clock);
    try {
        outcome.written = backups.backUp(job.sermons, job.folder, stop);
        outcome.cancelled = !outcome.written;
    } catch (const std::exception& error) {
        // BackupError and FileError carry the sentence for the user; anything else is reported as is.
        spdlog::error("Failed to back up the library into {}: {}", job.folder.string(), error.what());
        outcome.failure = error.what();
    }
    return outcome;
}

std::optional<std::filesystem::path> SermonNotesViewModel::finishBackUp(const BackupOutcome& outcome) {
    if (outcome.cancelled)
        return std::nullopt;
    if (!outcome.written) {
        post({"Backup Failed", outcome.failure, StatusMessage::Kind::alert});
        return std::nullopt;
    }
    post({"Backup Complete", "Saved " + counted(outcome.sermonCount, "sermon", "sermons"), StatusMessage::Kind::toast});
    return outcome.written;
}

void SermonNotesViewModel::requestRestore(const std::filesystem::path& backupFolder) {
    m_pendingRestore = backupFolder;
    setSheet(Sheet::restoreBackupConfirmation, true);
}

std::string SermonNotesViewModel::restoreQuestion() const {
    return m_pendingRestore ? restoreConfirmationMessage(folderName(*m_pendingRestore)) : std::string();
}

void SermonNotesViewModel::cancelRestore() {
    m_pendingRestore.reset();
    setSheet(Sheet::restoreBackupConfirmation, false);
}

std::optional<store::RestoreResult> SermonNotesViewModel::confirmRestore() {
    auto folder = takeConfirmedRestore();
    return folder ? finishRestore(readBackup(*folder)) : std::nullopt;
}

std::optional<std::filesystem::path> SermonNotesViewModel::takeConfirmedRestore() {
    if (!m_pendingRestore)
        return std::nullopt;
    const std::filesystem::path folder = *m_pendingRestore;
    cancelRestore();
    return folder;
}

RestoreRead SermonNotesViewModel::readBackup(const std::filesystem::path& folder, std::stop_token stop) {
    RestoreRead read;
    read.folder = folder;
    try {
        read.contents = store::SermonBackupManager::read(folder);
    } catch (const std::exception& error) {
        read.failure = error.what();
    }
    read.cancelled = stop.stop_requested();
    return read;
}

std::optional<store::RestoreResult> SermonNotesViewModel::finishRestore(RestoreRead read) {
    if (read.cancelled)
        return std::nullopt;
    if (!read.contents) {
        post({"Restore Failed", read.failure, StatusMessage::Kind::alert});
        return std::nullopt;
    }
    try {
        const auto result = m_backups.restoreInto(m_store, *read.contents);
        repairSelection();
        notifyLibrary();
        notifySelection();
        post({"Restore Complete", restoreDetail(result.sermonsRestored, result.coverImagesRestored),
              StatusMessage::Kind::toast});
        return result;
    } catch (const store::BackupError& error) {
        post({"Restore Failed", error.what(), StatusMessage::Kind::alert});
    } catch (const platform::FileError& error) {
        post({"Restore Failed", error.what(), StatusMessage::Kind::alert});
    }
    return std::nullopt;
}

// Diagnostics ---------------------------------------------------------------------------------

std::vector<exports::SelfTestResult> SermonNotesViewModel::runSelfTest() const {
    const exports::SelfTest selfTest(exports::libraryReferenceRecognizer(), m_verses);
    auto results = selfTest.run(model::toDateTime(m_clock.now()));
    for (const auto& result : results) {
        // The diagnostics log is the file sink; info keeps the results off standard error.
        spdlog::info("{}", result.line());
        if (!result.passed)
            spdlog::info("{}", result.sentence);
    }
    return results;
}

} // namespace quillon::app
