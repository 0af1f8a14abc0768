#include "speech/Transcript.h"

#include <algorithm>
#include <cctype>

namespace quillon::speech {

std::string Transcript::text() const {
    std::string joined;
    for (const TranscriptSegment& segment : segments) {
        if (segment.text.empty())
            continue;
        if (!joined.empty())
            joined += ' ';
        joined += segment.text;
    }
    return joined;
}

bool Transcript::isEmpty() const {
    return std::none_of(segments.begin(), segments.end(), [](const TranscriptSegment& segment) {
        return std::any_of(segment.text.begin(), segment.text.end(),
                           [](unsigned char c) { return std::isalnum(c) != 0 || c >= 0x80; });
    });
}

} // namespace quillon::speech
