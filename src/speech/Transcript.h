#pragma once

#include <string>
#include <vector>

namespace quillon::speech {

/// A stretch of speech between pauses, with its place in the recording.
struct TranscriptSegment {
    std::string text;
    double startSeconds = 0;
    double endSeconds = 0;

    bool operator==(const TranscriptSegment&) const = default;
};

/// What a recogniser heard in one recording.
struct Transcript {
    std::vector<TranscriptSegment> segments;
    /// Which recogniser produced it: "pocketsphinx" or the transcription server's address.
    std::string recognizer;
    double durationSeconds = 0;

    /// The segments' texts joined with single spaces.
    std::string text() const;
    /// True when no words came back.
    bool isEmpty() const;
};

} // namespace quillon::speech
