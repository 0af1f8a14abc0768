#include "scripture/BibleResourceBundle.h"

#include "platform/Paths.h"

#include <string>
#include <system_error>

namespace quillon::scripture {

BibleResourceBundle::BibleResourceBundle(std::vector<std::filesystem::path> folders) : m_folders(std::move(folders)) {}

std::filesystem::path BibleResourceBundle::userFolder() {
    return platform::applicationDataFolder() / "Bibles";
}

BibleResourceBundle BibleResourceBundle::standard() {
    std::vector<std::filesystem::path> folders{userFolder()};
#ifdef QUILLON_INSTALLED_RESOURCES
    folders.emplace_back(std::filesystem::path(QUILLON_INSTALLED_RESOURCES) / "bibles");
#endif
#ifdef QUILLON_SOURCE_RESOURCES
    folders.emplace_back(std::filesystem::path(QUILLON_SOURCE_RESOURCES) / "bibles");
#endif
    return BibleResourceBundle(std::move(folders));
}

std::optional<std::filesystem::path> BibleResourceBundle::fileFor(model::BibleVersion version) const {
    const std::string fileName = std::string(model::rawValue(version)) + ".txt";
    for (const auto& folder : m_folders) {
        std::error_code error;
        std::filesystem::path candidate = folder / fileName;
        // A folder named like a version file is not a text: keep looking.
        if (std::filesystem::is_regular_file(candidate, error))
            return candidate;
    }
    return std::nullopt;
}

} // namespace quillon::scripture
