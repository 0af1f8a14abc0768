#include "app/HelpLibrary.h"

#include "intelligence/FeatureText.h"
#include "orvane/IntelligenceError.h"
#include "orvane/IntelligenceFeatureCatalogue.h"

#include <fmt/format.h>

namespace quillon::app {

namespace {

std::vector<orvane::IndexedDocument> articleDocuments(const std::vector<HelpArticle>& articles) {
    std::vector<orvane::IndexedDocument> documents;
    for (const HelpArticle& article : articles)
        documents.push_back({article.id, article.title, article.text});
    return documents;
}

std::vector<std::string> idsOf(const std::vector<HelpArticle>& articles) {
    std::vector<std::string> ids;
    for (const HelpArticle& article : articles)
        ids.push_back(article.id);
    return ids;
}

} // namespace

HelpArticle HelpArticle::fromMarkdown(std::string id, std::string_view markdown) {
    HelpArticle article{std::move(id), {}, {}};
    std::string_view rest = markdown;
    while (!rest.empty()) {
        const auto end = rest.find('\n');
        std::string_view line = rest.substr(0, end);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        if (article.title.empty() && line.starts_with("# ")) {
            article.title = intelligence::featureText::trimmed(line.substr(2));
            continue;
        }
        article.text.append(line).append("\n");
    }
    article.text = intelligence::featureText::trimmed(article.text);
    if (article.title.empty())
        article.title = article.id;
    return article;
}

HelpLibrary::HelpLibrary(std::vector<HelpArticle> articles)
    : m_articles(std::move(articles)), m_search(articleDocuments(m_articles)) {}

const HelpArticle* HelpLibrary::find(std::string_view id) const {
    for (const HelpArticle& article : m_articles)
        if (article.id == id)
            return &article;
    return nullptr;
}

std::vector<const HelpArticle*> HelpLibrary::search(std::string_view query, int limit) const {
    std::vector<const HelpArticle*> found;
    for (const orvane::SearchHit& hit : m_search.search(query, limit).hits)
        if (const HelpArticle* article = find(hit.documentID))
            found.push_back(article);
    return found;
}

std::string HelpLibrary::banner(std::string_view query) const {
    return orvane::QueryCorrection::bannerText(m_search.search(query, 1).corrections).value_or("");
}

std::string AskHowTo::identifier() const {
    return orvane::intelligenceFeatureEntry("AskHowTo")->identifier;
}

orvane::IntelligencePolicy AskHowTo::policy() const {
    return orvane::intelligenceFeatureEntry("AskHowTo")->policy;
}

HowToAnswer AskHowTo::fallback(const Input& input) const {
    return {{}, {}, idsOf(input.second)};
}

std::string AskHowTo::prompt(const Input& input) {
    std::string text = "Question: " + input.first + "\n";
    for (std::size_t i = 0; i < input.second.size(); ++i)
        text += fmt::format("\n{}. {}\n{}\n", i + 1, input.second[i].title, input.second[i].text);
    return text;
}

HowToAnswer AskHowTo::answerFrom(const std::string& reply, const Input& input) {
    if (intelligence::featureText::isNone(reply))
        throw orvane::IntelligenceError::malformedResponse("The help articles do not answer this question.");
    std::string answer;
    std::optional<std::size_t> source;
    for (const std::string& line : intelligence::featureText::lines(reply)) {
        if (line.starts_with("SOURCE:")) {
            const std::string number = intelligence::featureText::trimmed(std::string_view(line).substr(7));
            std::size_t value = 0;
            if (!number.empty() && number.find_first_not_of("0123456789") == std::string::npos && number.size() < 4)
                value = std::stoul(number);
            if (value >= 1 && value <= input.second.size())
                source = value - 1;
            continue;
        }
        answer += (answer.empty() ? "" : " ") + line;
    }
    if (!source || answer.empty())
        throw orvane::IntelligenceError::malformedResponse("The answer named none of the help articles it was given.");
    return {answer, input.second[*source].id, idsOf(input.second)};
}

HowToAnswer AskHowTo::generate(const Input& input, orvane::IntelligenceBackendProviding& backend) const {
    if (input.second.empty())
        throw orvane::IntelligenceError::malformedResponse("No help article matched.");
    return answerFrom(backend.respond({instructions, prompt(input), {}}).text, input);
}

} // namespace quillon::app
