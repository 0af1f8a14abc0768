#pragma once

#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <string>

namespace quillon::testing {

/// Test recordings made at test time with espeak-ng and sox, so no audio is kept in the tree.
class SpokenAudio {
public:
    explicit SpokenAudio(const TemporaryFolder& folder) : m_folder(folder) {}

    /// `text` read aloud by espeak-ng's Klatt voice (22.05 kHz WAV), the clearest of its voices
    /// for a recogniser trained on people.
    std::filesystem::path speak(const std::string& name, const std::string& text) const {
        const std::filesystem::path file = m_folder / name;
        run("espeak-ng -v en-us+klatt4 -s 150 -w '" + file.string() + "' '" + text + "'");
        return file;
    }

    /// `seconds` of digital silence.
    std::filesystem::path silence(const std::string& name, double seconds) const {
        const std::filesystem::path file = m_folder / name;
        run("sox -n -r 16000 -c 1 '" + file.string() + "' trim 0 " + std::to_string(seconds));
        return file;
    }

    /// A 440 Hz tone of `seconds` at `rate` with `channels`, in the format the name's extension says.
    std::filesystem::path tone(const std::string& name, double seconds, int rate = 44100, int channels = 2) const {
        const std::filesystem::path file = m_folder / name;
        run("sox -n -r " + std::to_string(rate) + " -c " + std::to_string(channels) + " '" + file.string() +
            "' synth " + std::to_string(seconds) + " sine 440 vol 0.5");
        return file;
    }

    /// `first`, then `seconds` of silence, then `second`, as one 16 kHz WAV file.
    std::filesystem::path joined(const std::string& name, const std::filesystem::path& first, double seconds,
                                 const std::filesystem::path& second) const {
        const std::filesystem::path file = m_folder / name;
        const std::filesystem::path gap = silence(name + ".gap.wav", seconds);
        const std::filesystem::path a = m_folder / (name + ".a.wav");
        const std::filesystem::path b = m_folder / (name + ".b.wav");
        run("sox '" + first.string() + "' -r 16000 -c 1 '" + a.string() + "'");
        run("sox '" + second.string() + "' -r 16000 -c 1 '" + b.string() + "'");
        run("sox '" + a.string() + "' '" + gap.string() + "' '" + b.string() + "' '" + file.string() + "'");
        return file;
    }

private:
    static void run(const std::string& command) {
        if (std::system((command + " 2>/dev/null").c_str()) != 0)
            throw std::runtime_error("Could not make test audio: " + command);
    }

    const TemporaryFolder& m_folder;
};

} // namespace quillon::testing
