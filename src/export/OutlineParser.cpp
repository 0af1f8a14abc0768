#include "export/OutlineParser.h"

#include "export/OutlineNumbering.h"
#include "export/XmlText.h"
#include "scripture/ReferenceNormaliser.h"

#include <algorithm>
#include <cctype>

namespace quillon::exports {

namespace {

std::string trim(std::string_view text) {
    const auto isSpace = [](unsigned char c) { return std::isspace(c) != 0; };
    while (!text.empty() && isSpace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    // Word processors put non-breaking spaces around markers.
    while (text.starts_with("\xC2\xA0"))
        text.remove_prefix(2);
    while (text.ends_with("\xC2\xA0"))
        text.remove_suffix(2);
    return std::string(text);
}

struct Marker {
    std::string label; // "IV", "3", "b"
    std::string rest;  // the text after the marker
};

bool isAsciiLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

/// "IV. Rest", "3) Rest", "b. Rest" or a marker alone: up to seven letters or three digits, then
/// "." or ")", then white space before the rest.
std::optional<Marker> marker(const std::string& line) {
    std::size_t length = 0;
    if (!line.empty() && isAsciiDigit(line[0])) {
        while (length < line.size() && length < 4 && isAsciiDigit(line[length]))
            ++length;
        if (length > 3)
            return std::nullopt;
    } else {
        while (length < line.size() && length < 8 && isAsciiLetter(line[length]))
            ++length;
        if (length == 0 || length > 7)
            return std::nullopt;
    }
    if (length >= line.size() || (line[length] != '.' && line[length] != ')'))
        return std::nullopt;
    const std::string_view rest = std::string_view(line).substr(length + 1);
    if (!rest.empty() && !std::isspace(static_cast<unsigned char>(rest.front())))
        return std::nullopt;
    return Marker{line.substr(0, length), trim(rest)};
}

bool isRoman(const std::string& label) {
    static constexpr std::string_view letters = "IVXLCDM";
    static constexpr int values[] = {1, 5, 10, 50, 100, 500, 1000};
    if (label.empty() || label.find_first_not_of(letters) != std::string::npos)
        return false;
    int total = 0;
    for (std::size_t i = 0; i < label.size(); ++i) {
        const int value = values[letters.find(label[i])];
        const int next = i + 1 < label.size() ? values[letters.find(label[i + 1])] : 0;
        total += value < next ? -value : value;
    }
    // Only the canonical spelling counts: "IIII" and "IC" are words, not numbers.
    return total > 0 && total < 4000 && romanNumeral(total) == label;
}

struct VersionedText {
    std::string reference;
    model::BibleVersion version = model::BibleVersion::kjv;
    /// A translation named with the reference that this program has no text of ("ESV").
    std::string missingVersion;
};

VersionedText unversioned(const std::string& line) {
    return VersionedText{line, model::BibleVersion::kjv, {}};
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::toupper(static_cast<unsigned char>(a[i])) != std::toupper(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

void appendLine(std::string& text, const std::string& line) {
    if (!text.empty())
        text += '\n';
    text += line;
}

/// "Romans 8:28", "Psalms 23:1-6": the passage as attached.
std::string passageText(const RecognizedPassage& passage) {
    std::string text =
        passage.bookName + " " + std::to_string(passage.chapter) + ":" + std::to_string(passage.startVerse);
    if (passage.endVerse != passage.startVerse)
        text += "-" + std::to_string(passage.endVerse);
    return text;
}

struct Recognized {
    RecognizedPassage passage;
    VersionedText versioned;
};

std::optional<Recognized> recognise(const ReferenceRecognizer& recognize, const std::string& line) {
    // A reference with its version is short; longer lines are prose, and the book matcher's
    // spelling tolerance costs time in proportion to the line.
    if (!recognize || line.size() > OutlineParser::maximumReferenceLineBytes)
        return std::nullopt;
    // "John 3:16 (NKJV)", "NKJV: Matt 5:6", "Luke 15:22-24 ESV": the tag is read as everywhere
    // else a reference is typed, and the recogniser is offered the reference without it.
    const scripture::NormalisedReference tagged = scripture::normaliseReference(line);
    std::optional<RecognizedPassage> passage;
    VersionedText versioned = unversioned(line);
    if (!tagged.translation.empty() && (passage = recognize(tagged.text)))
        versioned = VersionedText{passageText(*passage), tagged.version.value_or(model::BibleVersion::kjv),
                                  tagged.version ? std::string() : tagged.translation};
    if (!passage)
        passage = recognize(line);
    if (!passage)
        return std::nullopt;
    return Recognized{std::move(*passage), std::move(versioned)};
}

/// Builds the sermon as lines arrive; each add* keeps the "current" point up to date.
class DraftBuilder {
public:
    model::SermonNote sermon;
    bool inManuscript = false;
    bool lastWasScripture = false;
    bool blankPending = false;
    /// The notes the last line went to; only compared, never followed, since points are added.
    const std::string* lastText = nullptr;

    model::SermonTopic& addTopic(std::string title) {
        endText();
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = std::move(title);
        topic.sortOrder = static_cast<int>(sermon.topics.size());
        sermon.topics.push_back(std::move(topic));
        return sermon.topics.back();
    }

    model::SermonSubTopic& addSubTopic(std::string title) {
        endText();
        if (sermon.topics.empty())
            addTopic(title);
        auto& topic = sermon.topics.back();
        model::SermonSubTopic subTopic;
        subTopic.id = model::Uuid::random();
        subTopic.title = std::move(title);
        subTopic.sortOrder = static_cast<int>(topic.subTopics.size());
        topic.subTopics.push_back(std::move(subTopic));
        return topic.subTopics.back();
    }

    void addScripture(const RecognizedPassage& passage, const VersionedText& versioned) {
        endText();
        // Passages belong to sub-points; a passage right under a topic gets a sub-point named after it.
        if (sermon.topics.empty())
            addTopic(versioned.reference);
        if (sermon.topics.back().subTopics.empty())
            addSubTopic(versioned.reference);
        auto& subTopic = sermon.topics.back().subTopics.back();
        model::SermonScripture scripture;
        scripture.id = model::Uuid::random();
        scripture.bookName = passage.bookName;
        scripture.chapter = passage.chapter;
        scripture.startVerse = passage.startVerse;
        scripture.endVerse = passage.endVerse;
        scripture.version = versioned.version;
        scripture.sortOrder = static_cast<int>(subTopic.scriptures.size());
        subTopic.scriptures.push_back(std::move(scripture));
        // The preacher chose that translation; say why the passage shows another one.
        if (!versioned.missingVersion.empty())
            appendLine(subTopic.details,
                       OutlineParser::missingVersionNote(versioned.missingVersion, versioned.reference));
    }

    void addDetail(const std::string& line) {
        if (sermon.topics.empty() && sermon.title.empty()) {
            sermon.title = line;
            return;
        }
        std::string* target = &sermon.notes;
        if (!sermon.topics.empty()) {
            auto& topic = sermon.topics.back();
            target = topic.subTopics.empty() ? &topic.details : &topic.subTopics.back().details;
        }
        addText(*target, line);
    }

    /// Appends a line of notes; a blank line between two lines of the same notes is kept, so
    /// paragraphs stay apart.
    void addText(std::string& target, const std::string& line) {
        if (blankPending && &target == lastText && !target.empty())
            target += '\n';
        appendLine(target, line);
        lastText = &target;
        blankPending = false;
    }

    /// A line that is not notes (a heading, a passage) ends the notes a blank line could join.
    void endText() {
        lastText = nullptr;
        blankPending = false;
    }

    bool addMetadata(const std::string& line) {
        if (!sermon.topics.empty())
            return false;
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos || colon > 16)
            return false;
        std::string label = trim(std::string_view(line).substr(0, colon));
        const std::string value = trim(std::string_view(line).substr(colon + 1));
        static constexpr std::string_view labels[] = {"Speaker", "Series", "Venue", "Preacher", "Date", "Tags"};
        if (value.empty() || std::none_of(std::begin(labels), std::end(labels),
                                          [&](auto known) { return equalsIgnoringCase(label, known); }))
            return false;
        label[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(label[0])));
        for (std::size_t i = 1; i < label.size(); ++i)
            label[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(label[i])));
        if (label == "Speaker" || label == "Preacher") {
            sermon.speaker = value;
        } else if (label == "Date") {
            if (auto date = model::parseDateTime(value.substr(0, 10) + "T12:00:00Z"))
                sermon.date = *date;
            else
                return false;
        } else if (label == "Tags") {
            std::string tag;
            for (char c : value + ",") {
                if (c != ',') {
                    tag += c;
                    continue;
                }
                if (!trim(tag).empty())
                    sermon.tags.push_back(trim(tag));
                tag.clear();
            }
        } else if (label == "Series") {
            sermon.series = value;
        } else {
            sermon.venue = value;
        }
        return true;
    }
};

} // namespace

std::string OutlineParser::missingVersionNote(std::string_view version, std::string_view reference,
                                              model::BibleVersion attached) {
    return std::string(version) + " is not in this build of Quillon, so " + std::string(reference) +
           " is attached in " + std::string(model::rawValue(attached)) + ".";
}

model::SermonNote OutlineParser::parse(std::string_view text) const {
    std::vector<OutlineLine> lines;
    for (std::string& line : splitLines(validUtf8(text)))
        lines.push_back(OutlineLine{std::move(line), OutlineLine::Hint::none});
    return parse(lines);
}

model::SermonNote OutlineParser::parse(const std::vector<OutlineLine>& lines) const {
    using Hint = OutlineLine::Hint;
    DraftBuilder draft;
    for (const OutlineLine& input : lines) {
        const std::string line = trim(validUtf8(input.text));
        if (line.empty()) {
            // A blank line ends a quotation block; a blank line inside one ("&gt;" alone) does not.
            if (input.hint != Hint::quotation)
                draft.lastWasScripture = false;
            draft.blankPending = true;
            continue;
        }
        const bool quotedPassage = input.hint == Hint::quotation && draft.lastWasScripture;
        draft.lastWasScripture = false;

        if (input.hint == Hint::title && draft.sermon.title.empty() && draft.sermon.topics.empty()) {
            draft.sermon.title = line;
            draft.endText();
            continue;
        }
        if (input.hint == Hint::topic && line == "Manuscript") {
            draft.inManuscript = true;
            draft.endText();
            continue;
        }
        if (draft.inManuscript) {
            draft.addText(draft.sermon.notes, line);
            continue;
        }
        if (quotedPassage) {
            // The quoted verse text under a reference is the library's text, not the preacher's
            // notes; another reference in the same quotation is still a passage.
            if (auto found = recognise(m_recognize, line))
                draft.addScripture(found->passage, found->versioned);
            draft.endText();
            draft.lastWasScripture = true;
            continue;
        }

        const std::optional<Marker> numbered = marker(line);
        bool isTopic = input.hint == Hint::topic;
        bool isSubTopic = input.hint == Hint::subTopic;
        std::string title = line;
        if (numbered && input.hint != Hint::quotation) {
            const std::string& label = numbered->label;
            const bool digits = std::isdigit(static_cast<unsigned char>(label[0])) != 0;
            const bool roman = isRoman(label);
            const bool letter = label.size() == 1 && !digits;
            // A single roman letter continues the sub-points when it is the next expected letter
            // ("A.", "B.", "C." under one topic) and starts a topic otherwise.
            const bool expectedLetter =
                letter && !draft.sermon.topics.empty() &&
                std::toupper(static_cast<unsigned char>(label[0])) ==
                    subTopicLetter(static_cast<int>(draft.sermon.topics.back().subTopics.size()) + 1)[0];
            if (digits || (roman && !(expectedLetter && label.size() == 1))) {
                if (!isSubTopic)
                    isTopic = true;
                title = numbered->rest;
            } else if (letter) {
                if (!isTopic)
                    isSubTopic = true;
                title = numbered->rest;
            }
        }
        if (isTopic) {
            draft.addTopic(title);
            continue;
        }
        if (isSubTopic) {
            draft.addSubTopic(title);
            continue;
        }
        if (auto found = recognise(m_recognize, line)) {
            draft.addScripture(found->passage, found->versioned);
            draft.lastWasScripture = true;
            continue;
        }
        if (draft.addMetadata(line)) {
            draft.endText();
            continue;
        }
        draft.addDetail(line);
        continue;
    }
    return draft.sermon;
}

} // namespace quillon::exports
