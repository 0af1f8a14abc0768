#pragma once

#include "model/SermonNote.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillon::intelligence {

/// Checks quotations in a sermon's sub-topic notes against the verses attached to the same
/// sub-topic. Deterministic: no model is involved.
class ScriptureQuoteChecker {
public:
    /// The text of an attached passage, or nothing when this edition carries no text for its
    /// translation.
    using VerseText = std::function<std::optional<std::string>(const model::SermonScripture&)>;

    struct Finding {
        enum class Kind { translationNotInThisBuild, doesNotMatchAttachedVerses };

        model::Uuid subtopicId;
        std::string subtopicTitle;
        std::string quotation;
        Kind kind = Kind::doesNotMatchAttachedVerses;
        /// The translation's abbreviation for `translationNotInThisBuild`; empty otherwise.
        std::string translation;

        /// The sentence shown for the finding.
        std::string message() const;
        bool operator==(const Finding&) const = default;
    };

    explicit ScriptureQuoteChecker(VerseText verseText) : m_verseText(std::move(verseText)) {}

    /// Findings for every sub-topic, in outline order. Sub-topics without attached verses have
    /// nothing to check against and are skipped.
    std::vector<Finding> check(const model::SermonNote& sermon) const;

    /// The quoted texts of `notes`: a straight or left curly double quote, 3 to 400 characters
    /// without any double quote, then a straight or right curly double quote.
    static std::vector<std::string> quotations(const std::string& notes);
    /// The words of `text` compared by the check: case-folded, curly apostrophes straightened,
    /// punctuation at either end of a word dropped.
    static std::vector<std::string> comparableWords(const std::string& text);

private:
    VerseText m_verseText;
};

} // namespace quillon::intelligence
