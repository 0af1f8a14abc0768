#include "preach/PreachTimeEstimate.h"

#include "preach/WordCount.h"

#include <algorithm>
#include <cmath>

namespace quillon::preach {

namespace {

std::string joined(const std::string& title, const std::string& details) {
    if (title.empty())
        return details;
    if (details.empty())
        return title;
    return title + "\n" + details;
}

std::string referenceText(const model::SermonScripture& scripture) {
    std::string text =
        scripture.bookName + " " + std::to_string(scripture.chapter) + ":" + std::to_string(scripture.startVerse);
    if (scripture.endVerse > scripture.startVerse)
        text += "-" + std::to_string(scripture.endVerse);
    return text;
}

void addSection(std::vector<PreachTimeEstimate::SectionText>& sections, std::string title, std::string text,
                Delivery delivery) {
    int words = countSpokenWords(text);
    if (words == 0)
        return;
    sections.push_back({{std::move(title), words, delivery}, std::move(text)});
}

} // namespace

std::vector<PreachTimeEstimate::SectionText>
PreachTimeEstimate::sectionsOf(const model::SermonNote& sermon, const ScriptureTextProvider& scriptureText) {
    std::vector<SectionText> sections;
    // The outline is preached in list order, the order `show` prints; `sortOrder` never reorders it.
    for (const model::SermonTopic& topic : sermon.topics) {
        addSection(sections, topic.title.empty() ? "Topic" : topic.title, joined(topic.title, topic.details),
                   Delivery::prose);
        for (const model::SermonSubTopic& subTopic : topic.subTopics) {
            addSection(sections, subTopic.title.empty() ? "Subtopic" : subTopic.title,
                       joined(subTopic.title, subTopic.details), Delivery::prose);
            if (!scriptureText)
                continue;
            for (const model::SermonScripture& scripture : subTopic.scriptures)
                addSection(sections, referenceText(scripture), scriptureText(scripture), Delivery::scripture);
        }
    }
    addSection(sections, "Notes", sermon.notes, Delivery::prose);
    return sections;
}

PreachTimeEstimate PreachTimeEstimate::estimate(std::vector<Section> sections, const PreachPace& pace,
                                                bool wasCategorised) {
    PreachTimeEstimate result;
    for (const Section& section : sections) {
        double rate = pace.wordsPerMinute;
        if (section.delivery == Delivery::scripture)
            rate *= pace.scriptureFactor;
        else if (section.delivery == Delivery::list)
            rate *= pace.listFactor;
        result.minutes += section.words / std::max(rate, 1.0);
    }
    result.sections = std::move(sections);
    result.wasCategorised = wasCategorised;
    return result;
}

PreachTimeEstimate PreachTimeEstimate::estimate(const model::SermonNote& sermon, const PreachPace& pace,
                                                const ScriptureTextProvider& scriptureText) {
    std::vector<Section> sections;
    for (SectionText& part : sectionsOf(sermon, scriptureText))
        sections.push_back(std::move(part.section));
    return estimate(std::move(sections), pace);
}

std::string PreachTimeEstimate::formatted(double minutes) {
    // Clamped so that an absurd input cannot overflow the rounding.
    long long rounded = std::isfinite(minutes) ? std::llround(std::clamp(minutes, 0.0, 1e9)) : 0;
    if (rounded < 60)
        return std::to_string(std::max(rounded, 1LL)) + " min";
    long long hours = rounded / 60;
    long long rest = rounded % 60;
    if (rest == 0)
        return std::to_string(hours) + " hr";
    return std::to_string(hours) + " hr " + std::to_string(rest) + " min";
}

int PreachTimeEstimate::words(Delivery delivery) const {
    int total = 0;
    for (const Section& section : sections)
        if (section.delivery == delivery)
            total += section.words;
    return total;
}

} // namespace quillon::preach
