#include "intelligence/SermonArticleGenerator.h"

#include "intelligence/FeatureText.h"
#include "intelligence/ReferenceRecogniser.h"
#include "orvane/NumberedChoice.h"

namespace quillon::intelligence {

std::string SermonArticleGenerator::identifier() const {
    return orvane::intelligenceFeatureEntry("SermonArticleGenerator")->identifier;
}

orvane::IntelligencePolicy SermonArticleGenerator::policy() const {
    return orvane::intelligenceFeatureEntry("SermonArticleGenerator")->policy;
}

std::string SermonArticleGenerator::instructions(const model::SermonNote& sermon) {
    std::string references;
    for (const scripture::ScriptureReference& reference : sermonReferences(sermon))
        references += (references.empty() ? "" : ", ") + reference.description();
    return "You are turning a preacher's own sermon notes into a short article for the church's website. You are "
           "given the sermon's opening notes and numbered sections (a heading and its notes). Write flowing prose "
           "that connects these into a readable article, with a natural introduction and a brief closing thought, "
           "using only what is actually written here. Do not invent a fact, a story, a statistic, or a scripture "
           "reference that was not given to you. The only scripture references you may mention by reference are: " +
           (references.empty() ? std::string("none") : references) +
           ". Never quote a Bible verse's wording from memory — refer to a reference by its address only and let the "
           "reader look it up. Write the article body only; do not repeat the sermon's title as a heading.";
}

std::string SermonArticleGenerator::prompt(const model::SermonNote& sermon) {
    std::vector<std::string> sections;
    for (const SermonSection& section : sermonSections(sermon))
        sections.push_back(section.body());
    return "Opening notes:\n" + featureText::trimmed(sermon.notes) + "\n\nSections:\n" +
           orvane::NumberedChoice::format(sections);
}

std::string SermonArticleGenerator::articleFrom(const std::string& reply, const model::SermonNote& sermon) {
    std::string article = featureText::trimmed(reply);
    if (article.empty())
        throw orvane::IntelligenceError::malformedResponse("The article was empty.");
    if (!ReferenceRecogniser::namesOnly(article, sermonReferences(sermon)))
        throw orvane::IntelligenceError::malformedResponse(
            "The article cited scripture that was not part of this sermon.");
    return article;
}

std::string SermonArticleGenerator::fallback(const model::SermonNote& sermon) const {
    std::string article = featureText::trimmed(sermon.notes);
    for (const SermonSection& section : sermonSections(sermon)) {
        std::string paragraph = section.heading.empty() ? section.notes
                                : section.notes.empty() ? section.heading + "."
                                                        : section.heading + ". " + section.notes;
        if (!section.scriptures.empty()) {
            paragraph += " (See ";
            for (std::size_t i = 0; i < section.scriptures.size(); ++i)
                paragraph += (i ? ", " : "") + section.scriptures[i];
            paragraph += ".)";
        }
        article += (article.empty() ? "" : "\n\n") + paragraph;
    }
    return article;
}

std::string SermonArticleGenerator::emptyState(const model::SermonNote& sermon) {
    return featureText::trimmed(sermon.notes).empty() && sermonSections(sermon).empty() ? nothingToWriteFrom : "";
}

std::string SermonArticleGenerator::generate(const model::SermonNote& sermon,
                                             orvane::IntelligenceBackendProviding& backend) const {
    if (!emptyState(sermon).empty())
        throw orvane::IntelligenceError::malformedResponse(nothingToWriteFrom);
    return articleFrom(backend.respond({instructions(sermon), prompt(sermon), {}}).text, sermon);
}

} // namespace quillon::intelligence
