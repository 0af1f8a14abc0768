#pragma once

#include "model/SermonNote.h"
#include "scripture/ScriptureReference.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillon::intelligence {

/// Small text helpers shared by the model-backed features.
namespace featureText {

/// Without leading and trailing blanks and line breaks.
std::string trimmed(std::string_view text);
/// True when the whole reply is the single word NONE, in any letter case.
bool isNone(std::string_view reply);
/// The reply's non-empty lines, each trimmed.
std::vector<std::string> lines(std::string_view reply);
/// Case-folded with ICU (locale-independent full folding), for case-insensitive comparison.
std::string folded(std::string_view text);
/// Folded as above, with curly and modifier apostrophes made straight and every kind of space a
/// blank, so that "Matthew Henry’s" in a reply matches the label "Matthew Henry's".
std::string comparable(std::string_view text);
/// The number of user-perceived characters.
std::size_t characterCount(std::string_view text);
/// At most `limit` user-perceived characters, cut at a word where possible, with "…" when cut.
std::string shortened(std::string_view text, std::size_t limit);

/// "John 3:16" or "John 3:16-18" for an attached passage.
std::string referenceText(const model::SermonScripture& scripture);
/// The attached passage as a reference, when its book is known.
std::optional<scripture::ScriptureReference> referenceOf(const model::SermonScripture& scripture);

} // namespace featureText

/// One part of a sermon offered to a model: a topic with its sub-points and cited scripture.
struct SermonSection {
    /// The topic's position in the sermon's list of topics, from 0; `show` numbers it one higher.
    std::size_t topic = 0;
    std::string heading;
    /// The topic's details and each sub-topic's title and details, one paragraph each.
    std::string notes;
    /// The references attached under this topic, printed ("John 3:16-18").
    std::vector<std::string> scriptures;

    /// The text offered to the model: heading, notes, then "\nScripture cited here:" and the
    /// references when there are any.
    std::string offered() const;
    /// Heading and notes, the words a rewrite works on.
    std::string body() const;
};

/// One topic as a section, at `position` in the sermon's list of topics.
SermonSection topicSection(const model::SermonTopic& topic, std::size_t position);
/// The sermon's topics in list order as sections; topics with neither a title nor notes are left out.
std::vector<SermonSection> sermonSections(const model::SermonNote& sermon);
/// Every attached reference of the sermon, in outline order, without repeats.
std::vector<scripture::ScriptureReference> sermonReferences(const model::SermonNote& sermon);

} // namespace quillon::intelligence
