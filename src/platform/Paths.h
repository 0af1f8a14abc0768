#pragma once

#include <filesystem>

namespace quillon::platform {

/// XDG base folders, each with its documented fallback under $HOME when the variable is unset,
/// empty or not absolute.
std::filesystem::path dataHome();
std::filesystem::path configHome();
std::filesystem::path stateHome();
std::filesystem::path cacheHome();

/// $XDG_DATA_HOME/Quillon: the local library root and the user's own data (Bibles, SWORD modules).
std::filesystem::path applicationDataFolder();
/// $XDG_CONFIG_HOME/Quillon/preferences.json.
std::filesystem::path preferencesFile();
/// $XDG_STATE_HOME/Quillon/quillon.log.
std::filesystem::path logFile();
/// The folder for files handed to other programs (archives, documents, exports): $TMPDIR or /tmp.
std::filesystem::path temporaryFolder();

/// Creates a folder and its parents; failures are ignored because the next read or write reports them.
void createFolderQuietly(const std::filesystem::path& folder);

} // namespace quillon::platform
