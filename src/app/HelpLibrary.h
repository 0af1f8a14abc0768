#pragma once

#include "app/CatalogueSearch.h"
#include "orvane/IntelligenceFeature.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillon::app {

/// One help article: its file name without ".md", its title (the "# " line) and its paragraphs.
struct HelpArticle {
    std::string id;
    std::string title;
    std::string text;

    /// Reads an article written as Markdown: the first "# " line is the title, the rest the text.
    static HelpArticle fromMarkdown(std::string id, std::string_view markdown);
};

/// The help articles and their search, with the same ranking and correction as the settings.
class HelpLibrary {
public:
    explicit HelpLibrary(std::vector<HelpArticle> articles);

    const std::vector<HelpArticle>& articles() const { return m_articles; }
    const HelpArticle* find(std::string_view id) const;
    /// The matching articles, best first; nothing for an empty query.
    std::vector<const HelpArticle*> search(std::string_view query, int limit = 10) const;
    /// "Showing results for …" when a word was corrected, else empty.
    std::string banner(std::string_view query) const;

private:
    std::vector<HelpArticle> m_articles;
    CatalogueSearch m_search;
};

/// The answer to a how-to question: the model's steps and the article they rest on, or (model-free)
/// only the matching articles.
struct HowToAnswer {
    std::string text;
    /// The article the answer cites; empty for the model-free answer.
    std::string articleId;
    std::vector<std::string> matchingArticleIds;

    bool operator==(const HowToAnswer&) const = default;
};

/// "Ask how-to": answers a question about using Quillon from the help articles that match it. The
/// model must cite the one article its answer comes from; an answer citing none, or one it was not
/// given, is refused and the matching articles are listed instead.
class AskHowTo final
    : public orvane::IntelligenceFeature<std::pair<std::string, std::vector<HelpArticle>>, HowToAnswer> {
public:
    using Input = std::pair<std::string, std::vector<HelpArticle>>;
    static constexpr const char* instructions =
        "You answer a preacher's question about using the Quillon sermon-preparation application, using only the "
        "numbered help articles below. Answer in a few plain sentences, then a last line exactly \"SOURCE: <number>\" "
        "naming the one article your answer comes from. If the articles do not answer the question, answer with the "
        "single word NONE.";
    static constexpr const char* generatedCaption = "Answered from the help article named below.";
    static constexpr const char* fallbackCaption = "These help articles match your question.";
    static constexpr const char* nothingMatches = "No help article matches that. Try other words.";

    std::string identifier() const override;
    orvane::IntelligencePolicy policy() const override;
    HowToAnswer fallback(const Input& input) const override;
    HowToAnswer generate(const Input& input, orvane::IntelligenceBackendProviding& backend) const override;

    static std::string prompt(const Input& input);
    /// Throws malformedResponse for NONE, a missing or unknown SOURCE line, or an empty answer.
    static HowToAnswer answerFrom(const std::string& reply, const Input& input);
};

} // namespace quillon::app
