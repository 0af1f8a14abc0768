#pragma once

#include <cstdint>
#include <string>

namespace quillon::testing {

/// A WAV file of `seconds` of 16 kHz mono silence: readable audio for tests where a stub
/// transcription server decides what was said.
inline std::string silentWav(double seconds = 1.0) {
    std::string samples(static_cast<std::size_t>(seconds * 16000) * 2, '\0');
    std::string wav = "RIFF";
    auto put = [&](std::uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            wav += static_cast<char>((value >> (8 * i)) & 0xFF);
    };
    put(36 + static_cast<std::uint32_t>(samples.size()), 4);
    wav += "WAVEfmt ";
    put(16, 4), put(1, 2), put(1, 2), put(16000, 4), put(32000, 4), put(2, 2), put(16, 2);
    wav += "data";
    put(static_cast<std::uint32_t>(samples.size()), 4);
    return wav + samples;
}

} // namespace quillon::testing
