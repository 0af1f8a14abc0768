#pragma once

#include "orvane/IntelligenceFeature.h"
#include "preach/PreachTimeEstimate.h"

#include <string>
#include <vector>

namespace quillon::preach {

/// Asks the model which sections are lists read point by point and which are prose. Scripture
/// sections keep their delivery and are not sent. The fallback keeps every delivery as it is.
class PreachTimeCategoriser final
    : public orvane::IntelligenceFeature<std::vector<PreachTimeEstimate::SectionText>, std::vector<Delivery>> {
public:
    static constexpr const char* instructions =
        "You label sections of a sermon by how they are delivered aloud. Answer with one line per section, exactly "
        "\"<number>: prose\" or \"<number>: list\". A list is an enumerated set of points, a set of bullet items, or "
        "anything a speaker reads out one by one with a pause between. Everything else is prose. Output nothing else "
        "— no explanation, no heading, no blank lines.";

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    std::vector<Delivery> fallback(const std::vector<PreachTimeEstimate::SectionText>& sections) const override;
    std::vector<Delivery> generate(const std::vector<PreachTimeEstimate::SectionText>& sections,
                                   orvane::IntelligenceBackendProviding& backend) const override;

    /// The prompt: the texts of the non-scripture sections, numbered from 0.
    static std::string prompt(const std::vector<PreachTimeEstimate::SectionText>& sections);
    /// Relabels the sections named by "<number>: prose|list" lines; throws malformedResponse when no
    /// line can be read.
    static std::vector<Delivery> parseReply(const std::string& reply,
                                            const std::vector<PreachTimeEstimate::SectionText>& sections);

    /// The sermon's estimate with the model's labels when a model answered usefully
    /// (`wasCategorised` true), else the uncategorised estimate, with the path that produced it so
    /// the caller can say why the labels are missing. A sermon without sections asks no model and
    /// takes the fallback path with no reason.
    static orvane::IntelligenceOutcome<PreachTimeEstimate>
    categorisedEstimate(const model::SermonNote& sermon, const PreachPace& pace,
                        const ScriptureTextProvider& scriptureText, const orvane::ModelRouter& router);
};

} // namespace quillon::preach
