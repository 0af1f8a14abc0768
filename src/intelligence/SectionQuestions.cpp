#include "intelligence/SectionQuestions.h"

#include "intelligence/Distinctiveness.h"
#include "intelligence/ReferenceRecogniser.h"
#include "orvane/AsciiText.h"
#include "orvane/LexicalTokenizer.h"
#include "orvane/NumberedChoice.h"
#include "orvane/ScriptureStemmer.h"
#include "orvane/SentenceTokenizer.h"
#include "scripture/ReferenceParser.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

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
    // So does a passage's "Ezekiel 34:11-12 — note" line without its reference.
    static constexpr std::string_view dash = " — ";
    if (std::size_t at = sentence.find(dash); at != std::string::npos && at < sentence.size() / 2 &&
                                              scripture::parse(std::string_view(sentence).substr(0, at)))
        sentence = sentence.substr(at + dash.size());
    if (featureText::characterCount(sentence) > 160 || sentence.ends_with('?'))
        return std::nullopt;
    return sentence;
}

/// The word as the notes write it: "Rahab" stays capitalised, "green" from "Green Pastures" does not.
std::string asWritten(const std::string& word, const std::string& notes) {
    const std::string lowered = orvane::ascii::lowercased(notes);
    std::string written = word;
    for (std::size_t at = 0; (at = lowered.find(word, at)) != std::string::npos; at += word.size()) {
        const std::size_t end = at + word.size();
        if ((at > 0 && orvane::ascii::isLetter(lowered[at - 1])) ||
            (end < lowered.size() && orvane::ascii::isLetter(lowered[end])))
            continue;
        const std::string_view form = std::string_view(notes).substr(at, word.size());
        if (form == word)
            return word;
        written = form;
    }
    return written;
}

/// What each section says that the others do not: up to two of its theme words (a heading's
/// words weigh most) that its notes use too and that are no theme of another section, so that
/// every section is asked about its own matter rather than the sermon's refrain.
std::vector<std::vector<std::string>> distinctiveWords(const std::vector<SermonSection>& sections) {
    constexpr std::size_t themesPerSection = 6;
    constexpr std::size_t wordsPerSection = 2;
    std::vector<std::vector<std::string>> themes;
    std::map<std::string, int> sectionsPerStem;
    for (const SermonSection& section : sections) {
        themes.push_back(distinctiveness::themeWords({section.heading}, section.notes, themesPerSection));
        std::set<std::string> stems;
        for (const std::string& word : themes.back())
            stems.insert(orvane::ScriptureStemmer::stem(word));
        for (const std::string& stem : stems)
            ++sectionsPerStem[stem];
    }
    std::vector<std::vector<std::string>> chosen(sections.size());
    for (std::size_t i = 0; i < sections.size(); ++i) {
        // A heading's word the notes do not take up again ("Runs" in "The Father Who Runs") is a
        // label, not what the section talks about.
        std::map<std::string, int> noteStems;
        for (const std::string& token : orvane::LexicalTokenizer::tokens(sections[i].notes, 4, true))
            ++noteStems[orvane::ScriptureStemmer::stem(token)];
        for (const std::string& word : themes[i]) {
            const std::string stem = orvane::ScriptureStemmer::stem(word);
            if (chosen[i].size() < wordsPerSection && sectionsPerStem[stem] == 1 && noteStems[stem] >= 2)
                chosen[i].push_back(asWritten(word, sections[i].notes));
        }
    }
    return chosen;
}

std::string quoted(const std::string& text) {
    return "“" + text + "”";
}

/// A question about the section's passage: what it says and what it asks of the one who hears
/// it. Two passages are read side by side.
std::string passageQuestion(const SermonSection& section, const std::string& theme, std::size_t form) {
    const std::string& reference = section.scriptures.front();
    if (section.scriptures.size() > 1 && form % 2 == 1)
        return "Read " + reference + " alongside " + section.scriptures[1] + ". What does each add to " +
               quoted(theme) + ", and which do you need to hear this week?";
    switch (form % 3) {
    case 0:
        return "Read " + reference + " together. What does it say, and what does it ask of the one who hears it?";
    case 1:
        return "What does " + reference + " promise, and what does it ask of you in return?";
    default:
        return "Read " + reference + " aloud. Which words stay with you, and what would acting on them look like?";
    }
}

/// A question about the words the section is about and the others are not. The words are quoted
/// as words, so the question reads well whether they name a thing, an act or a quality.
std::string wordsQuestion(const std::vector<std::string>& words, std::size_t form) {
    const std::string& word = words.front();
    if (words.size() > 1 && form % 2 == 0)
        return form % 4 == 0 ? "This part kept coming back to " + quoted(words[0]) + " and " + quoted(words[1]) +
                                   ". Which of the two speaks to where you are right now, and why?"
                             : "Which word from this part stays with you — " + quoted(words[0]) + ", " +
                                   quoted(words[1]) + " or another — and what would it change this week?";
    switch (form % 3) {
    case 0:
        return "What comes to mind when you hear " + quoted(word) + ", and did this part of the sermon change it?";
    case 1:
        return "If you took " + quoted(word) + " to heart this week, what is one thing you would do differently?";
    default:
        return "The word " + quoted(word) + " came up again and again here. Where does it meet you right now?";
    }
}

/// Without distinctive words or a telling sentence: the heading itself, taken into the week.
std::string headingQuestion(const std::string& theme, std::size_t position) {
    switch (position % 4) {
    case 0:
        return "What would change this week if you took " + quoted(theme) + " seriously?";
    case 1:
        return "Where have you seen " + quoted(theme) + " in your own life, and where do you still find it hard?";
    case 2:
        return "Who do you know who needs " + quoted(theme) + " this week, and how could you show them?";
    default:
        return "What gets in the way of " + quoted(theme) + " for you, and what would help?";
    }
}

std::string sentenceQuestion(const std::string& sentence, std::size_t form) {
    if (form % 2 == 0)
        return "The sermon put it this way: " + quoted(sentence) +
               " Where have you found that true, and where is it hard to believe?";
    return quoted(sentence) + " What would it look like to live as if that were true this week?";
}

} // namespace

std::vector<SectionQuestion> GenerateDiscussionQuestions::fallback(const model::SermonNote& sermon) const {
    std::vector<SectionQuestion> questions;
    std::vector<SermonSection> sections = sermonSections(sermon);
    const std::vector<std::vector<std::string>> words = distinctiveWords(sections);
    // The forms turn with each section, starting where the sermon's title puts them, so neither
    // three sections nor two sermons read alike.
    std::size_t start = 0;
    for (char c : sermon.title)
        start += static_cast<unsigned char>(c);
    for (std::size_t i = 0; i < sections.size(); ++i) {
        const SermonSection& section = sections[i];
        const std::size_t form = start + i;
        const auto ask = [&](std::string question) {
            questions.push_back({static_cast<int>(i), section.heading, std::move(question)});
        };
        const std::string theme = headingOrNumber(section, i);
        // A heading that already asks something is the best question the section has.
        if (theme.ends_with('?'))
            ask(theme);
        std::optional<std::string> sentence = tellingSentence(section);
        if (!section.scriptures.empty())
            ask(passageQuestion(section, theme, form));
        else if (sentence)
            ask(sentenceQuestion(*std::exchange(sentence, std::nullopt), form));
        if (!words[i].empty())
            ask(wordsQuestion(words[i], form));
        else if (sentence)
            ask(sentenceQuestion(*sentence, form + 1));
        else if (!theme.ends_with('?'))
            ask(headingQuestion(theme, form));
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
