#include "store/SermonBackupManager.h"

#include "model/SermonCoding.h"
#include "model/SermonDocument.h"
#include "platform/AtomicFile.h"
#include "platform/FileError.h"
#include "platform/FileSteps.h"
#include "platform/PlatformWording.h"
#include "platform/WorkFileName.h"
#include "store/ByteCountFormatter.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"

#include <nlohmann/json.hpp>
#include <spdlog/spdlog.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#ifndef QUILLON_VERSION
#define QUILLON_VERSION "unknown"
#endif

namespace quillon::store {
namespace fs = std::filesystem;
using std::chrono::system_clock;

namespace {

constexpr const char* sermonsFileName = "sermons.json";
constexpr const char* manifestFileName = "manifest.json";
constexpr const char* mediaFolderName = "Media";
constexpr int maximumSameNameBackups = 1000;

/// A name that stays inside the folder it is joined to and is not one of our hidden work files.
bool isPlainFileName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos && !name.starts_with(".");
}

platform::FileError fileError(const std::string& what, const fs::path& file, int error) {
    return platform::FileError("Could not " + what + " “" + file.filename().string() + "”: " + std::strerror(error) +
                               ".");
}

/// Copies `source` only when it is a regular file and not a symbolic link (checked on the open
/// descriptor, so the file cannot be swapped between the check and the copy), and syncs the copy.
/// `target` must not exist; a copy that fails is removed.
void copyPlainFile(const fs::path& source, const fs::path& target) {
    const int in = ::open(source.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (in < 0)
        throw fileError("read", source, errno);
    struct stat info {};
    if (::fstat(in, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(in);
        throw platform::FileError("“" + source.filename().string() + "” is not a plain file.");
    }
    const int out = platform::fileSteps::open(target, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (out < 0) {
        const int saved = errno;
        ::close(in);
        throw fileError("write", target, saved);
    }
    char buffer[1 << 16];
    int failure = 0;
    for (;;) {
        const ssize_t count = ::read(in, buffer, sizeof buffer);
        if (count == 0)
            break;
        if (count < 0) {
            if (errno == EINTR)
                continue;
            failure = errno;
            break;
        }
        if (!platform::fileSteps::writeAll(out, std::string_view(buffer, static_cast<std::size_t>(count)), target)) {
            failure = errno;
            break;
        }
    }
    ::close(in);
    if (!failure && !platform::fileSteps::sync(out, target))
        failure = errno;
    if (!platform::fileSteps::close(out, target) && !failure)
        failure = errno;
    if (failure) {
        ::unlink(target.c_str());
        throw fileError("copy", source, failure);
    }
}

/// Creates `folder` and the folders above it; throws FileError.
void createFolders(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
        throw platform::FileError("Could not create “" + folder.filename().string() + "”: " + error.message() + ".");
}

void syncFolder(const fs::path& folder) {
    if (!platform::fileSteps::syncFolder(folder))
        throw fileError("write", folder, errno);
}

/// Removes a work folder when the operation using it ends, however it ends.
class WorkFolder {
public:
    explicit WorkFolder(fs::path path) : m_path(std::move(path)) {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
        createFolders(m_path);
    }
    ~WorkFolder() {
        if (m_keep)
            return;
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    const fs::path& path() const { return m_path; }
    void keep() { m_keep = true; }

private:
    fs::path m_path;
    bool m_keep = false;
};

/// Writes every file beside its target first and renames them into place only when all were
/// written, with one sync for the whole batch instead of one per file: a restore of thousands of
/// sermons would otherwise spend nearly all its time waiting for the disk.
void writeAllOrNothing(const std::vector<std::pair<fs::path, std::string>>& files) {
    std::vector<std::pair<fs::path, fs::path>> written;
    auto discard = [&written] {
        for (const auto& [temporary, target] : written)
            ::unlink(temporary.c_str());
    };
    try {
        for (const auto& [target, bytes] : files) {
            const fs::path temporary =
                target.parent_path() / platform::workFileName::beside(target.filename().string(), ".restore");
            const int fd = platform::fileSteps::open(temporary, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
            if (fd < 0)
                throw fileError("write", target, errno);
            written.emplace_back(temporary, target);
            if (!platform::fileSteps::writeAll(fd, bytes, temporary)) {
                const int error = errno;
                ::close(fd);
                throw fileError("write", target, error);
            }
            if (!platform::fileSteps::close(fd, temporary))
                throw fileError("write", target, errno);
        }
        if (!written.empty()) {
            const int folder = ::open(written.front().second.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            if (folder >= 0) {
                const int synced = ::syncfs(folder);
                ::close(folder);
                if (synced != 0)
                    throw fileError("write", written.front().second, errno);
            }
        }
    } catch (...) {
        discard();
        throw;
    }
    for (const auto& [temporary, target] : written)
        if (::rename(temporary.c_str(), target.c_str()) != 0)
            spdlog::error("Failed to restore sermon file {}: {}", target.filename().string(), std::strerror(errno));
    if (!written.empty()) {
        const int folder = ::open(written.front().second.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder >= 0) {
            ::fsync(folder);
            ::close(folder);
        }
    }
}

/// Renames `work` to `baseName` in `folder`, or to the first free of "… 2.quillonbackup",
/// "… 3.quillonbackup", …: two backups in one second get two folders. The rename refuses to
/// replace anything, so a backup made at the same moment by another process is never overwritten.
fs::path moveToFreeName(const fs::path& work, const fs::path& folder, const std::string& baseName) {
    const std::string extension = fs::path(baseName).extension().string();
    const std::string stem = baseName.substr(0, baseName.size() - extension.size());
    for (int number = 1; number <= maximumSameNameBackups; ++number) {
        const fs::path candidate = folder / (number == 1 ? baseName : stem + " " + std::to_string(number) + extension);
        if (platform::fileSteps::renameNoReplace(work, candidate))
            return candidate;
        if (errno != EEXIST && errno != ENOTEMPTY)
            throw fileError("create", candidate, errno);
    }
    throw platform::FileError("A backup named “" + baseName + "” is already there, and so are " +
                              std::to_string(maximumSameNameBackups - 1) + " numbered copies.");
}

} // namespace

SermonBackupManager::SermonBackupManager(MediaFolderProvider mediaFolder, const platform::Preferences& preferences,
                                         const platform::Clock& clock, VolumeFiguresReader volumeFigures)
    : m_mediaFolder(std::move(mediaFolder)), m_preferences(preferences), m_clock(clock),
      m_volumeFigures(std::move(volumeFigures)) {}

std::string SermonBackupManager::backupFolderName(system_clock::time_point time) {
    const std::time_t seconds = system_clock::to_time_t(time);
    std::tm local{};
    localtime_r(&seconds, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H-%M-%S", &local);
    return std::string("Quillon Backup ") + text + ".quillonbackup";
}

std::string SermonBackupManager::encodeManifest(const BackupManifest& manifest) {
    // nlohmann::json keeps members sorted by name, as the manifest is written.
    nlohmann::json json = {{"formatVersion", manifest.formatVersion},
                           {"createdAt", model::formatDateTime(manifest.createdAt)},
                           {"sermonCount", manifest.sermonCount},
                           {"appVersion", manifest.appVersion}};
    return json.dump(2) + "\n";
}

BackupManifest SermonBackupManager::decodeManifest(const std::string& bytes) {
    const nlohmann::json json = nlohmann::json::parse(bytes);
    auto createdAt = model::parseDateTime(json.at("createdAt").get<std::string>());
    if (!createdAt)
        throw std::invalid_argument("createdAt is not a date");
    BackupManifest manifest;
    manifest.formatVersion = json.at("formatVersion").get<int>();
    manifest.createdAt = *createdAt;
    manifest.sermonCount = json.at("sermonCount").get<int>();
    manifest.appVersion = json.at("appVersion").get<std::string>();
    return manifest;
}

fs::path SermonBackupManager::backUp(const std::vector<model::SermonNote>& sermons,
                                     const fs::path& destinationFolder) const {
    return *backUp(sermons, destinationFolder, std::stop_token());
}

std::optional<fs::path> SermonBackupManager::backUp(const std::vector<model::SermonNote>& sermons,
                                                    const fs::path& destinationFolder, std::stop_token stop) const {
    if (sermons.empty())
        throw BackupError(BackupError::Kind::noSermonsToBackUp);
    const system_clock::time_point now = m_clock.now();
    const model::DateTime createdAt = model::toDateTime(now);

    std::string archive;
    try {
        archive = model::encodeArchive(sermons, createdAt);
    } catch (const std::exception& error) {
        spdlog::error("Failed to encode sermons for backup: {}", error.what());
        throw BackupError(BackupError::Kind::encodingFailed);
    }
    if (stop.stop_requested())
        return std::nullopt;

    createFolders(destinationFolder);
    const std::string baseName = backupFolderName(now);
    // What a backup killed midway left here goes before this one starts.
    platform::workFileName::removeAbandoned(destinationFolder);
    WorkFolder work(destinationFolder / platform::workFileName::beside(baseName, ".partial"));
    platform::writeFileAtomically(work.path() / sermonsFileName, archive);

    const fs::path media = work.path() / mediaFolderName;
    createFolders(media);
    const fs::path libraryMedia = m_mediaFolder();
    for (const model::SermonNote& sermon : sermons) {
        // The work folder goes with the early return, so a stopped backup leaves nothing.
        if (stop.stop_requested())
            return std::nullopt;
        if (!sermon.coverImageFileName)
            continue;
        const std::string& name = *sermon.coverImageFileName;
        if (!isPlainFileName(name)) {
            spdlog::warn("Skipped the cover image “{}” of “{}” in the backup: not a plain file name", name,
                         sermon.title);
            continue;
        }
        const fs::path source = libraryMedia / name;
        if (!fs::exists(fs::symlink_status(source)) || fs::exists(fs::symlink_status(media / name)))
            continue;
        try {
            copyPlainFile(source, media / name);
        } catch (const platform::FileError& failure) {
            // One image that cannot be copied must not cost the user the whole backup.
            spdlog::warn("Failed to back up the cover image of “{}”: {}", sermon.title, failure.what());
        }
    }

    BackupManifest manifest;
    manifest.createdAt = createdAt;
    manifest.sermonCount = static_cast<int>(sermons.size());
    manifest.appVersion = QUILLON_VERSION;
    platform::writeFileAtomically(work.path() / manifestFileName, encodeManifest(manifest));
    syncFolder(media);

    if (stop.stop_requested())
        return std::nullopt;
    // The backup appears under its real name only once it is whole on disk, and never over another.
    const fs::path finalFolder = moveToFreeName(work.path(), destinationFolder, baseName);
    work.keep();
    // Until the destination is synced a power cut may take the finished backup away again; a
    // failure here is reported, and the whole backup stays where it is.
    syncFolder(destinationFolder);
    return finalFolder;
}

BackupContents SermonBackupManager::read(const fs::path& backupFolder) {
    const fs::path sermonsFile = backupFolder / sermonsFileName;
    std::error_code error;
    if (!fs::exists(sermonsFile, error))
        throw BackupError(BackupError::Kind::sermonsFileMissing);

    BackupContents contents;
    contents.folder = backupFolder;
    const fs::path manifestFile = backupFolder / manifestFileName;
    if (fs::exists(manifestFile, error)) {
        try {
            contents.manifest = decodeManifest(platform::readFile(manifestFile));
        } catch (const std::exception& failure) {
            spdlog::warn("Ignored the unreadable manifest of “{}”: {}", backupFolder.filename().string(),
                         failure.what());
        }
    }
    contents.sermons = model::readArchive(platform::readFile(sermonsFile));
    return contents;
}

RestoreResult SermonBackupManager::restore(const fs::path& backupFolder, const SermonImporter& importSermons) const {
    // Everything is read and decoded before the library changes, so a broken backup changes nothing.
    return restore(read(backupFolder), importSermons);
}

RestoreResult SermonBackupManager::restore(const BackupContents& contents, const SermonImporter& importSermons) const {
    RestoreResult result;
    result.manifest = contents.manifest;
    const fs::path& backupFolder = contents.folder;
    const std::vector<model::SermonNote>& sermons = contents.sermons;
    std::error_code error;

    const fs::path libraryMedia = m_mediaFolder();
    fs::create_directories(libraryMedia, error);
    std::optional<WorkFolder> staging;
    std::vector<std::string> staged;
    const fs::path backupMedia = backupFolder / mediaFolderName;
    if (fs::is_directory(fs::symlink_status(backupMedia, error))) {
        staging.emplace(libraryMedia / platform::workFileName::beside("restore", ".staging"));
        for (fs::directory_iterator it(backupMedia, error), end; !error && it != end; it.increment(error)) {
            const std::string name = it->path().filename().string();
            const fs::file_status status = it->symlink_status(error);
            if (!isPlainFileName(name) || !fs::is_regular_file(status)) {
                spdlog::warn("Skipped “{}” in the backup's Media folder: only plain image files are restored", name);
                continue;
            }
            if (fs::exists(fs::symlink_status(libraryMedia / name)))
                continue;
            try {
                copyPlainFile(it->path(), staging->path() / name);
                staged.push_back(name);
            } catch (const platform::FileError& failure) {
                spdlog::warn("Failed to restore the cover image “{}”: {}", name, failure.what());
            }
        }
    }

    result.sermonsRestored = importSermons(sermons);

    for (const std::string& name : staged) {
        // A hard link never replaces an existing file, even one created since the check above.
        if (::link((staging->path() / name).c_str(), (libraryMedia / name).c_str()) == 0)
            ++result.coverImagesRestored;
        else if (errno != EEXIST)
            spdlog::warn("Failed to restore the cover image “{}”: {}", name, std::strerror(errno));
    }
    return result;
}

RestoreResult SermonBackupManager::restoreInto(SermonNotesManager& store, const fs::path& backupFolder) const {
    return restoreInto(store, read(backupFolder));
}

RestoreResult SermonBackupManager::restoreInto(SermonNotesManager& store, const BackupContents& contents) const {
    SermonStorage& storage = store.storage();
    return restore(contents, [&](const std::vector<model::SermonNote>& sermons) {
        std::vector<std::pair<fs::path, std::string>> pending;
        const SermonFileWriter previous = storage.writer();
        storage.setWriter([&pending](const fs::path& target, std::string_view bytes) {
            pending.emplace_back(target, std::string(bytes));
        });
        int count = 0;
        try {
            count = store.importSermons(sermons, model::SermonImportMode::replaceDuplicates);
        } catch (...) {
            storage.setWriter(previous);
            store.load();
            throw;
        }
        storage.setWriter(previous);
        try {
            writeAllOrNothing(pending);
        } catch (...) {
            // Nothing reached the sermon folder, so reading it back undoes the import in memory.
            store.load();
            throw;
        }
        return count;
    });
}

double SermonBackupManager::storageWarningThreshold() const {
    return m_preferences.positiveNumber(storageWarningThresholdKey, defaultStorageWarningThreshold);
}

std::optional<std::uint64_t> SermonBackupManager::freeSpaceWarning(const fs::path& location) const {
    const auto figures = m_volumeFigures ? m_volumeFigures(location) : std::nullopt;
    if (!figures || figures->totalBytes < 1)
        return std::nullopt;
    const double freeShare =
        static_cast<double>(figures->availableBytes) / static_cast<double>(figures->totalBytes) * 100.0;
    if (freeShare <= storageWarningThreshold())
        return figures->availableBytes;
    return std::nullopt;
}

std::string lowStorageBeforeBackupMessage(std::uint64_t availableBytes) {
    return "That location has only " + formatByteCount(availableBytes) +
           " free. Continue anyway, or choose a different location?";
}

std::string lowStorageForNewSermonMessage(std::uint64_t availableBytes) {
    return std::string(platform::wording::thisComputer) + " has only " + formatByteCount(availableBytes) +
           " of storage free. Quillon can still create this sermon, but running this low can cause a later save "
           "to fail.";
}

std::string restoreCompleteMessage(const RestoreResult& result) {
    return "Restored " + std::to_string(result.sermonsRestored) +
           (result.sermonsRestored == 1 ? " sermon" : " sermons") + " and " +
           std::to_string(result.coverImagesRestored) +
           (result.coverImagesRestored == 1 ? " cover image." : " cover images.");
}

} // namespace quillon::store
