#include "intelligence/SermonTitleAndSummary.h"

#include "intelligence/Distinctiveness.h"
#include "intelligence/FeatureText.h"
#include "intelligence/ReferenceRecogniser.h"
#include "orvane/NumberedChoice.h"
#include "orvane/SentenceTokenizer.h"
#include "preach/PreachTimeEstimate.h"

#include <algorithm>
#include <cctype>

namespace quillon::intelligence {

namespace {

std::string permittedReferences(const model::SermonNote& sermon) {
    std::string text;
    for (const scripture::ScriptureReference& reference : sermonReferences(sermon))
        text += (text.empty() ? "" : ", ") + reference.description();
    return text.empty() ? "none" : text;
}

/// The text after a case-insensitive "KEY:" prefix, or nothing.
std::optional<std::string> afterKey(const std::string& line, std::string_view key) {
    if (line.size() < key.size() + 1)
        return std::nullopt;
    for (std::size_t i = 0; i < key.size(); ++i)
        if (std::toupper(static_cast<unsigned char>(line[i])) != key[i])
            return std::nullopt;
    if (line[key.size()] != ':')
        return std::nullopt;
    std::string value = featureText::trimmed(line.substr(key.size() + 1));
    // Models like to wrap titles in quotes.
    if (value.size() >= 2 && (value.front() == '"' && value.back() == '"'))
        value = featureText::trimmed(value.substr(1, value.size() - 2));
    return value;
}

} // namespace

std::string SermonTitleAndSummary::identifier() const {
    return orvane::intelligenceFeatureEntry("SermonTitleAndSummary")->identifier;
}

orvane::IntelligencePolicy SermonTitleAndSummary::policy() const {
    return orvane::intelligenceFeatureEntry("SermonTitleAndSummary")->policy;
}

std::vector<std::string> SermonTitleAndSummary::distinctiveSentences(const model::SermonNote& sermon) {
    std::vector<std::string> sentences = orvane::SentenceTokenizer::sentences(sermon.notes);
    std::vector<std::string> chosen;
    for (std::size_t position : distinctiveness::sentences(sentences, generationLimits::distinctiveSentences))
        chosen.push_back(sentences[position]);
    return chosen;
}

std::string SermonTitleAndSummary::emptyState(const model::SermonNote& sermon) {
    bool nothing = featureText::trimmed(sermon.title).empty() && sermonSections(sermon).empty() &&
                   featureText::trimmed(sermon.notes).empty();
    return nothing ? nothingToPhrase : "";
}

std::string SermonTitleAndSummary::instructions(const model::SermonNote& sermon) {
    return "You are preparing publishing copy for a church sermon, from the preacher's own working title, topic list, "
           "and most distinctive sentences — never from anything else. Give " +
           std::to_string(generationLimits::titles) +
           " different phrasings of a title for this same sermon, one per line, each \"TITLE: <a title>\", each at "
           "most " +
           std::to_string(generationLimits::titleCharacters) +
           " characters. Then one line, \"SUMMARY: <a summary>\", at most " +
           std::to_string(generationLimits::summaryCharacters) +
           " characters of plain prose. Never invent a fact, a story, a statistic, or a scripture reference that was "
           "not given to you. The only scripture references you may mention by reference are: " +
           permittedReferences(sermon) + ". Never quote a Bible verse's wording from memory.";
}

std::string SermonTitleAndSummary::prompt(const model::SermonNote& sermon) {
    std::vector<std::string> topics;
    for (const SermonSection& section : sermonSections(sermon))
        if (!section.heading.empty())
            topics.push_back(section.heading);
    return "Working title: " + sermon.title + "\nTopics:\n" + orvane::NumberedChoice::format(topics) +
           "\nDistinctive sentences from the manuscript:\n" +
           orvane::NumberedChoice::format(distinctiveSentences(sermon));
}

TitleAndSummary SermonTitleAndSummary::copyFrom(const std::string& reply, const model::SermonNote& sermon) {
    std::vector<scripture::ScriptureReference> allowed = sermonReferences(sermon);
    TitleAndSummary copy;
    for (const std::string& line : featureText::lines(reply)) {
        if (auto title = afterKey(line, "TITLE")) {
            if (title->empty() || featureText::characterCount(*title) > generationLimits::titleCharacters ||
                !ReferenceRecogniser::namesOnly(*title, allowed) || copy.titles.size() >= generationLimits::titles)
                continue;
            if (std::find(copy.titles.begin(), copy.titles.end(), *title) == copy.titles.end())
                copy.titles.push_back(*title);
        } else if (auto summary = afterKey(line, "SUMMARY")) {
            if (copy.summary.empty() && ReferenceRecogniser::namesOnly(*summary, allowed))
                copy.summary = featureText::shortened(*summary, generationLimits::summaryCharacters);
        }
    }
    if (copy.titles.empty())
        throw orvane::IntelligenceError::malformedResponse("No usable title came back.");
    return copy;
}

TitleAndSummary SermonTitleAndSummary::fallback(const model::SermonNote& sermon) const {
    TitleAndSummary copy;
    std::string working = featureText::trimmed(sermon.title);
    std::vector<SermonSection> sections = sermonSections(sermon);
    auto add = [&](const std::string& title) {
        std::string shortened = featureText::shortened(title, generationLimits::titleCharacters);
        if (!shortened.empty() && copy.titles.size() < generationLimits::titles &&
            std::find(copy.titles.begin(), copy.titles.end(), shortened) == copy.titles.end())
            copy.titles.push_back(shortened);
    };
    add(working);
    if (!sections.empty() && !sections.front().heading.empty())
        add(working.empty() ? sections.front().heading : working + ": " + sections.front().heading);
    if (sermon.series && !featureText::trimmed(*sermon.series).empty() && !working.empty())
        add(featureText::trimmed(*sermon.series) + " — " + working);
    std::string summary;
    for (const std::string& sentence : distinctiveSentences(sermon))
        summary += (summary.empty() ? "" : " ") + sentence;
    if (summary.empty() && !sections.empty())
        summary = sections.front().body();
    copy.summary = featureText::shortened(summary, generationLimits::summaryCharacters);
    return copy;
}

TitleAndSummary SermonTitleAndSummary::generate(const model::SermonNote& sermon,
                                                orvane::IntelligenceBackendProviding& backend) const {
    if (!emptyState(sermon).empty())
        throw orvane::IntelligenceError::malformedResponse(nothingToPhrase);
    return copyFrom(backend.respond({instructions(sermon), prompt(sermon), {}}).text, sermon);
}

SermonMediaPackage SermonMediaPackage::assemble(const model::SermonNote& sermon, const TitleAndSummary& copy,
                                                bool wasGenerated, double wordsPerMinute) {
    SermonMediaPackage package;
    package.titles = copy.titles;
    package.summary = copy.summary;
    package.wasGenerated = wasGenerated;
    std::vector<std::string> quotes = SermonTitleAndSummary::distinctiveSentences(sermon);
    for (const std::string& quote : quotes)
        if (package.pullQuotes.size() < generationLimits::pullQuotes)
            package.pullQuotes.push_back(quote);

    std::string title = copy.titles.empty() ? sermon.title : copy.titles.front();
    std::string tags;
    for (const std::string& tag : sermon.tags) {
        std::string word;
        for (char c : tag)
            if (std::isalnum(static_cast<unsigned char>(c)))
                word += c;
        if (!word.empty())
            tags += " #" + word;
    }
    // The platforms' own caption limits, in user-perceived characters.
    const std::pair<const char*, std::size_t> platforms[] = {{"Instagram", 2200}, {"Facebook", 500}, {"X", 280}};
    for (const auto& [platform, limit] : platforms) {
        std::string text = title + (copy.summary.empty() ? "" : "\n\n" + copy.summary) + (tags.empty() ? "" : "\n\n") +
                           featureText::trimmed(tags);
        package.captions.push_back({platform, featureText::shortened(text, limit)});
    }

    double seconds = 0;
    preach::PreachPace pace;
    pace.wordsPerMinute = wordsPerMinute > 0 ? wordsPerMinute : 130;
    for (const preach::PreachTimeEstimate::SectionText& part : preach::PreachTimeEstimate::sectionsOf(sermon)) {
        bool topic = std::any_of(sermon.topics.begin(), sermon.topics.end(), [&](const model::SermonTopic& t) {
            return (t.title.empty() ? std::string("Topic") : t.title) == part.section.title;
        });
        if (topic && part.section.title != "Topic")
            package.chapterMarkers.push_back({part.section.title, seconds});
        seconds += 60 * preach::PreachTimeEstimate::estimate({part.section}, pace).minutes;
    }
    return package;
}

} // namespace quillon::intelligence
