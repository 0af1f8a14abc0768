#include "store/SermonVersionHistory.h"

#include "model/SermonCoding.h"
#include "platform/AtomicFile.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>

namespace quillon::store {
namespace fs = std::filesystem;
using std::chrono::system_clock;

namespace {

struct DatedFile {
    fs::path path;
    system_clock::time_point modifiedAt;
};

/// A file whose date cannot be read counts as the distant past, so it is pruned first and never
/// holds back a new snapshot.
system_clock::time_point modificationTime(const fs::path& file) {
    struct stat info {};
    if (::stat(file.c_str(), &info) != 0)
        return system_clock::time_point::min();
    return system_clock::time_point{std::chrono::duration_cast<system_clock::duration>(
        std::chrono::seconds{info.st_mtim.tv_sec} + std::chrono::nanoseconds{info.st_mtim.tv_nsec})};
}

void setModificationTime(const fs::path& file, system_clock::time_point time) {
    auto since = std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch());
    auto seconds = std::chrono::floor<std::chrono::seconds>(since);
    const timespec stamp{static_cast<time_t>(seconds.count()), static_cast<long>((since - seconds).count())};
    const timespec times[2] = {stamp, stamp};
    ::utimensat(AT_FDCWD, file.c_str(), times, 0);
}

std::vector<DatedFile> snapshotFiles(const fs::path& folder) {
    std::vector<DatedFile> files;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        const fs::path& path = it->path();
        if (path.extension() != ".json" || path.filename().string().starts_with("."))
            continue;
        files.push_back({path, modificationTime(path)});
    }
    // Oldest first; the name breaks ties so pruning is repeatable.
    std::sort(files.begin(), files.end(), [](const DatedFile& a, const DatedFile& b) {
        return a.modifiedAt != b.modifiedAt ? a.modifiedAt < b.modifiedAt : a.path < b.path;
    });
    return files;
}

std::optional<VersionSnapshot> readSnapshot(const DatedFile& file) {
    auto id = model::Uuid::parse(file.path.stem().string());
    if (!id)
        return std::nullopt;
    try {
        model::SermonNote sermon = model::decodeSermonFile(platform::readFile(file.path));
        return VersionSnapshot{*id, std::move(sermon), std::chrono::floor<std::chrono::seconds>(file.modifiedAt)};
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace

SermonVersionHistory::SermonVersionHistory(RootProvider root, const platform::Preferences& preferences,
                                           const platform::Clock& clock)
    : m_root(std::move(root)), m_preferences(preferences), m_clock(clock) {}

SermonVersionHistory::SermonVersionHistory(fs::path root, const platform::Preferences& preferences,
                                           const platform::Clock& clock)
    : SermonVersionHistory([root = std::move(root)] { return root; }, preferences, clock) {}

fs::path SermonVersionHistory::folderFor(const model::Uuid& sermonId) const {
    return m_root() / "Versions" / sermonId.text();
}

double SermonVersionHistory::snapshotInterval() const {
    return m_preferences.positiveNumber(snapshotIntervalKey, defaultSnapshotInterval);
}

int SermonVersionHistory::maxVersionsPerSermon() const {
    const double stored = m_preferences.positiveNumber(maxVersionsKey, defaultMaxVersions);
    return stored >= 1 ? static_cast<int>(stored) : defaultMaxVersions;
}

void SermonVersionHistory::recordSnapshot(const model::SermonNote& previous) {
    const fs::path folder = folderFor(previous.id);
    const system_clock::time_point now = m_clock.now();
    const auto existing = snapshotFiles(folder);
    if (!existing.empty() && existing.back().modifiedAt != system_clock::time_point::min()) {
        const std::chrono::duration<double> since = now - existing.back().modifiedAt;
        if (since.count() < snapshotInterval())
            return;
    }
    write(previous);
}

void SermonVersionHistory::recordSnapshotNow(const model::SermonNote& previous) {
    write(previous);
}

void SermonVersionHistory::write(const model::SermonNote& previous) {
    const fs::path folder = folderFor(previous.id);
    const system_clock::time_point now = m_clock.now();
    try {
        fs::create_directories(folder);
        const fs::path file = folder / (model::Uuid::random().text() + ".json");
        platform::writeFileAtomically(file, model::encodeSermonFile(previous));
        setModificationTime(file, now);
    } catch (const std::exception&) {
        // A lost snapshot must never stop the edit that caused it.
        return;
    }
    prune(folder);
}

void SermonVersionHistory::prune(const fs::path& folder) const {
    auto files = snapshotFiles(folder);
    const auto limit = static_cast<std::size_t>(maxVersionsPerSermon());
    std::error_code ignored;
    for (std::size_t index = 0; files.size() - index > limit; ++index)
        fs::remove(files[index].path, ignored);
}

std::vector<VersionSnapshot> SermonVersionHistory::snapshots(const model::Uuid& sermonId) const {
    std::vector<VersionSnapshot> found;
    auto files = snapshotFiles(folderFor(sermonId));
    for (auto it = files.rbegin(); it != files.rend(); ++it)
        if (auto snapshot = readSnapshot(*it))
            found.push_back(std::move(*snapshot));
    return found;
}

std::optional<VersionSnapshot> SermonVersionHistory::snapshot(const model::Uuid& sermonId,
                                                              const model::Uuid& snapshotId) const {
    const fs::path file = folderFor(sermonId) / (snapshotId.text() + ".json");
    std::error_code error;
    if (!fs::is_regular_file(file, error))
        return std::nullopt;
    return readSnapshot({file, modificationTime(file)});
}

} // namespace quillon::store
