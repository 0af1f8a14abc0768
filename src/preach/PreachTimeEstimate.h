#pragma once

#include "model/SermonNote.h"
#include "preach/Delivery.h"
#include "preach/PreachPace.h"

#include <functional>
#include <string>
#include <vector>

namespace quillon::preach {

/// The text of an attached passage as it is read aloud; empty when the Bible text is not at hand.
using ScriptureTextProvider = std::function<std::string(const model::SermonScripture&)>;

/// How long a sermon will take to deliver, section by section.
struct PreachTimeEstimate {
    struct Section {
        std::string title;
        int words = 0;
        Delivery delivery = Delivery::prose;

        bool operator==(const Section&) const = default;
    };

    /// A section and the words it is counted from (what the categoriser reads).
    struct SectionText {
        Section section;
        std::string text;
    };

    double minutes = 0;
    std::vector<Section> sections;
    /// True when the language model labelled the sections.
    bool wasCategorised = false;

    /// Cuts a sermon into spoken sections, in the order they are preached: each topic (its title
    /// and details), each sub-topic (its title and details), each attached passage read aloud (a
    /// `scripture` section titled by its reference), then the manuscript ("Notes"). Sections with no
    /// words are left out. `scriptureText` may be empty: the passages then count no words.
    static std::vector<SectionText> sectionsOf(const model::SermonNote& sermon,
                                               const ScriptureTextProvider& scriptureText = {});

    /// Times `sections` at `pace`; every rate is at least 1 word a minute.
    static PreachTimeEstimate estimate(std::vector<Section> sections, const PreachPace& pace,
                                       bool wasCategorised = false);
    static PreachTimeEstimate estimate(const model::SermonNote& sermon, const PreachPace& pace,
                                       const ScriptureTextProvider& scriptureText = {});

    /// "1 min" … "59 min", "1 hr", "1 hr 30 min": rounded to whole minutes, never below 1 min.
    static std::string formatted(double minutes);

    /// The words of each delivery, for recording an observation.
    int words(Delivery delivery) const;
};

} // namespace quillon::preach
