#pragma once

#include "orvane/IntelligenceFeature.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quillon::intelligence {

/// One stretch of an unstructured text (a transcript's speech between pauses), with the pause
/// before it in seconds (0 when not known).
struct SpokenPassage {
    std::string text;
    double pauseBefore = 0;

    bool operator==(const SpokenPassage&) const = default;
};

/// Where a topic begins in the passages, and its title.
struct OutlineSection {
    std::string title;
    std::size_t firstPassage = 0;

    bool operator==(const OutlineSection&) const = default;
};

/// Groups a run of passages into topics at the places the speaker moves on. The model is shown the
/// numbered passages with their pauses and names where each topic begins; without a model a topic
/// begins after a long pause, at a spoken heading ("secondly", "my next point", "in conclusion") or
/// at a new scripture reference, once the topic before has some substance. The sections always
/// start at passage 0 and ascend.
class MessyDocumentOutliner final
    : public orvane::IntelligenceFeature<std::vector<SpokenPassage>, std::vector<OutlineSection>> {
public:
    static constexpr std::size_t maximumTopics = 12;
    /// Words a topic needs before a pause, heading or reference may end it.
    static constexpr std::size_t minimumTopicWords = 25;
    /// A pause this long (seconds) is a change of topic.
    static constexpr double topicPauseSeconds = 1.5;

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    std::vector<OutlineSection> fallback(const std::vector<SpokenPassage>& passages) const override;
    std::vector<OutlineSection> generate(const std::vector<SpokenPassage>& passages,
                                         orvane::IntelligenceBackendProviding& backend) const override;

    static std::string instructions();
    static std::string prompt(const std::vector<SpokenPassage>& passages);
    /// "TOPIC <n>: <title>" lines with ascending passage numbers (1-based) within range; the first
    /// topic is moved to passage 1. Throws malformedResponse when no line is usable.
    static std::vector<OutlineSection> sectionsFrom(const std::string& reply, std::size_t passageCount);
    /// True when `text` opens with a spoken heading ("first", "secondly", "my next point", "finally").
    static bool opensWithHeading(const std::string& text);
};

} // namespace quillon::intelligence
