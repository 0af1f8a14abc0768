#include "export/OutlineParser.h"

#include "export/OutlineNumbering.h"
#include "export/XmlText.h"

#include <cctype>
#include <regex>

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

std::optional<Marker> marker(const std::string& line) {
    static const std::regex pattern(R"(^([A-Za-z]{1,7}|[0-9]{1,3})[.)](?:\s+(.*))?$)");
    std::smatch match;
    if (!std::regex_match(line, match, pattern))
        return std::nullopt;
    return Marker{match[1].str(), trim(match[2].str())};
}

bool isRoman(const std::string& label) {
    if (label.empty() || label.find_first_not_of("IVXLCDM") != std::string::npos)
        return false;
    for (int value = 1; value < 4000; ++value)
        if (romanNumeral(value) == label)
            return true;
    return false;
}

struct VersionedText {
    std::string reference;
    model::BibleVersion version = model::BibleVersion::kjv;
};

/// "John 3:16 (NKJV)", "John 3:16 - NLT", "John 3:16 [ASV]" name their version after the reference.
VersionedText splitVersion(const std::string& line) {
    static const std::regex pattern(R"(^(.*?)[\s,\-]*[\(\[]?\s*(KJV|ASV|YLT|LSV|NLT|NKJV|AMP)\s*[\)\]]?\s*$)",
                                    std::regex::icase);
    std::smatch match;
    if (std::regex_match(line, match, pattern) && !match[1].str().empty()) {
        std::string code = match[2].str();
        for (char& c : code)
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        if (auto version = model::bibleVersionFromRawValue(code))
            return {trim(match[1].str()), *version};
    }
    return {line, model::BibleVersion::kjv};
}

void appendLine(std::string& text, const std::string& line) {
    if (!text.empty())
        text += '\n';
    text += line;
}

/// Builds the sermon as lines arrive; each add* keeps the "current" point up to date.
class DraftBuilder {
public:
    model::SermonNote sermon;
    bool inManuscript = false;
    bool lastWasScripture = false;

    model::SermonTopic& addTopic(std::string title) {
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = std::move(title);
        topic.sortOrder = static_cast<int>(sermon.topics.size());
        sermon.topics.push_back(std::move(topic));
        return sermon.topics.back();
    }

    model::SermonSubTopic& addSubTopic(std::string title) {
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

    void addScripture(const RecognizedPassage& passage, model::BibleVersion version, const std::string& reference) {
        // Passages belong to sub-points; a passage right under a topic gets a sub-point named after it.
        if (sermon.topics.empty())
            addTopic(reference);
        if (sermon.topics.back().subTopics.empty())
            addSubTopic(reference);
        auto& subTopic = sermon.topics.back().subTopics.back();
        model::SermonScripture scripture;
        scripture.id = model::Uuid::random();
        scripture.bookName = passage.bookName;
        scripture.chapter = passage.chapter;
        scripture.startVerse = passage.startVerse;
        scripture.endVerse = passage.endVerse;
        scripture.version = version;
        scripture.sortOrder = static_cast<int>(subTopic.scriptures.size());
        subTopic.scriptures.push_back(std::move(scripture));
    }

    void addDetail(const std::string& line) {
        if (sermon.topics.empty()) {
            if (sermon.title.empty())
                sermon.title = line;
            else
                appendLine(sermon.notes, line);
            return;
        }
        auto& topic = sermon.topics.back();
        if (!topic.subTopics.empty())
            appendLine(topic.subTopics.back().details, line);
        else
            appendLine(topic.details, line);
    }

    bool addMetadata(const std::string& line) {
        if (!sermon.topics.empty())
            return false;
        static const std::regex pattern(R"(^(Speaker|Series|Venue|Preacher|Date|Tags)\s*:\s*(.+)$)", std::regex::icase);
        std::smatch match;
        if (!std::regex_match(line, match, pattern))
            return false;
        std::string label = match[1].str();
        const std::string value = trim(match[2].str());
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
            continue;
        }
        const bool quotedPassage = input.hint == Hint::quotation && draft.lastWasScripture;
        draft.lastWasScripture = false;

        if (input.hint == Hint::title && draft.sermon.title.empty() && draft.sermon.topics.empty()) {
            draft.sermon.title = line;
            continue;
        }
        if (input.hint == Hint::topic && line == "Manuscript") {
            draft.inManuscript = true;
            continue;
        }
        if (draft.inManuscript) {
            appendLine(draft.sermon.notes, line);
            continue;
        }
        if (quotedPassage) {
            // The quoted verse text under a reference is the library's text, not the preacher's
            // notes; another reference in the same quotation is still a passage.
            const VersionedText versioned = splitVersion(line);
            if (m_recognize) {
                if (auto passage = m_recognize(versioned.reference))
                    draft.addScripture(*passage, versioned.version, versioned.reference);
            }
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
        if (m_recognize) {
            const VersionedText versioned = splitVersion(line);
            if (auto passage = m_recognize(versioned.reference)) {
                draft.addScripture(*passage, versioned.version, versioned.reference);
                draft.lastWasScripture = true;
                continue;
            }
        }
        if (draft.addMetadata(line))
            continue;
        draft.addDetail(line);
    }
    return draft.sermon;
}

} // namespace quillon::exports
