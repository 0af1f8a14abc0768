#pragma once

#include <nlohmann/json.hpp>

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace quillon::platform {

/// The user's preferences: one JSON object whose member names are the full keys
/// ("Quillon.timing.undoCoalesceInterval"), kept in memory and written atomically on every change.
///
/// A file that cannot be parsed is moved aside with a timestamp (never deleted) and the defaults
/// are used; the program never stops because of its preferences. Safe to use from any thread.
class Preferences {
public:
    /// Reads `file` (missing means empty). The file is created on the first change.
    explicit Preferences(std::filesystem::path file);
    /// Waits for a write still in flight.
    ~Preferences();

    /// Preferences backed by no file at all, for tests and one-off runs.
    static Preferences inMemory();

    const std::filesystem::path& file() const { return m_file; }

    std::optional<nlohmann::json> value(const std::string& key) const;
    bool contains(const std::string& key) const;

    /// The rule for every numeric setting: a stored positive number wins, else `fallback`
    /// (absent, zero, negative or not a number all mean the default).
    double positiveNumber(const std::string& key, double fallback) const;
    bool boolean(const std::string& key, bool fallback) const;
    std::string string(const std::string& key, const std::string& fallback = {}) const;
    std::vector<std::string> stringList(const std::string& key) const;

    void set(const std::string& key, nlohmann::json value);
    void remove(const std::string& key);

    /// Re-reads the file, for changes made by another process.
    void reload();

    /// From now on a change returns at once and a thread of its own writes the file (still
    /// atomically, newest values last), so a window that stores its selection on every click never
    /// waits for the disk. Only the newest of several quick changes is written.
    void writeInBackground();
    /// Waits until the file holds every change made so far.
    void flush();

private:
    class Writer;

    Preferences();
    void readFileLocked();
    void saveLocked();

    std::filesystem::path m_file;
    mutable std::mutex m_mutex;
    nlohmann::json m_values = nlohmann::json::object();
    std::unique_ptr<Writer> m_writer;
};

} // namespace quillon::platform
