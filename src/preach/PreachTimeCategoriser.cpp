#include "preach/PreachTimeCategoriser.h"

#include "orvane/NumberedChoice.h"

#include <cctype>
#include <optional>

namespace quillon::preach {

using orvane::IntelligenceError;

namespace {

/// Positions (in the estimate) of the sections sent to the model, in the order they are numbered.
std::vector<std::size_t> offeredPositions(const std::vector<PreachTimeEstimate::SectionText>& sections) {
    std::vector<std::size_t> positions;
    for (std::size_t position = 0; position < sections.size(); ++position)
        if (sections[position].section.delivery != Delivery::scripture)
            positions.push_back(position);
    return positions;
}

/// Reads "<number>: prose" or "<number>: list" (also with "." or ")" after the number), ignoring
/// case, blanks and whatever follows the label.
std::optional<std::pair<std::size_t, Delivery>> readLabel(const std::string& line) {
    std::size_t at = line.find_first_not_of(" \t\r");
    if (at == std::string::npos)
        return std::nullopt;
    std::size_t digitsEnd = line.find_first_not_of("0123456789", at);
    if (digitsEnd == at || digitsEnd - at > 6 || digitsEnd == std::string::npos)
        return std::nullopt;
    std::size_t number = std::stoul(line.substr(at, digitsEnd - at));
    at = line.find_first_not_of(" \t", digitsEnd);
    if (at == std::string::npos || (line[at] != ':' && line[at] != '.' && line[at] != ')'))
        return std::nullopt;
    at = line.find_first_not_of(" \t", at + 1);
    if (at == std::string::npos)
        return std::nullopt;
    std::string word;
    while (at < line.size() && std::isalpha(static_cast<unsigned char>(line[at])))
        word += static_cast<char>(std::tolower(static_cast<unsigned char>(line[at++])));
    if (word == "prose")
        return std::make_pair(number, Delivery::prose);
    if (word == "list")
        return std::make_pair(number, Delivery::list);
    return std::nullopt;
}

} // namespace

std::string PreachTimeCategoriser::identifier() const {
    return orvane::intelligenceFeatureEntry("PreachTimeCategoriser")->identifier;
}

orvane::IntelligencePolicy PreachTimeCategoriser::policy() const {
    return orvane::intelligenceFeatureEntry("PreachTimeCategoriser")->policy;
}

std::vector<Delivery>
PreachTimeCategoriser::fallback(const std::vector<PreachTimeEstimate::SectionText>& sections) const {
    std::vector<Delivery> deliveries;
    for (const auto& part : sections)
        deliveries.push_back(part.section.delivery);
    return deliveries;
}

std::string PreachTimeCategoriser::prompt(const std::vector<PreachTimeEstimate::SectionText>& sections) {
    std::vector<std::string> texts;
    for (std::size_t position : offeredPositions(sections))
        texts.push_back(sections[position].text);
    return orvane::NumberedChoice::format(texts);
}

std::vector<Delivery> PreachTimeCategoriser::parseReply(const std::string& reply,
                                                        const std::vector<PreachTimeEstimate::SectionText>& sections) {
    std::vector<std::size_t> positions = offeredPositions(sections);
    std::vector<Delivery> deliveries;
    for (const auto& part : sections)
        deliveries.push_back(part.section.delivery);
    bool anyRead = false;
    std::size_t start = 0;
    while (start < reply.size()) {
        std::size_t end = reply.find('\n', start);
        std::string text = reply.substr(start, end == std::string::npos ? std::string::npos : end - start);
        start = end == std::string::npos ? reply.size() : end + 1;
        std::optional<std::pair<std::size_t, Delivery>> label = readLabel(text);
        if (!label || label->first >= positions.size())
            continue;
        deliveries[positions[label->first]] = label->second;
        anyRead = true;
    }
    if (!anyRead)
        throw IntelligenceError::malformedResponse("No section label could be read from the answer.");
    return deliveries;
}

std::vector<Delivery> PreachTimeCategoriser::generate(const std::vector<PreachTimeEstimate::SectionText>& sections,
                                                      orvane::IntelligenceBackendProviding& backend) const {
    if (offeredPositions(sections).empty())
        return fallback(sections);
    std::string reply = backend.respond({instructions, prompt(sections), {}}).text;
    return parseReply(reply, sections);
}

orvane::IntelligenceOutcome<PreachTimeEstimate>
PreachTimeCategoriser::categorisedEstimate(const model::SermonNote& sermon, const PreachPace& pace,
                                           const ScriptureTextProvider& scriptureText,
                                           const orvane::ModelRouter& router) {
    std::vector<PreachTimeEstimate::SectionText> parts = PreachTimeEstimate::sectionsOf(sermon, scriptureText);
    std::vector<PreachTimeEstimate::Section> sections;
    for (const auto& part : parts)
        sections.push_back(part.section);
    if (parts.empty())
        return {PreachTimeEstimate::estimate(std::move(sections), pace), orvane::IntelligencePath::fallback(), false};
    orvane::IntelligenceOutcome<std::vector<Delivery>> outcome = orvane::run(PreachTimeCategoriser(), parts, router);
    for (std::size_t position = 0; position < sections.size() && position < outcome.value.size(); ++position)
        sections[position].delivery = outcome.value[position];
    return {PreachTimeEstimate::estimate(std::move(sections), pace, outcome.path.isGenerated()), outcome.path,
            outcome.needsGeneratedLabel};
}

} // namespace quillon::preach
