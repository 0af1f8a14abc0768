#include "intelligence/AskYourLibrary.h"

#include "intelligence/FeatureText.h"
#include "orvane/NumberedChoice.h"
#include "scripture/ReferenceParser.h"

#include <algorithm>

namespace quillon::intelligence {

std::string LibrarySource::label() const {
    if (const auto* sermon = std::get_if<Sermon>(&value))
        return sermon->title;
    const auto& verse = std::get<Verse>(value);
    return verse.bookName + " " + std::to_string(verse.chapter) + ":" + std::to_string(verse.verse) + " (" +
           std::string(model::rawValue(verse.version)) + ")";
}

std::string LibrarySource::line() const {
    if (const auto* sermon = std::get_if<Sermon>(&value))
        return "Sermon \"" + sermon->title + "\": " + sermon->excerpt;
    const auto& verse = std::get<Verse>(value);
    return label() + ": " + verse.text;
}

bool LibrarySource::supports(const scripture::ScriptureReference& reference) const {
    if (const auto* sermon = std::get_if<Sermon>(&value))
        return std::any_of(
            sermon->references.begin(), sermon->references.end(),
            [&](const scripture::ScriptureReference& given) { return featureText::isWithin(reference, given); });
    const auto& verse = std::get<Verse>(value);
    std::optional<scripture::BibleBook> book = scripture::resolveBook(verse.bookName);
    if (!book)
        return false;
    scripture::ScriptureReference given{*book, verse.chapter, std::vector<int>{verse.verse}};
    return featureText::isWithin(reference, given);
}

std::string AskYourLibrary::identifier() const {
    return orvane::intelligenceFeatureEntry("AskYourLibrary")->identifier;
}

orvane::IntelligencePolicy AskYourLibrary::policy() const {
    return orvane::intelligenceFeatureEntry("AskYourLibrary")->policy;
}

std::vector<LibraryAnswerPoint> AskYourLibrary::fallback(const Input&) const {
    return {};
}

std::string AskYourLibrary::prompt(const Input& input) {
    std::vector<std::string> lines;
    for (const LibrarySource& source : input.second)
        lines.push_back(source.line());
    return "Question: " + input.first + "\n\nSources:\n" + orvane::NumberedChoice::format(lines);
}

std::vector<LibraryAnswerPoint> AskYourLibrary::pointsFrom(const std::string& reply,
                                                           const std::vector<LibrarySource>& sources) {
    if (featureText::isNone(reply))
        return {};
    std::vector<LibraryAnswerPoint> points;
    int count = static_cast<int>(sources.size());
    for (const orvane::NumberedChoice::Choice& choice :
         orvane::NumberedChoice::parse(featureText::trimmed(reply), count, true)) {
        if (choice.index < 0 || choice.index >= count)
            continue;
        std::string note = featureText::trimmed(choice.note);
        if (note.empty())
            continue;
        const LibrarySource& source = sources[static_cast<std::size_t>(choice.index)];
        std::vector<scripture::ScriptureReference> named = featureText::referencesIn(note);
        if (!std::all_of(named.begin(), named.end(),
                         [&](const scripture::ScriptureReference& reference) { return source.supports(reference); }))
            continue;
        points.push_back({std::move(note), source});
    }
    return points;
}

std::vector<LibraryAnswerPoint> AskYourLibrary::generate(const Input& input,
                                                         orvane::IntelligenceBackendProviding& backend) const {
    if (input.second.empty())
        return {};
    std::string reply = backend.respond({instructions, prompt(input), {}}).text;
    return pointsFrom(reply, input.second);
}

} // namespace quillon::intelligence
