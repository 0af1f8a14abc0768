#pragma once

#include "model/BibleVersion.h"
#include "orvane/IntelligenceFeature.h"
#include "scripture/ScriptureReference.h"

#include <string>
#include <variant>
#include <vector>

namespace quillon::intelligence {

/// Something in the preacher's own library an answer may rest on: a sermon search hit, or one verse
/// of the Bible text.
struct LibrarySource {
    struct Sermon {
        std::string title;
        std::string excerpt;
        /// The passages attached to that sermon: the only references a point from it may name.
        std::vector<scripture::ScriptureReference> references;
        bool operator==(const Sermon&) const = default;
    };
    struct Verse {
        std::string bookName;
        int chapter = 1;
        int verse = 1;
        model::BibleVersion version = model::BibleVersion::kjv;
        std::string text;
        bool operator==(const Verse&) const = default;
    };

    std::variant<Sermon, Verse> value;

    /// A sermon's title; a verse as "John 3:16 (KJV)".
    std::string label() const;
    /// The line offered to the model.
    std::string line() const;
    /// True when a point resting on this source may name `reference`.
    bool supports(const scripture::ScriptureReference& reference) const;

    bool operator==(const LibrarySource&) const = default;
};

/// One point of a library answer, in the model's words, and the one source it rests on.
struct LibraryAnswerPoint {
    std::string text;
    LibrarySource source;
    bool operator==(const LibraryAnswerPoint&) const = default;
};

/// Answers a question from the preacher's own sermons and Bible text, one traced point at a time.
class AskYourLibrary final : public orvane::IntelligenceFeature<std::pair<std::string, std::vector<LibrarySource>>,
                                                                std::vector<LibraryAnswerPoint>> {
public:
    /// The question and the sources found for it.
    using Input = std::pair<std::string, std::vector<LibrarySource>>;

    static constexpr const char* instructions =
        "Answer the question using only the numbered sources below — sermons this church has preached, and verses "
        "from its own Bible text. Answer with one line per point, exactly \"<number> || <point, in your own words, "
        "that this one source actually supports>\". Use only source numbers from the list; never invent a source. "
        "Every point must come from exactly one source. Never quote or invent the wording of a verse beyond what a "
        "source already gives you, and never name a scripture reference that source does not actually support. If "
        "the sources do not answer the question at all, answer with the single word NONE.";
    static constexpr const char* sheetPrompt = "What have I taught about…?";
    static constexpr const char* pointsIntroduction = "Every point below is answered by the source shown beneath it.";
    static constexpr const char* description =
        "Answers cite a real sermon or a real verse per point — never a claim with nothing behind it.";
    static constexpr const char* unsummarised =
        "No model was available to write an answer, or nothing it wrote could be traced back to a source — so here is "
        "what actually matched, unsummarised.";
    static constexpr const char* nothingMatches = "Nothing in your library matches that. Try different words.";

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    /// No points: the sheet then shows the sources themselves.
    std::vector<LibraryAnswerPoint> fallback(const Input& input) const override;
    std::vector<LibraryAnswerPoint> generate(const Input& input,
                                             orvane::IntelligenceBackendProviding& backend) const override;

    /// What a question asks about, for searching: "What have I taught about rest?" is about "rest".
    /// Question words, the asker, the verbs of asking and teaching ("taught", "preached", "said")
    /// and stop words are not the subject; a reference is kept whole. Empty when nothing is left.
    static std::string subjectOf(const std::string& question);
    static std::string prompt(const Input& input);
    /// Keeps each point whose number was offered, whose note is not empty and whose named references
    /// its source supports; "NONE" gives no points.
    static std::vector<LibraryAnswerPoint> pointsFrom(const std::string& reply,
                                                      const std::vector<LibrarySource>& sources);
};

} // namespace quillon::intelligence
