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
    std::optional<std::filesystem::path> written;
    if (isFolder(destination)) {
        written = m_store.exportArchive(destination);
    } else {
        try {
            platform::writeFileAtomically(destination,
                                          model::encodeArchive(m_store.sermons(), model::toDateTime(m_clock.now())));
            written = destination;
        } catch (const std::exception& failure) {
            spdlog::error("Failed to write the sermon archive {}: {}", destination.string(), failure.what());
        }
    }
    if (!written) {
        post({"Export Failed", archiveFailure, StatusMessage::Kind::alert});
        return std::nullopt;
    }
    post({"Export Complete", written->string(), StatusMessage::Kind::toast});
    return written;
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
    try {
        auto written = m_backups.backUp(sermons, folder);
        post({"Backup Complete", "Saved " + counted(sermons.size(), "sermon", "sermons"), StatusMessage::Kind::toast});
        return written;
    } catch (const store::BackupError& error) {
        post({"Backup Failed", error.what(), StatusMessage::Kind::alert});
    } catch (const platform::FileError& error) {
        spdlog::error("Failed to back up the library into {}: {}", folder.string(), error.what());
        post({"Backup Failed", error.what(), StatusMessage::Kind::alert});
    }
    return std::nullopt;
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
    if (!m_pendingRestore)
        return std::nullopt;
    const std::filesystem::path folder = *m_pendingRestore;
    cancelRestore();
    try {
        const auto result = m_backups.restoreInto(m_store, folder);
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
