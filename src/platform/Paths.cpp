#include "platform/Paths.h"

#include <cstdlib>
#include <string>

namespace quillon::platform {
namespace fs = std::filesystem;

namespace {

fs::path home() {
    const char* value = std::getenv("HOME");
    return value && *value ? fs::path(value) : fs::path("/tmp");
}

fs::path xdgFolder(const char* variable, const char* fallbackUnderHome) {
    const char* value = std::getenv(variable);
    if (value && *value && fs::path(value).is_absolute())
        return value;
    return home() / fallbackUnderHome;
}

} // namespace

fs::path dataHome() {
    return xdgFolder("XDG_DATA_HOME", ".local/share");
}
fs::path configHome() {
    return xdgFolder("XDG_CONFIG_HOME", ".config");
}
fs::path stateHome() {
    return xdgFolder("XDG_STATE_HOME", ".local/state");
}
fs::path cacheHome() {
    return xdgFolder("XDG_CACHE_HOME", ".cache");
}

fs::path applicationDataFolder() {
    return dataHome() / "Quillon";
}
fs::path preferencesFile() {
    return configHome() / "Quillon" / "preferences.json";
}
fs::path logFile() {
    return stateHome() / "Quillon" / "quillon.log";
}

fs::path temporaryFolder() {
    const char* value = std::getenv("TMPDIR");
    if (value && *value && fs::path(value).is_absolute())
        return value;
    return "/tmp";
}

void createFolderQuietly(const fs::path& folder) {
    std::error_code ignored;
    fs::create_directories(folder, ignored);
}

} // namespace quillon::platform
