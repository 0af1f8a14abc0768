#include "platform/FolderWatcher.h"

#include "platform/FileError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace quillon::platform {

namespace {

/// Sync clients write a temporary file and rename it into place, so a finished download shows as
/// IN_MOVED_TO; our own writes close a file or rename one too.
constexpr uint32_t watchedEvents =
    IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;

} // namespace

FolderWatcher::FolderWatcher(const std::filesystem::path& folder) : m_folder(folder) {
    m_fd = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_fd < 0)
        throw FileError("Could not watch “" + folder.string() + "”: " + std::strerror(errno) + ".");
    if (::inotify_add_watch(m_fd, folder.c_str(), watchedEvents | IN_ONLYDIR) < 0) {
        int error = errno;
        ::close(m_fd);
        m_fd = -1;
        throw FileError("Could not watch “" + folder.string() + "”: " + std::strerror(error) + ".");
    }
}

FolderWatcher::~FolderWatcher() {
    if (m_fd >= 0)
        ::close(m_fd);
}

std::vector<std::string> FolderWatcher::readChanges() {
    std::vector<std::string> names;
    alignas(inotify_event) char buffer[16 * 1024];
    for (;;) {
        ssize_t length = ::read(m_fd, buffer, sizeof buffer);
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            break; // EAGAIN: drained
        for (ssize_t offset = 0; offset < length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + offset);
            // An event about the folder itself (or an overflow) has no name; report it as "" so the
            // caller still re-reads.
            std::string name = event->len > 0 ? std::string(event->name) : std::string();
            if (std::find(names.begin(), names.end(), name) == names.end())
                names.push_back(std::move(name));
            offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
    return names;
}

bool FolderWatcher::waitForChanges(int timeoutMilliseconds) const {
    pollfd descriptor{m_fd, POLLIN, 0};
    int ready;
    do
        ready = ::poll(&descriptor, 1, timeoutMilliseconds);
    while (ready < 0 && errno == EINTR);
    return ready > 0 && (descriptor.revents & POLLIN);
}

} // namespace quillon::platform
