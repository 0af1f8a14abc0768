#include "platform/WorkFileName.h"

#include <spdlog/spdlog.h>

#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <random>
#include <signal.h>
#include <unistd.h>

namespace quillon::platform::workFileName {
namespace fs = std::filesystem;

namespace {

/// 16 bits of FNV-1a of the host name: the same in every build and every process on this computer.
std::string hostHash() {
    char host[256] = {};
    if (::gethostname(host, sizeof host - 1) != 0)
        host[0] = '\0';
    std::uint32_t hash = 2166136261u;
    for (const char* c = host; *c; ++c)
        hash = (hash ^ static_cast<unsigned char>(*c)) * 16777619u;
    char text[5];
    std::snprintf(text, sizeof text, "%04x", static_cast<unsigned>((hash ^ hash >> 16) & 0xffffu));
    return text;
}

const std::string& thisHost() {
    static const std::string hash = hostHash();
    return hash;
}

bool isHex(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

/// The process id a tag names when it was made on this computer.
std::optional<pid_t> localProcess(std::string_view tag) {
    const auto firstDash = tag.find('-');
    const auto secondDash = tag.find('-', firstDash + 1);
    if (firstDash == std::string_view::npos || secondDash == std::string_view::npos)
        return std::nullopt;
    if (tag.substr(0, firstDash) != thisHost() || !isHex(tag.substr(secondDash + 1)))
        return std::nullopt;
    const std::string_view digits = tag.substr(firstDash + 1, secondDash - firstDash - 1);
    if (!isHex(digits))
        return std::nullopt;
    pid_t pid = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), pid, 16);
    if (error != std::errc() || end != digits.data() + digits.size() || pid <= 0)
        return std::nullopt;
    return pid;
}

} // namespace

std::string tag() {
    static thread_local std::mt19937_64 random{std::random_device{}()};
    char process[16];
    std::snprintf(process, sizeof process, "%x", static_cast<unsigned>(::getpid()));
    // The random part fills the tag to its full length: at least 4 hex digits.
    std::string text = thisHost() + "-" + process + "-";
    const std::size_t randomDigits = maximumTagBytes - text.size();
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(random()));
    text.append(digits + 16 - randomDigits);
    return text;
}

std::string beside(std::string_view name, std::string_view suffix) {
    std::string result = ".";
    result.append(name).append(".").append(tag()).append(suffix);
    return result;
}

bool isAbandoned(std::string_view name) {
    if (!name.starts_with('.'))
        return false;
    // The tag is the last dot-separated piece but one: ".<name>.<tag>.<suffix>".
    const auto lastDot = name.rfind('.');
    if (lastDot == std::string_view::npos || lastDot == 0)
        return false;
    const auto tagDot = name.rfind('.', lastDot - 1);
    if (tagDot == std::string_view::npos)
        return false;
    const auto pid = localProcess(name.substr(tagDot + 1, lastDot - tagDot - 1));
    if (!pid)
        return false;
    // Only a process that is gone for certain; one we may not signal still runs.
    return ::kill(*pid, 0) != 0 && errno == ESRCH;
}

int removeAbandoned(const fs::path& folder) {
    int removed = 0;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        const std::string name = it->path().filename().string();
        if (!isAbandoned(name))
            continue;
        std::error_code failure;
        fs::remove_all(it->path(), failure);
        if (failure) {
            spdlog::warn("Could not remove “{}” left by an interrupted write: {}", name, failure.message());
            continue;
        }
        spdlog::info("Removed “{}” left by an interrupted write", name);
        ++removed;
    }
    return removed;
}

} // namespace quillon::platform::workFileName
