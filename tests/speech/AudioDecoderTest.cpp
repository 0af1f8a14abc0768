#include "speech/AudioDecoder.h"
#include "SpokenAudio.h"
#include "speech/TranscriptionError.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace quillon::speech {
namespace {

using testing::SpokenAudio;
using testing::TemporaryFolder;

struct Decoded {
    std::size_t samples = 0;
    std::size_t largestBlock = 0;
    double peak = 0;
};

Decoded decodeAll(const std::filesystem::path& file) {
    AudioDecoder decoder(file);
    Decoded decoded;
    std::vector<std::int16_t> block;
    while (decoder.read(block)) {
        decoded.samples += block.size();
        decoded.largestBlock = std::max(decoded.largestBlock, block.size());
        for (std::int16_t sample : block)
            decoded.peak = std::max(decoded.peak, std::abs(static_cast<double>(sample)) / 32768.0);
    }
    EXPECT_NEAR(decoder.positionSeconds(), static_cast<double>(decoded.samples) / AudioDecoder::sampleRate, 1e-9);
    return decoded;
}

TEST(AudioDecoder, readsEachContainerAsSixteenKilohertzMonoInSmallBlocks) {
    TemporaryFolder folder;
    SpokenAudio audio(folder);
    struct Case {
        std::filesystem::path file;
        double seconds;
    };
    const Case cases[] = {
        {audio.tone("stereo.wav", 2.0), 2.0},
        {audio.tone("mono-8k.wav", 1.5, 8000, 1), 1.5},
        {audio.tone("tone.flac", 2.0), 2.0},
        {audio.tone("tone.ogg", 2.0), 2.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file.filename().string());
        const Decoded decoded = decodeAll(c.file);
        EXPECT_NEAR(static_cast<double>(decoded.samples), c.seconds * AudioDecoder::sampleRate,
                    0.02 * c.seconds * AudioDecoder::sampleRate);
        // Both channels at half volume fold into one at half volume, not clipped.
        EXPECT_NEAR(decoded.peak, 0.5, 0.08);
        EXPECT_LE(decoded.largestBlock, static_cast<std::size_t>(AudioDecoder::sampleRate));
        EXPECT_NEAR(AudioDecoder(c.file).durationSeconds(), c.seconds, 0.05);
    }
}

TEST(AudioDecoder, refusesFilesThatHoldNoAudio) {
    TemporaryFolder folder;
    const std::filesystem::path files[] = {
        folder.write("notes.txt", "I. Grace\nA. Promise\n"),
        folder.write("empty.wav", ""),
        folder.write("truncated.wav", "RIFF\x24\x00\x00\x00WAVEfmt "),
        folder / "missing.mp3",
    };
    for (const auto& file : files) {
        try {
            AudioDecoder decoder(file);
            std::vector<std::int16_t> block;
            // A header that opens but holds nothing gives an empty recording rather than an error.
            while (decoder.read(block)) {
            }
        } catch (const TranscriptionError& error) {
            EXPECT_NE(std::string(error.what()).find(file.filename().string()), std::string::npos) << error.what();
        }
    }
    EXPECT_THROW(AudioDecoder(folder / "missing.mp3"), TranscriptionError);
    EXPECT_THROW(AudioDecoder(folder / "notes.txt"), TranscriptionError);
}

} // namespace
} // namespace quillon::speech
