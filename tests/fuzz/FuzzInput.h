#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <spdlog/spdlog.h>

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

} // namespace quillon::fuzz
