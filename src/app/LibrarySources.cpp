#include "app/LibrarySources.h"

#include "intelligence/LocalModelEmbedding.h"
#include "orvane/LexicalTokenizer.h"
#include "orvane/StopWords.h"
#include "scripture/BibleBook.h"
#include "scripture/BibleLoader.h"
#include "scripture/ReferenceParser.h"
#include "search/SermonSearchDisplayHit.h"
#include "search/SermonSearchIndex.h"

#include <fmt/format.h>

#include <set>

namespace quillon::app {

namespace {

/// Enough sources to answer from without burying the model's prompt.
constexpr int sermonSourceLimit = 5;
constexpr std::size_t verseSourceLimit = 5;

intelligence::LibrarySource sermonSource(const model::SermonNote& sermon, const orvane::SearchHit& hit,
                                         const std::string& question,
                                         const std::vector<orvane::QueryCorrection>& corrections) {
    // The sentence that matched says more about the question than the opening notes, which may be empty when the
    // sermon matched on its outline.
    std::string excerpt = search::SermonSearchDisplayHit::make(hit, sermon, question, corrections).snippet;
    intelligence::LibrarySource::Sermon source{sermon.title, std::move(excerpt), {}};
    for (const model::SermonTopic& topic : sermon.topics)
        for (const model::SermonSubTopic& subTopic : topic.subTopics)
            for (const model::SermonScripture& scripture : subTopic.scriptures) {
                std::string text = fmt::format("{} {}:{}-{}", scripture.bookName, scripture.chapter,
                                               scripture.startVerse, scripture.endVerse);
                if (std::optional<scripture::ScriptureReference> reference = scripture::parse(text))
                    source.references.push_back(*reference);
            }
    return {source};
}

/// Verses for the question as typed (a reference, a topic or words that must all occur) and, when that finds none,
/// for any of its meaningful words: a question in a sentence ("What have I taught about love?") rarely has every
/// one of its words in a single verse.
std::vector<scripture::BibleSearchResult> matchingVerses(const std::string& question) {
    scripture::BibleLoader loader;
    std::vector<scripture::BibleSearchResult> results = loader.search(question, {}, verseSourceLimit);
    if (!results.empty())
        return results;
    std::string anyWord;
    std::set<std::string> seen;
    for (const std::string& word : orvane::LexicalTokenizer::tokens(question, 2, true))
        if (orvane::StopWords::isMeaningful(word, 3) && seen.insert(word).second)
            anyWord += (anyWord.empty() ? "" : " OR ") + word;
    return anyWord.empty() ? results : loader.search(anyWord, {}, verseSourceLimit);
}

} // namespace

std::vector<intelligence::LibrarySource> librarySources(const std::string& typed,
                                                        std::span<const model::SermonNote> sermons,
                                                        const platform::Preferences* preferences) {
    // Searched for what the question is about: "taught" in "What have I taught about rest?" would
    // otherwise match sermons and verses that merely use the word.
    const std::string subject = intelligence::AskYourLibrary::subjectOf(typed);
    const std::string& question = subject.empty() ? typed : subject;
    std::vector<intelligence::LibrarySource> sources;
    search::SermonSearchIndex index(preferences ? intelligence::LocalModelEmbedding::forSearch(*preferences) : nullptr);
    index.refresh(sermons);
    orvane::CorrectedSearch found = index.search(question, sermonSourceLimit);
    for (const orvane::SearchHit& hit : found.hits)
        for (const model::SermonNote& sermon : sermons)
            if (sermon.id.text() == hit.documentID) {
                sources.push_back(sermonSource(sermon, hit, question, found.corrections));
                break;
            }
    for (const scripture::BibleSearchResult& result : matchingVerses(question)) {
        // Verses carry the book table's abbreviation ("1The"); sources name the book in full.
        const scripture::BibleBook* book = scripture::bibleBookWithAbbreviation(result.verse.bookAbbreviation);
        sources.push_back(
            {intelligence::LibrarySource::Verse{book ? book->name : result.verse.bookAbbreviation, result.verse.chapter,
                                                result.verse.verse, result.version, result.verse.text}});
    }
    return sources;
}

} // namespace quillon::app
