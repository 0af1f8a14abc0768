#pragma once

#include <string>

namespace quillon::exports {

/// One slide of the presentation before it is written as XML.
struct PowerPointSlide {
    /// `note` for the title slide, topics and sub-topics; `scripture` for one passage. The kind
    /// chooses the background and the body text size.
    enum class Kind { note, scripture };

    Kind kind = Kind::note;
    std::string title;
    /// Lines separated by "\n"; may be empty (then the slide has no body box).
    std::string body;

    bool operator==(const PowerPointSlide&) const = default;
};

} // namespace quillon::exports
