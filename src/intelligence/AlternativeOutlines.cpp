#include "intelligence/AlternativeOutlines.h"

#include "intelligence/FeatureText.h"
#include "intelligence/ReferenceRecogniser.h"
#include "orvane/NumberedChoice.h"

#include <cctype>

namespace quillon::intelligence {

namespace {

std::vector<scripture::ScriptureReference> offeredReferences(const OutlinePassage& passage) {
    std::vector<scripture::ScriptureReference> references;
    for (const auto& [verse, text] : passage.verses)
        for (auto& reference : ReferenceRecogniser::referencesIn(passage.book + " " + std::to_string(passage.chapter) +
                                                                 ":" + std::to_string(verse)))
            references.push_back(std::move(reference));
    return references;
}

} // namespace

std::string AlternativeOutlines::identifier() const {
    return orvane::intelligenceFeatureEntry("AlternativeOutlines")->identifier;
}

orvane::IntelligencePolicy AlternativeOutlines::policy() const {
    return orvane::intelligenceFeatureEntry("AlternativeOutlines")->policy;
}

std::string AlternativeOutlines::emptyState(const OutlinePassage& passage) {
    return passage.verses.empty() ? noVerses : "";
}

std::string AlternativeOutlines::prompt(const OutlinePassage& passage) {
    std::vector<std::string> sections;
    for (const auto& [verse, text] : passage.verses)
        sections.push_back(passage.book + " " + std::to_string(passage.chapter) + ":" + std::to_string(verse) + " — " +
                           text);
    return orvane::NumberedChoice::format(sections);
}

AlternativeOutline AlternativeOutlines::outlineFrom(const std::string& reply, const OutlinePassage& passage) {
    std::vector<std::string> lines = featureText::lines(reply);
    std::string first = lines.empty() ? std::string() : lines.front();
    std::string key = first.substr(0, 5);
    for (char& c : key)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (key != "NAME:")
        throw orvane::IntelligenceError::malformedResponse("No outline name was given.");
    AlternativeOutline outline;
    outline.name = featureText::trimmed(first.substr(5));
    std::vector<scripture::ScriptureReference> allowed = offeredReferences(passage);
    if (outline.name.empty() || featureText::characterCount(outline.name) > 80 ||
        !ReferenceRecogniser::namesOnly(outline.name, allowed))
        throw orvane::IntelligenceError::malformedResponse("The outline name was unusable.");

    int count = static_cast<int>(passage.verses.size());
    outline.points.assign(passage.verses.size(), {});
    std::string rest;
    for (std::size_t i = 1; i < lines.size(); ++i)
        rest += lines[i] + "\n";
    for (const auto& choice : orvane::NumberedChoice::parse(rest, count, false)) {
        if (choice.index < 0 || choice.index >= count || choice.note.empty() ||
            !ReferenceRecogniser::namesOnly(choice.note, allowed))
            continue;
        outline.points[static_cast<std::size_t>(choice.index)] = choice.note;
    }
    for (const std::string& point : outline.points)
        if (point.empty())
            throw orvane::IntelligenceError::malformedResponse("The outline did not cover every section.");
    return outline;
}

AlternativeOutline AlternativeOutlines::fallback(const OutlinePassage& passage) const {
    AlternativeOutline outline{"Verse by verse", {}};
    for (const auto& verse : passage.verses)
        outline.points.push_back(featureText::shortened(verse.second, 48)); // numbered by whoever shows it
    return outline;
}

AlternativeOutline AlternativeOutlines::generate(const OutlinePassage& passage,
                                                 orvane::IntelligenceBackendProviding& backend) const {
    if (passage.verses.empty())
        throw orvane::IntelligenceError::malformedResponse(noVerses);
    return outlineFrom(backend.respond({instructions, prompt(passage), {}}).text, passage);
}

} // namespace quillon::intelligence
