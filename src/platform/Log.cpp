#include "platform/Log.h"

#include "platform/Paths.h"

#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

#include <memory>
#include <vector>

namespace quillon::platform {

void setUpLogging(bool alsoToStandardError) {
    setUpLogging(logFile(), alsoToStandardError);
}

void setUpLogging(const std::filesystem::path& file, bool alsoToStandardError) {
    std::vector<spdlog::sink_ptr> sinks;
    if (alsoToStandardError) {
        auto standardError = std::make_shared<spdlog::sinks::stderr_sink_mt>();
        standardError->set_pattern("quillon: %l: %v");
        standardError->set_level(spdlog::level::warn);
        sinks.push_back(standardError);
    }
    try {
        createFolderQuietly(file.parent_path());
        constexpr size_t maximumSize = 5 * 1024 * 1024;
        constexpr size_t keptFiles = 3;
        auto rotating = std::make_shared<spdlog::sinks::rotating_file_sink_mt>(file.string(), maximumSize, keptFiles);
        rotating->set_pattern("%Y-%m-%dT%H:%M:%S%z [%l] %v");
        sinks.push_back(rotating);
    } catch (const spdlog::spdlog_ex&) {
        // Diagnostics are a convenience: a read-only state folder must not stop the program.
    }
    auto logger = std::make_shared<spdlog::logger>("quillon", sinks.begin(), sinks.end());
    logger->set_level(spdlog::level::info);
    logger->flush_on(spdlog::level::warn);
    spdlog::set_default_logger(logger);
}

} // namespace quillon::platform
