#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::testing {

/// A fresh folder under the system temporary folder, removed with everything in it on destruction.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(std::string_view name) const { return m_path / name; }

    /// Writes a file below the folder (creating parents) and returns its path.
    std::filesystem::path write(std::string_view relativePath, std::string_view bytes) const;

private:
    std::filesystem::path m_path;
};

/// Reads a whole file; empty when it does not exist.
std::string readText(const std::filesystem::path& file);

/// The names in a folder, sorted; empty when it cannot be read.
std::vector<std::string> entryNames(const std::filesystem::path& folder);

/// The source tree's root (tests run from the build folder).
std::filesystem::path sourceDirectory();

} // namespace quillon::testing
