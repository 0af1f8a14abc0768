#include "intelligence/SeriesIdeaSuggester.h"

#include "intelligence/FeatureText.h"
#include "intelligence/ReferenceRecogniser.h"
#include "orvane/NumberedChoice.h"
#include "scripture/BibleBook.h"
#include "scripture/ReferenceParser.h"

#include <set>

namespace quillon::intelligence {

std::string SeriesIdeaSuggester::identifier() const {
    return orvane::intelligenceFeatureEntry("SeriesIdeaSuggester")->identifier;
}

orvane::IntelligencePolicy SeriesIdeaSuggester::policy() const {
    return orvane::intelligenceFeatureEntry("SeriesIdeaSuggester")->policy;
}

std::vector<SeriesIdea> SeriesIdeaSuggester::fallback(const std::vector<std::string>&) const {
    return {};
}

std::string SeriesIdeaSuggester::emptyState(const std::vector<std::string>& books) {
    return books.empty() ? nothingToPlan : "";
}

std::vector<SeriesIdea> SeriesIdeaSuggester::ideasFrom(const std::string& reply,
                                                       const std::vector<std::string>& books) {
    std::vector<SeriesIdea> ideas;
    int count = static_cast<int>(books.size());
    for (const auto& choice : orvane::NumberedChoice::parse(featureText::trimmed(reply), count, false)) {
        if (choice.index < 0 || choice.index >= count)
            continue;
        std::size_t colon = choice.note.find(':');
        std::string title = featureText::trimmed(choice.note.substr(0, colon));
        std::string reason =
            colon == std::string::npos ? std::string() : featureText::trimmed(choice.note.substr(colon + 1));
        // The planner is given book names only, so any reference it names is its own invention.
        if (title.empty() || !ReferenceRecogniser::namesOnly(choice.note, {}))
            continue;
        ideas.push_back({books[static_cast<std::size_t>(choice.index)], title, reason});
        if (ideas.size() >= generationLimits::seriesProposals)
            break;
    }
    if (ideas.empty())
        throw orvane::IntelligenceError::malformedResponse("Nothing in the answer named one of the offered books.");
    return ideas;
}

std::vector<SeriesIdea> SeriesIdeaSuggester::generate(const std::vector<std::string>& books,
                                                      orvane::IntelligenceBackendProviding& backend) const {
    if (books.empty())
        throw orvane::IntelligenceError::malformedResponse(nothingToPlan);
    return ideasFrom(backend.respond({instructions, orvane::NumberedChoice::format(books), {}}).text, books);
}

std::vector<std::string> SeriesIdeaSuggester::booksNeverPreached(const std::vector<model::SermonNote>& sermons) {
    std::set<std::int64_t> preached;
    for (const model::SermonNote& sermon : sermons)
        for (const model::SermonTopic& topic : sermon.topics)
            for (const model::SermonSubTopic& subTopic : topic.subTopics)
                for (const model::SermonScripture& scripture : subTopic.scriptures)
                    if (const scripture::BibleBook* book = scripture::resolveBookInTable(scripture.bookName))
                        preached.insert(book->id);
    std::vector<std::string> books;
    for (const scripture::BibleBook& book : scripture::allBibleBooks())
        if (!preached.contains(book.id))
            books.push_back(book.name);
    return books;
}

} // namespace quillon::intelligence
