#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

namespace quillon::speech {

/// Reads a recording (WAV, FLAC, Ogg, MP3, M4A/AAC and whatever else FFmpeg knows) block by block
/// as 16 kHz mono signed 16-bit samples, the form both recognisers take. Only one decoded block is
/// held at a time, so an hour of preaching costs no more memory than a minute.
class AudioDecoder {
public:
    static constexpr int sampleRate = 16000;

    /// Throws TranscriptionError naming the file when it cannot be opened or holds no audio.
    explicit AudioDecoder(const std::filesystem::path& file);
    ~AudioDecoder();
    AudioDecoder(const AudioDecoder&) = delete;
    AudioDecoder& operator=(const AudioDecoder&) = delete;

    /// Replaces `samples` with the next block; false (and empty) once the recording has ended.
    /// A damaged stretch in the middle is skipped, as players do.
    bool read(std::vector<std::int16_t>& samples);

    /// The container's stated length; 0 when it does not say.
    double durationSeconds() const;
    /// Seconds delivered so far.
    double positionSeconds() const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace quillon::speech
