#pragma once

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

namespace quillon::platform {

/// Small secrets kept per account under one service name: in the desktop's Secret Service
/// (through libsecret) when one runs, otherwise in a JSON file only its owner can read (0600,
/// in a 0700 folder). Reads give nothing and writes report false on failure; nothing throws.
class SecretStore {
public:
    enum class Backend {
        /// The Secret Service when it answers, else the file.
        automatic,
        /// The file only (tests, headless machines).
        fileOnly,
    };

    SecretStore(std::string service, std::filesystem::path fallbackFile, Backend backend = Backend::automatic);

    const std::string& service() const { return m_service; }
    bool usesSecretService() const { return m_useSecretService; }

    std::optional<std::string> read(const std::string& account) const;
    bool write(const std::string& account, const std::string& secret);
    bool remove(const std::string& account);

    /// The fallback file for a service: $XDG_DATA_HOME/Quillon/secrets/<service>.json.
    static std::filesystem::path defaultFallbackFile(const std::string& service);

private:
    std::optional<std::string> readFileLocked(const std::string& account) const;
    bool writeFileLocked(const std::string& account, const std::optional<std::string>& secret);

    std::string m_service;
    std::filesystem::path m_file;
    bool m_useSecretService = false;
    mutable std::mutex m_mutex;
};

} // namespace quillon::platform
