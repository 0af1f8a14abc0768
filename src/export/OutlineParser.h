#pragma once

#include "model/BibleVersion.h"
#include "model/DateTime.h"
#include "model/SermonNote.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::exports {

/// A passage a line of text names, as the Bible library's reference parser resolves it.
struct RecognizedPassage {
    std::string bookName;
    int chapter = 1;
    int startVerse = 1;
    int endVerse = 1;
};

/// Answers whether a whole line is a Bible reference ("John 3:16", "ps 23").
using ReferenceRecognizer = std::function<std::optional<RecognizedPassage>(std::string_view)>;

/// One line of an imported document, with what its formatting already says about it (a Word
/// heading style, a Markdown "##").
struct OutlineLine {
    enum class Hint { none, title, topic, subTopic, quotation };
    std::string text;
    Hint hint = Hint::none;
};

/// Turns the lines of an existing document into a draft sermon. Roman-numeral or numbered lines
/// become topics, lettered lines sub-topics, lines that are references attached scriptures (KJV
/// unless a translation tag before or after the reference names one of Quillon's versions), every
/// other line details of the point above it.
///
/// Limits: time and memory are linear in the text. Lines are read by hand-written matchers, never
/// by a backtracking regular expression; only lines of at most `maximumReferenceLineBytes` are
/// offered to the reference recogniser.
class OutlineParser {
public:
    static constexpr std::size_t maximumReferenceLineBytes = 160;

    explicit OutlineParser(ReferenceRecognizer recognize) : m_recognize(std::move(recognize)) {}

    /// The sentence said of a passage whose named translation this program does not carry, and
    /// the version it is attached in instead.
    static std::string missingVersionNote(std::string_view version, std::string_view reference,
                                          model::BibleVersion attached = model::BibleVersion::kjv);

    /// Plain text, one outline element a line.
    model::SermonNote parse(std::string_view text) const;
    model::SermonNote parse(const std::vector<OutlineLine>& lines) const;

private:
    ReferenceRecognizer m_recognize;
};

} // namespace quillon::exports
