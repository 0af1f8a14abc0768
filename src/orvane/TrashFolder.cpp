#include "orvane/TrashFolder.h"

#include "platform/AtomicFile.h"
#include "platform/FileError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {
namespace fs = std::filesystem;
using std::chrono::system_clock;

namespace {

constexpr std::string_view extension = ".json";

timespec toTimespec(system_clock::time_point time) {
    auto since = std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch());
    auto seconds = std::chrono::floor<std::chrono::seconds>(since);
    return timespec{static_cast<time_t>(seconds.count()), static_cast<long>((since - seconds).count())};
}

std::optional<system_clock::time_point> modificationTime(const fs::path& file) {
    struct stat info {};
    if (::stat(file.c_str(), &info) != 0)
        return std::nullopt;
    return system_clock::time_point{std::chrono::duration_cast<system_clock::duration>(
        std::chrono::seconds{info.st_mtim.tv_sec} + std::chrono::nanoseconds{info.st_mtim.tv_nsec})};
}

std::optional<TrashedItem> readItem(const fs::path& file) {
    auto trashedAt = modificationTime(file);
    if (!trashedAt)
        return std::nullopt;
    try {
        std::string name = file.filename().string();
        return TrashedItem{name.substr(0, name.size() - extension.size()), quillon::platform::readFile(file),
                           *trashedAt};
    } catch (const quillon::platform::FileError&) {
        return std::nullopt;
    }
}

} // namespace

TrashFolder::TrashFolder(fs::path folder, const quillon::platform::Clock& clock)
    : m_folder(std::move(folder)), m_clock(clock) {}

bool TrashFolder::isUsableId(std::string_view id) {
    return !id.empty() && id != "." && id != ".." && id.find('/') == std::string_view::npos &&
           id.find('\0') == std::string_view::npos;
}

fs::path TrashFolder::fileFor(std::string_view id) const {
    return m_folder / (std::string(id) + std::string(extension));
}

system_clock::time_point TrashFolder::put(std::string_view id, std::string_view bytes) {
    if (!isUsableId(id))
        throw quillon::platform::FileError("“" + std::string(id) + "” cannot name a file in the trash.");
    std::error_code error;
    fs::create_directories(m_folder, error);
    if (error)
        throw quillon::platform::FileError("Could not create the trash folder: " + error.message() + ".");
    const fs::path file = fileFor(id);
    quillon::platform::writeFileAtomically(file, bytes);
    const system_clock::time_point now = m_clock.now();
    const timespec times[2] = {toTimespec(now), toTimespec(now)};
    if (::utimensat(AT_FDCWD, file.c_str(), times, 0) != 0) {
        int saved = errno;
        ::unlink(file.c_str());
        throw quillon::platform::FileError("Could not date “" + file.filename().string() +
                                           "” in the trash: " + std::strerror(saved) + ".");
    }
    return now;
}

std::vector<TrashedItem> TrashFolder::items() const {
    std::vector<TrashedItem> found;
    std::error_code error;
    for (fs::directory_iterator it(m_folder, error), end; !error && it != end; it.increment(error)) {
        const fs::path& file = it->path();
        std::string name = file.filename().string();
        if (name.size() <= extension.size() || !name.ends_with(extension) || name.starts_with("."))
            continue;
        if (auto item = readItem(file))
            found.push_back(std::move(*item));
    }
    std::sort(found.begin(), found.end(), [](const TrashedItem& a, const TrashedItem& b) {
        return a.trashedAt != b.trashedAt ? a.trashedAt < b.trashedAt : a.id < b.id;
    });
    return found;
}

std::optional<TrashedItem> TrashFolder::item(std::string_view id) const {
    if (!isUsableId(id))
        return std::nullopt;
    return readItem(fileFor(id));
}

bool TrashFolder::remove(std::string_view id) {
    if (!isUsableId(id))
        return false;
    std::error_code error;
    return fs::remove(fileFor(id), error);
}

std::vector<std::string> TrashFolder::removeOlderThan(system_clock::time_point cutoff) {
    std::vector<std::string> removed;
    for (const TrashedItem& item : items())
        if (item.trashedAt < cutoff && remove(item.id))
            removed.push_back(item.id);
    return removed;
}

system_clock::time_point TrashFolder::calendarDaysBefore(system_clock::time_point now, int days) {
    const std::time_t seconds = system_clock::to_time_t(now);
    const system_clock::duration fraction = now - system_clock::from_time_t(seconds);
    std::tm local{};
    localtime_r(&seconds, &local);
    local.tm_mday -= days;
    // Let mktime decide whether the earlier date falls in summer or winter time.
    local.tm_isdst = -1;
    const std::time_t earlier = std::mktime(&local);
    if (earlier == static_cast<std::time_t>(-1))
        return now - std::chrono::days{days};
    return system_clock::from_time_t(earlier) + fraction;
}

} // namespace orvane
