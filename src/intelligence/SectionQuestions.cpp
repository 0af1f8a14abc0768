#include "intelligence/SectionQuestions.h"

#include "intelligence/Distinctiveness.h"
#include "intelligence/ReferenceRecogniser.h"
#include "orvane/NumberedChoice.h"
#include "orvane/SentenceTokenizer.h"
#include "scripture/ReferenceParser.h"

namespace quillon::intelligence {

std::string SectionQuestions::prompt(const std::vector<SermonSection>& sections) {
    std::vector<std::string> offered;
    for (const SermonSection& section : sections)
        offered.push_back(section.offered());
    return orvane::NumberedChoice::format(offered);
}

std::vector<SectionQuestion> SectionQuestions::questionsFrom(const std::string& reply,
                                                             const std::vector<SermonSection>& sections) const {
    std::string text = featureText::trimmed(reply);
    if (text.empty())
        throw orvane::IntelligenceError::malformedResponse(emptyMessage());
    if (featureText::isNone(text))
        return {};
    std::vector<SectionQuestion> questions;
    int count = static_cast<int>(sections.size());
    for (const auto& choice : orvane::NumberedChoice::parse(text, count, true)) {
        if (choice.index < 0 || choice.index >= count || !choice.note.ends_with('?'))
            continue;
        const SermonSection& section = sections[static_cast<std::size_t>(choice.index)];
        std::vector<scripture::ScriptureReference> allowed;
        for (const std::string& reference : section.scriptures)
            if (auto parsed = scripture::parse(reference))
                allowed.push_back(*parsed);
        if (!ReferenceRecogniser::namesOnly(choice.note, allowed))
            continue;
        questions.push_back({choice.index, section.heading, choice.note});
    }
    if (questions.empty())
        throw orvane::IntelligenceError::malformedResponse(unusableMessage());
    return questions;
}

std::string SectionQuestions::emptyState(const model::SermonNote& sermon) {
    return sermonSections(sermon).empty() ? nothingToAskAbout : "";
}

std::vector<SectionQuestion> SectionQuestions::generate(const model::SermonNote& sermon,
                                                        orvane::IntelligenceBackendProviding& backend) const {
    std::vector<SermonSection> sections = sermonSections(sermon);
    // With nothing to work from no request is made, and nothing may pass for a model's answer.
    if (sections.empty())
        throw orvane::IntelligenceError::malformedResponse(nothingToAskAbout);
    return questionsFrom(backend.respond({instructions(), prompt(sections), {}}).text, sections);
}

namespace {

std::string headingOrNumber(const SermonSection& section, std::size_t position) {
    return section.heading.empty() ? "point " + std::to_string(position + 1) : section.heading;
}

} // namespace

std::string GenerateDiscussionQuestions::identifier() const {
    return orvane::intelligenceFeatureEntry("GenerateDiscussionQuestions")->identifier;
}

orvane::IntelligencePolicy GenerateDiscussionQuestions::policy() const {
    return orvane::intelligenceFeatureEntry("GenerateDiscussionQuestions")->policy;
}

const char* GenerateDiscussionQuestions::instructions() const {
    return "You are writing discussion questions for a small group that just heard this sermon, to use afterwards. "
           "You are given numbered sections of the sermon (a heading, its notes, and any scripture already cited "
           "there). Write practical, application-focused questions to talk through together — not questions about "
           "what was confusing, questions for reflection and action. Answer with one line per question, exactly "
           "\"<section number> || <the question>\", using only the section numbers you were given. Every line must "
           "end with a question mark. You may refer to a scripture reference only if it was already listed for that "
           "section; never introduce a reference that was not given to you. If nothing in a section suggests a good "
           "question, skip it. If nothing at all does, answer with the single word NONE.";
}

namespace {

/// The section's own most telling sentence, if its notes have one worth quoting.
std::optional<std::string> tellingSentence(const SermonSection& section) {
    std::vector<std::string> sentences = orvane::SentenceTokenizer::sentences(section.notes);
    std::vector<std::size_t> chosen = distinctiveness::sentences(sentences, 1);
    if (chosen.empty())
        return std::nullopt;
    std::string sentence = sentences[chosen.front()];
    // A sub-point's "Title: details" line quotes better without its title.
    if (std::size_t colon = sentence.find(": "); colon != std::string::npos && colon < sentence.size() / 2)
        sentence = sentence.substr(colon + 2);
    if (featureText::characterCount(sentence) > 160 || sentence.ends_with('?'))
        return std::nullopt;
    return sentence;
}

/// A question that takes the section's theme into the group's own week. The wording changes from
/// one section to the next so that the list reads as questions, not as a form filled in.
std::string applicationQuestion(const std::string& theme, std::size_t position) {
    switch (position % 4) {
    case 0:
        return "What would change this week if you took “" + theme + "” seriously?";
    case 1:
        return "Where have you seen “" + theme + "” in your own life, and where do you still find it hard?";
    case 2:
        return "Who do you know who needs “" + theme + "” this week, and how could you show them?";
    default:
        return "What gets in the way of “" + theme + "” for you, and what would help?";
    }
}

std::string scriptureQuestion(const std::string& reference, const std::string& theme, std::size_t position) {
    switch (position % 3) {
    case 0:
        return "Read " + reference + " together. What does it ask of you, and what will you do about it?";
    case 1:
        return "Read " + reference + " aloud. Which words stay with you, and why?";
    default:
        return "How does " + reference + " change the way you think about “" + theme + "”?";
    }
}

} // namespace

std::vector<SectionQuestion> GenerateDiscussionQuestions::fallback(const model::SermonNote& sermon) const {
    std::vector<SectionQuestion> questions;
    std::vector<SermonSection> sections = sermonSections(sermon);
    for (std::size_t i = 0; i < sections.size(); ++i) {
        const SermonSection& section = sections[i];
        int index = static_cast<int>(i);
        std::string theme = headingOrNumber(section, i);
        // A heading that already asks something is the best question the section has.
        questions.push_back({index, section.heading, theme.ends_with('?') ? theme : applicationQuestion(theme, i)});
        if (!section.scriptures.empty())
            questions.push_back({index, section.heading, scriptureQuestion(section.scriptures.front(), theme, i)});
        else if (std::optional<std::string> sentence = tellingSentence(section))
            questions.push_back(
                {index, section.heading,
                 "The sermon put it this way: “" + *sentence + "” Is that true for you? Why or why not?"});
    }
    return questions;
}

std::string ListenerQuestions::identifier() const {
    return orvane::intelligenceFeatureEntry("ListenerQuestions")->identifier;
}

orvane::IntelligencePolicy ListenerQuestions::policy() const {
    return orvane::intelligenceFeatureEntry("ListenerQuestions")->policy;
}

const char* ListenerQuestions::instructions() const {
    return "You are an ordinary person sitting in the congregation hearing this sermon once, at speed, with no "
           "theological training and no way to read it again. Say what you would genuinely want to ask afterwards. "
           "Answer with one line per question, exactly \"<section number> || <the question>\", using only the section "
           "numbers you were given. Every line must end with a question mark. Ask about what was confusing, what was "
           "claimed without being explained, and what you were left wondering. Do not suggest improvements, do not "
           "comment on style or length, and do not ask a question the section plainly answers. If nothing raised a "
           "question, answer with the single word NONE.";
}

std::vector<SectionQuestion> ListenerQuestions::fallback(const model::SermonNote& sermon) const {
    std::vector<SectionQuestion> questions;
    std::vector<SermonSection> sections = sermonSections(sermon);
    for (std::size_t i = 0; i < sections.size(); ++i) {
        int index = static_cast<int>(i);
        std::string heading = headingOrNumber(sections[i], i);
        questions.push_back({index, sections[i].heading,
                             "What does “" + heading + "” actually mean for someone who has never heard it before?"});
        for (const std::string& reference : sections[i].scriptures)
            questions.push_back({index, sections[i].heading, "Where exactly in " + reference + " does it say that?"});
    }
    return questions;
}

} // namespace quillon::intelligence
