#include "platform/Preferences.h"

#include "platform/AtomicFile.h"
#include "platform/Paths.h"
#include "platform/WorkFileName.h"

#include <spdlog/spdlog.h>

#include <chrono>
#include <ctime>

namespace quillon::platform {
namespace fs = std::filesystem;

namespace {

std::string timestampForFileName() {
    std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
    localtime_r(&now, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &local);
    return text;
}

} // namespace

Preferences::Preferences(fs::path file) : m_file(std::move(file)) {
    workFileName::removeAbandoned(m_file.parent_path());
    std::lock_guard lock(m_mutex);
    readFileLocked();
}

Preferences Preferences::inMemory() {
    return Preferences();
}

void Preferences::reload() {
    std::lock_guard lock(m_mutex);
    readFileLocked();
}

void Preferences::readFileLocked() {
    m_values = nlohmann::json::object();
    if (m_file.empty())
        return;
    std::error_code error;
    if (!fs::exists(m_file, error))
        return;
    try {
        nlohmann::json parsed = nlohmann::json::parse(readFile(m_file));
        if (!parsed.is_object())
            throw FileError("the preferences are not a JSON object");
        m_values = std::move(parsed);
    } catch (const std::exception& failure) {
        fs::path aside = m_file;
        aside += ".corrupt-" + timestampForFileName();
        fs::rename(m_file, aside, error);
        spdlog::error("Preferences file {} could not be read ({}); moved it to {} and using defaults", m_file.string(),
                      failure.what(), aside.string());
    }
}

void Preferences::saveLocked() {
    if (m_file.empty())
        return;
    try {
        createFolderQuietly(m_file.parent_path());
        writeFileAtomically(m_file, m_values.dump(2) + "\n");
    } catch (const std::exception& failure) {
        spdlog::error("Failed to save preferences: {}", failure.what());
    }
}

std::optional<nlohmann::json> Preferences::value(const std::string& key) const {
    std::lock_guard lock(m_mutex);
    auto found = m_values.find(key);
    if (found == m_values.end())
        return std::nullopt;
    return *found;
}

bool Preferences::contains(const std::string& key) const {
    std::lock_guard lock(m_mutex);
    return m_values.contains(key);
}

double Preferences::positiveNumber(const std::string& key, double fallback) const {
    auto stored = value(key);
    if (!stored || !stored->is_number())
        return fallback;
    double number = stored->get<double>();
    return number > 0 ? number : fallback;
}

bool Preferences::boolean(const std::string& key, bool fallback) const {
    auto stored = value(key);
    return stored && stored->is_boolean() ? stored->get<bool>() : fallback;
}

std::string Preferences::string(const std::string& key, const std::string& fallback) const {
    auto stored = value(key);
    return stored && stored->is_string() ? stored->get<std::string>() : fallback;
}

std::vector<std::string> Preferences::stringList(const std::string& key) const {
    std::vector<std::string> list;
    auto stored = value(key);
    if (!stored || !stored->is_array())
        return list;
    for (const auto& item : *stored)
        if (item.is_string())
            list.push_back(item.get<std::string>());
    return list;
}

void Preferences::set(const std::string& key, nlohmann::json value) {
    std::lock_guard lock(m_mutex);
    m_values[key] = std::move(value);
    saveLocked();
}

void Preferences::remove(const std::string& key) {
    std::lock_guard lock(m_mutex);
    if (m_values.erase(key) > 0)
        saveLocked();
}

} // namespace quillon::platform
