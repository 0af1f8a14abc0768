#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include <spdlog/spdlog.h>

#include <unistd.h>

namespace quillon::fuzz {

/// Hostile input makes the readers log on every run; the fuzzer's own report is what counts.
inline const bool logsSilenced = (spdlog::set_level(spdlog::level::off), true);

/// The fuzzer's bytes as text.
inline std::string_view text(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Stops the run when a property that must hold does not: libFuzzer and the replay test both
/// report an abort as a finding, with the input that caused it.
inline void require(bool condition) {
    if (!condition)
        std::abort();
}

/// A folder of this process's own under the temporary folder, removed when the process exits.
class ScratchFolder {
public:
    explicit ScratchFolder(const std::string& name)
        : m_path(std::filesystem::temp_directory_path() / (name + "-" + std::to_string(::getpid()))) {
        std::filesystem::create_directories(m_path);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

} // namespace quillon::fuzz
