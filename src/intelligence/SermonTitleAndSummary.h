#pragma once

#include "intelligence/GenerationLimits.h"
#include "model/SermonNote.h"
#include "orvane/IntelligenceFeature.h"

#include <string>
#include <vector>

namespace quillon::intelligence {

/// Publishing copy: a few phrasings of the title and a short summary.
struct TitleAndSummary {
    std::vector<std::string> titles;
    std::string summary;
    bool operator==(const TitleAndSummary&) const = default;
};

/// Titles and summary written only from the working title, topics and most distinctive sentences.
class SermonTitleAndSummary final : public orvane::IntelligenceFeature<model::SermonNote, TitleAndSummary> {
public:
    static constexpr const char* generatedCaption =
        "Title and summary phrased by a model, grounded in this sermon's own content. Review before publishing.";
    static constexpr const char* fallbackCaption = "Assembled directly from the sermon's own working title and most "
                                                   "distinctive sentences — no model was available.";

    static constexpr const char* nothingToPhrase =
        "This sermon has no title, outline or manuscript to phrase a title from yet.";

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    /// The working title (and its pairing with the first topic or the series), and the most
    /// distinctive sentences as the summary.
    TitleAndSummary fallback(const model::SermonNote& sermon) const override;
    TitleAndSummary generate(const model::SermonNote& sermon,
                             orvane::IntelligenceBackendProviding& backend) const override;

    /// The sentence shown instead of asking a model when there is nothing to work from; empty when there is.
    static std::string emptyState(const model::SermonNote& sermon);
    static std::string instructions(const model::SermonNote& sermon);
    static std::string prompt(const model::SermonNote& sermon);
    /// "TITLE:" lines within the limits and naming only the sermon's scripture, then the
    /// "SUMMARY:" line shortened to its limit. Throws malformedResponse when no title is usable.
    static TitleAndSummary copyFrom(const std::string& reply, const model::SermonNote& sermon);
    /// The manuscript's most distinctive sentences, in text order.
    static std::vector<std::string> distinctiveSentences(const model::SermonNote& sermon);
};

/// One social-media caption of the media package.
struct SocialCaption {
    std::string platform;
    std::string text;
    bool operator==(const SocialCaption&) const = default;
};

/// A chapter marker for a recording: a topic and when it starts.
struct ChapterMarker {
    std::string title;
    double startSeconds = 0;
    bool operator==(const ChapterMarker&) const = default;
};

/// Everything needed to publish a sermon: titles, summary, pull quotes, captions and chapters.
struct SermonMediaPackage {
    std::vector<std::string> titles;
    std::string summary;
    std::vector<std::string> pullQuotes;
    std::vector<SocialCaption> captions;
    std::vector<ChapterMarker> chapterMarkers;
    bool wasGenerated = false;

    /// Builds the package around `copy`; captions keep to each platform's limit, and chapter markers
    /// start where each topic starts at `wordsPerMinute`.
    static SermonMediaPackage assemble(const model::SermonNote& sermon, const TitleAndSummary& copy, bool wasGenerated,
                                       double wordsPerMinute = 130);
};

} // namespace quillon::intelligence
