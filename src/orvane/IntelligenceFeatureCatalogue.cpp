#include "orvane/IntelligenceFeatureCatalogue.h"

namespace orvane {

namespace {

IntelligencePolicy withoutGeneratedLabel(IntelligencePolicy policy) {
    policy.requiresGeneratedLabel = false;
    return policy;
}

} // namespace

const std::vector<IntelligenceFeatureEntry>& intelligenceFeatureCatalogue() {
    static const std::vector<IntelligenceFeatureEntry> catalogue = {
        // A time estimate labels sections only; the preacher sees no model wording, so no label.
        {"PreachTimeCategoriser", "AI-032", withoutGeneratedLabel(IntelligencePolicy::onDeviceOnly())},
        {"PassageCommentary", "AI-039", IntelligencePolicy::onDeviceOnly()},
        {"IllustrationRanking", "AI-023", IntelligencePolicy::onDeviceOnly()},
        {"SermonTagSuggester", "AI-110", IntelligencePolicy::onDeviceOnly()},
        {"ListenerQuestions", "AI-054", IntelligencePolicy::onDeviceOnly()},
        {"ExplainPermissionPrompt", "AI-172", IntelligencePolicy::onDeviceOrPrivateCloud()},
        {"AskHowTo", "AI-165", IntelligencePolicy::onDeviceOnly()},
        {"MessyDocumentOutliner", "AI-144", IntelligencePolicy::onDeviceOnly()},
        {"GenerateDiscussionQuestions", "AI-140", IntelligencePolicy::onDeviceOnly()},
        {"AlternativeOutlines", "AI-057", IntelligencePolicy::onDeviceOnly()},
        {"SermonArticleGenerator", "AI-133", IntelligencePolicy::onDeviceOnly()},
        {"SeriesIdeaSuggester", "AI-027", IntelligencePolicy::onDeviceOnly()},
        {"RewriteForTheRoom", "AI-018", IntelligencePolicy::onDeviceOnly()},
        {"AskYourLibrary", "AI-086", IntelligencePolicy::onDeviceOnly()},
        {"HighlightSuggester", "AI-082", IntelligencePolicy::onDeviceOnly()},
        {"SermonTitleAndSummary", "AI-011", IntelligencePolicy::onDeviceOnly()},
    };
    return catalogue;
}

std::optional<IntelligenceFeatureEntry> intelligenceFeatureEntry(std::string_view name) {
    for (const IntelligenceFeatureEntry& entry : intelligenceFeatureCatalogue())
        if (entry.name == name)
            return entry;
    return std::nullopt;
}

} // namespace orvane
