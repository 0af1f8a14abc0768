#pragma once

#include "model/BibleVersion.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace quillon::scripture {

/// Where Bible text files are looked for: an ordered list of folders, the first holding
/// "<CODE>.txt" wins. Nothing is remembered between calls, so a file dropped into a folder later
/// is found on the next lookup.
class BibleResourceBundle {
public:
    explicit BibleResourceBundle(std::vector<std::filesystem::path> folders);

    /// The user's folder ($XDG_DATA_HOME/Quillon/Bibles), then the installed resources, then the
    /// source tree's resources/bibles when running from a build.
    static BibleResourceBundle standard();
    /// $XDG_DATA_HOME/Quillon/Bibles: where licensed or imported texts go.
    static std::filesystem::path userFolder();

    const std::vector<std::filesystem::path>& folders() const { return m_folders; }
    /// The version's text file in the first folder that holds it as a regular file.
    std::optional<std::filesystem::path> fileFor(model::BibleVersion version) const;

private:
    std::vector<std::filesystem::path> m_folders;
};

} // namespace quillon::scripture
