#pragma once

#include "app/OutcomeCaption.h"
#include "model/SermonNote.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orvane {
class ModelRouter;
}

namespace quillon::exports {
class VerseTextSource;
}

namespace quillon::intelligence {
class CommentaryLibrary;
}

namespace quillon::platform {
class Preferences;
}

namespace quillon::app {

class SermonNotesViewModel;

/// Every assistant sheet of the desk.
enum class AssistantFeatureId {
    discussionQuestions,
    alternativeOutlines,
    sermonArticle,
    seriesPlanner,
    rewriteForTheRoom,
    tagSuggestions,
    highlightSuggestions,
    titlesAndSummary,
    mediaPackage,
    listenerQuestions,
    askYourLibrary,
    passageCommentary,
    quotationCheck,
    illustrationFinder,
};

/// What a sheet asks the preacher for before it runs.
enum class AssistantInput { none, section, sectionAndRoom, question, reference, point };

/// What accepting an answer does to the sermon; `none` answers only show.
enum class AssistantProposal { none, addTags, setTitle };

/// One sheet, as the window lists and builds it.
struct AssistantFeatureDescription {
    AssistantFeatureId id;
    const char* title;
    /// One line under the title saying what the sheet does.
    const char* summary;
    AssistantInput input;
    /// The prompt of the question, reference or point field.
    const char* inputPrompt = "";
    AssistantProposal proposal = AssistantProposal::none;
    /// Whether it asks a model at all (the quotation check and the illustration finder never do).
    bool asksModel = true;
};

/// Everything a feature works on, copied on the interface thread so it can run anywhere.
struct AssistantRequest {
    model::SermonNote sermon;
    /// The whole library, for the series planner, ask your library and the illustration finder.
    std::vector<model::SermonNote> library;
    /// From 1, as `quillon show` numbers topics.
    int section = 1;
    /// liveStream, largeSanctuary, youthAndFamily or smallGroup.
    std::string room = "largeSanctuary";
    /// The question, reference or point typed in the sheet.
    std::string text;
};

/// What the feature reads beyond the request; each pointer must outlive the run.
struct AssistantServices {
    const platform::Preferences* preferences = nullptr;
    const exports::VerseTextSource* verses = nullptr;
    std::shared_ptr<intelligence::CommentaryLibrary> commentaries;
};

/// One line of an answer: its text, an optional second line (a source's words, a reason) and, for a
/// source, where clicking it leads ("sermon:<id>" or "bible:<reference>").
struct AssistantItem {
    std::string text{};
    std::string detail{};
    std::string link{};
    /// True for lines a proposal can apply (a tag, a title).
    bool proposable = false;
};

/// A feature's answer, labelled exactly as the command line labels it.
struct AssistantAnswer {
    OutcomeCaption caption;
    /// Set when there was nothing to work from: shown alone, and no model was asked.
    std::string emptyState;
    std::vector<AssistantItem> items;
    AssistantProposal proposal = AssistantProposal::none;
};

/// The sheets in menu order.
std::span<const AssistantFeatureDescription> assistantFeatures();
const AssistantFeatureDescription& assistantFeature(AssistantFeatureId id);

/// Runs one feature. Safe on any thread; never throws: a model failure is the fallback, and input
/// that gives nothing to work from is the empty state's sentence.
AssistantAnswer runAssistant(AssistantFeatureId id, const AssistantRequest& request, const orvane::ModelRouter& router,
                             const AssistantServices& services);

/// Applies the chosen lines of a proposal to the sermon through the controller, as one undo step;
/// false (and the sermon unchanged) when nothing applicable was chosen.
bool applyProposal(SermonNotesViewModel& controller, const model::Uuid& sermonId, const AssistantAnswer& answer,
                   const std::vector<std::size_t>& chosen);

} // namespace quillon::app
