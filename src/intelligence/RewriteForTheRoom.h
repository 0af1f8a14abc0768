#pragma once

#include "orvane/IntelligenceFeature.h"

#include <string>
#include <vector>

namespace quillon::intelligence {

/// The kind of room a section is rewritten for.
enum class RoomProfile { liveStream, largeSanctuary, youthAndFamily, smallGroup };

/// "liveStream", …: the name used on the command line.
std::string_view rawValue(RoomProfile room);
std::optional<RoomProfile> roomProfileFromRawValue(std::string_view text);
/// "Online / Livestream", "Large Sanctuary", "Youth & Family", "Small Group".
std::string_view label(RoomProfile room);

/// A section's text and the room to rewrite it for.
struct RewriteRequest {
    std::string text;
    RoomProfile room = RoomProfile::largeSanctuary;
};

/// The rewritten text (the original, unchanged, for the fallback) and its reading grade.
struct Rewrite {
    std::string text;
    double readingGrade = 0;
    bool operator==(const Rewrite&) const = default;
};

/// Rewrites one section for a room, keeping every fact; a rewrite that cannot be verified against
/// the original is discarded.
class RewriteForTheRoom final : public orvane::IntelligenceFeature<RewriteRequest, Rewrite> {
public:
    static constexpr const char* unverified = "No model was available, or the rewrite could not be verified against "
                                              "this text — the original is shown unchanged.";
    static constexpr const char* commonInstruction =
        "Keep every fact, claim and idea already in the text — add nothing new. Never write out the words of a Bible "
        "verse from memory, and never introduce a scripture reference that is not already in the text you were "
        "given. Answer with the rewritten text only — no heading, no preamble, no explanation of what changed.";

    static constexpr const char* nothingToRewrite = "This section has no text to rewrite yet.";

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    Rewrite fallback(const RewriteRequest& request) const override;
    Rewrite generate(const RewriteRequest& request, orvane::IntelligenceBackendProviding& backend) const override;

    /// The sentence shown instead of asking a model when there is nothing to work from; empty when there is.
    static std::string emptyState(const RewriteRequest& request);
    /// The room's sentence, a blank, then the common sentence.
    static std::string instructions(RoomProfile room);
    /// "Rewritten by a model for <label>. Reading grade <grade>".
    static std::string caption(RoomProfile room, double readingGrade);
    /// Throws malformedResponse unless the rewrite names no new scripture reference, no number and
    /// no capitalised name absent from the original, and is 50–150% of its length.
    static Rewrite verified(const std::string& original, const std::string& reply);
    /// The Flesch–Kincaid grade: 0.39 × words per sentence + 11.8 × syllables per word − 15.59.
    static double readingGrade(const std::string& text);
};

} // namespace quillon::intelligence
