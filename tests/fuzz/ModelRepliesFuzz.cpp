// A model's reply is untrusted text. The first byte picks one reader of the model-backed features
// and the rest is the reply; each reader keeps what it can use or refuses with malformedResponse.
#include "FuzzInput.h"

#include "intelligence/AlternativeOutlines.h"
#include "intelligence/AskYourLibrary.h"
#include "intelligence/HighlightSuggester.h"
#include "intelligence/MessyDocumentOutliner.h"
#include "intelligence/PassageCommentary.h"
#include "intelligence/RewriteForTheRoom.h"
#include "intelligence/SectionQuestions.h"
#include "intelligence/SeriesIdeaSuggester.h"
#include "intelligence/SermonArticleGenerator.h"
#include "intelligence/SermonTagSuggester.h"
#include "intelligence/SermonTitleAndSummary.h"
#include "orvane/IntelligenceError.h"
#include "orvane/NumberedChoice.h"
#include "preach/PreachTimeCategoriser.h"
#include "scripture/GeneratedScriptureReference.h"
#include "scripture/ReferenceParser.h"
#include "support/SermonFixtures.h"

#include <set>

namespace {

using namespace quillon;
using namespace quillon::intelligence;
using fuzz::require;

const model::SermonNote& sermon() {
    static const model::SermonNote shared = [] {
        auto sermon = testing::makeSermon("Love that gives");
        sermon.notes = "For God so loved the world. Love gives first, and it gives again. John 3:16 is the centre.";
        return sermon;
    }();
    return shared;
}

void readReply(std::uint8_t reader, const std::string& reply) {
    switch (reader % 15) {
    case 0: {
        // Without repeats the first line for a number wins, so every number comes back once.
        std::set<int> seen;
        for (const auto& choice : orvane::NumberedChoice::parse(reply, 5, false))
            require(seen.insert(choice.index).second);
        break;
    }
    case 1:
        require(SermonTagSuggester(8).tagsFrom(reply).size() <= 8);
        break;
    case 2:
        SermonTitleAndSummary::copyFrom(reply, sermon());
        break;
    case 3:
        AlternativeOutlines::outlineFrom(reply,
                                         {"John", 3, {{16, "For God so loved the world"}, {17, "For God sent"}}});
        break;
    case 4: {
        LibrarySource::Sermon source{"Grace", "Grace is given.", {*scripture::parse("John 3:16")}};
        LibrarySource::Verse verse{"John", 3, 17, model::BibleVersion::kjv, "For God sent not his Son"};
        AskYourLibrary::pointsFrom(reply, {{source}, {verse}});
        break;
    }
    case 5:
        HighlightSuggester(3).highlightsFrom(reply, HighlightSuggester::sentencesOf(sermon()));
        break;
    case 6:
        PassageCommentary::answerFrom(reply, {{"Matthew Henry — John 3", "Love is the spring."},
                                              {"Scofield — John 3:16", "The gospel in a verse."}});
        break;
    case 7:
        RewriteForTheRoom::verified(sermon().notes, reply);
        break;
    case 8:
        GenerateDiscussionQuestions().questionsFrom(reply, sermonSections(sermon()));
        break;
    case 9:
        SeriesIdeaSuggester::ideasFrom(reply, {"Ruth", "Jonah", "Philemon"});
        break;
    case 10:
        SermonArticleGenerator::articleFrom(reply, sermon());
        break;
    case 11: {
        const std::vector<preach::PreachTimeEstimate::SectionText> sections = {
            {{"Opening", 40}, "A story to begin."}, {{"Points", 60}, "First, second, third."}};
        require(preach::PreachTimeCategoriser::parseReply(reply, sections).size() == sections.size());
        break;
    }
    case 12:
        scripture::GeneratedScriptureReference::fromJSON(nlohmann::ordered_json::parse(reply, nullptr, false))
            .completed();
        break;
    case 13:
        ListenerQuestions().questionsFrom(reply, sermonSections(sermon()));
        break;
    default: {
        // Topics start at the first passage and ascend, within the passages offered.
        constexpr std::size_t passages = 40;
        const auto sections = MessyDocumentOutliner::sectionsFrom(reply, passages);
        require(!sections.empty() && sections.front().firstPassage == 0);
        require(sections.size() <= MessyDocumentOutliner::maximumTopics);
        for (std::size_t i = 1; i < sections.size(); ++i)
            require(sections[i].firstPassage > sections[i - 1].firstPassage && sections[i].firstPassage < passages);
        break;
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    try {
        readReply(data[0], std::string(fuzz::text(data + 1, size - 1)));
    } catch (const orvane::IntelligenceError& error) {
        require(error.kind() == orvane::IntelligenceError::Case::malformedResponse);
    }
    return 0;
}
