#include "platform/Preferences.h"

#include "platform/AtomicFile.h"
#include "platform/Paths.h"
#include "platform/WorkFileName.h"

#include <spdlog/spdlog.h>

#include <chrono>
#include <condition_variable>
#include <ctime>
#include <thread>

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

void writeQuietly(const fs::path& file, const std::string& text) {
    try {
        createFolderQuietly(file.parent_path());
        writeFileAtomically(file, text);
    } catch (const std::exception& failure) {
        spdlog::error("Failed to save preferences: {}", failure.what());
    }
}

} // namespace

/// One thread that writes the newest text it was handed; older texts still waiting are dropped.
class Preferences::Writer {
public:
    explicit Writer(fs::path file) : m_file(std::move(file)), m_thread([this] { run(); }) {}

    ~Writer() {
        {
            std::lock_guard lock(m_mutex);
            m_stopping = true;
        }
        m_changed.notify_one();
        m_thread.join();
    }

    void post(std::string text) {
        {
            std::lock_guard lock(m_mutex);
            m_pending = std::move(text);
        }
        m_changed.notify_one();
    }

    void flush() {
        std::unique_lock lock(m_mutex);
        m_written.wait(lock, [this] { return !m_pending && !m_busy; });
    }

private:
    void run() {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_changed.wait(lock, [this] { return m_pending || m_stopping; });
            if (!m_pending)
                return;
            std::string text = std::move(*m_pending);
            m_pending.reset();
            m_busy = true;
            lock.unlock();
            writeQuietly(m_file, text);
            lock.lock();
            m_busy = false;
            m_written.notify_all();
        }
    }

    const fs::path m_file;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::condition_variable m_written;
    std::optional<std::string> m_pending;
    bool m_busy = false;
    bool m_stopping = false;
    std::thread m_thread;
};

Preferences::Preferences() = default;

Preferences::~Preferences() = default;

Preferences::Preferences(fs::path file) : m_file(std::move(file)) {
    workFileName::removeAbandoned(m_file.parent_path());
    std::lock_guard lock(m_mutex);
    readFileLocked();
}

Preferences Preferences::inMemory() {
    return Preferences();
}

void Preferences::reload() {
    flush();
    std::lock_guard lock(m_mutex);
    readFileLocked();
}

void Preferences::writeInBackground() {
    std::lock_guard lock(m_mutex);
    if (!m_writer && !m_file.empty())
        m_writer = std::make_unique<Writer>(m_file);
}

void Preferences::flush() {
    Writer* writer = nullptr;
    {
        std::lock_guard lock(m_mutex);
        writer = m_writer.get();
    }
    if (writer)
        writer->flush();
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
    if (m_writer)
        m_writer->post(m_values.dump(2) + "\n");
    else
        writeQuietly(m_file, m_values.dump(2) + "\n");
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
    // Every write replaces the whole file: an unchanged value is not worth one.
    if (auto found = m_values.find(key); found != m_values.end() && *found == value)
        return;
    m_values[key] = std::move(value);
    saveLocked();
}

void Preferences::remove(const std::string& key) {
    std::lock_guard lock(m_mutex);
    if (m_values.erase(key) > 0)
        saveLocked();
}

} // namespace quillon::platform
