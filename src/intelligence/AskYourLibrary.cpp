#include "intelligence/AskYourLibrary.h"

#include "intelligence/FeatureText.h"
#include "intelligence/ReferenceRecogniser.h"
#include "orvane/LexicalTokenizer.h"
#include "orvane/NumberedChoice.h"
#include "orvane/StopWords.h"
#include "scripture/ReferenceParser.h"

#include <algorithm>
#include <set>

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
        return std::any_of(sermon->references.begin(), sermon->references.end(),
                           [&](const scripture::ScriptureReference& given) {
                               return ReferenceRecogniser::isWithin(reference, given);
                           });
    const auto& verse = std::get<Verse>(value);
    std::optional<scripture::BibleBook> book = scripture::resolveBook(verse.bookName);
    if (!book)
        return false;
    scripture::ScriptureReference given{*book, verse.chapter, std::vector<int>{verse.verse}};
    return ReferenceRecogniser::isWithin(reference, given);
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

namespace {

/// Words that ask rather than say what is asked about: who asks, and what they did with it.
bool asksRatherThanNames(const std::string& word) {
    static const std::set<std::string> words = {
        "i",         "we",        "me",         "us",        "my",       "our",       "ive",       "weve",
        "taught",    "teach",     "teaches",    "teaching",  "preached", "preaches",  "spoken",    "speak",
        "spoke",     "talked",    "talk",       "mentioned", "mention",  "covered",   "cover",     "written",
        "wrote",     "write",     "shared",     "share",     "told",     "explained", "explain",   "addressed",
        "discussed", "discuss",   "learned",    "learnt",    "believe",  "believed",  "already",   "recently",
        "lately",    "sermons",   "message",    "messages",  "series",   "anywhere",  "somewhere", "ever",
        "often",     "regarding", "concerning", "topic",     "subject",  "said",      "say",       "preach",
    };
    return words.contains(word);
}

} // namespace

std::string AskYourLibrary::subjectOf(const std::string& question) {
    std::string text = featureText::trimmed(question);
    while (!text.empty() && (text.back() == '?' || text.back() == '.' || text.back() == '!'))
        text.pop_back();
    if (scripture::parse(text))
        return text;
    if (std::vector<scripture::ScriptureReference> named = ReferenceRecogniser::referencesIn(text); !named.empty())
        return named.front().description();
    std::string subject;
    std::set<std::string> seen;
    for (const std::string& word : orvane::LexicalTokenizer::tokens(text, 3, true))
        if (!asksRatherThanNames(word) && orvane::StopWords::isMeaningful(word, 3) && seen.insert(word).second)
            subject += (subject.empty() ? "" : " ") + word;
    return subject;
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
        std::vector<scripture::ScriptureReference> named = ReferenceRecogniser::referencesIn(note);
        if (!std::all_of(named.begin(), named.end(),
                         [&](const scripture::ScriptureReference& reference) { return source.supports(reference); }))
            continue;
        points.push_back({std::move(note), source});
    }
    return points;
}

std::vector<LibraryAnswerPoint> AskYourLibrary::generate(const Input& input,
                                                         orvane::IntelligenceBackendProviding& backend) const {
    // Nothing found to rest an answer on: the model is not asked, and the empty answer is not its own.
    if (input.second.empty())
        throw orvane::IntelligenceError::malformedResponse(nothingMatches);
    std::string reply = backend.respond({instructions, prompt(input), {}}).text;
    return pointsFrom(reply, input.second);
}

} // namespace quillon::intelligence
