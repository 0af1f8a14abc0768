#include "support/LogCapture.h"

#include <spdlog/sinks/ringbuffer_sink.h>
#include <spdlog/spdlog.h>

namespace quillon::testing {

namespace {
using Sink = spdlog::sinks::ringbuffer_sink_mt;
}

LogCapture::LogCapture() : m_previous(spdlog::default_logger()) {
    auto sink = std::make_shared<Sink>(10000);
    sink->set_pattern("%l: %v");
    m_sink = sink;
    auto logger = std::make_shared<spdlog::logger>("capture", sink);
    logger->set_level(spdlog::level::trace);
    spdlog::set_default_logger(logger);
}

LogCapture::~LogCapture() {
    spdlog::set_default_logger(m_previous);
}

std::vector<std::string> LogCapture::lines() const {
    return std::static_pointer_cast<Sink>(m_sink)->last_formatted();
}

bool LogCapture::contains(const std::string& text) const {
    for (const auto& line : lines())
        if (line.find(text) != std::string::npos)
            return true;
    return false;
}

} // namespace quillon::testing
