#include "app/HelpLibrary.h"
#include "orvane/IntelligenceError.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace quillon::app {
namespace {

HelpLibrary shippedHelp() {
    std::vector<HelpArticle> articles;
    for (const auto& entry : std::filesystem::directory_iterator(QUILLON_HELP_DIR)) {
        std::ifstream file(entry.path());
        std::stringstream text;
        text << file.rdbuf();
        articles.push_back(HelpArticle::fromMarkdown(entry.path().stem().string(), text.str()));
    }
    return HelpLibrary(std::move(articles));
}

TEST(HelpLibrary, EveryArticleHasATitleAndMisspeltQueriesFindTheirArticle) {
    const HelpLibrary help = shippedHelp();
    ASSERT_EQ(help.articles().size(), 10u);
    for (const HelpArticle& article : help.articles()) {
        EXPECT_FALSE(article.title.empty());
        EXPECT_EQ(article.text.find("# "), std::string::npos) << article.id;
    }
    struct Case {
        std::string query;
        std::string article;
    };
    const std::vector<Case> cases = {
        {"preach preview", "preach-preview"},
        {"preech previw", "preach-preview"},
        {"sync foldr", "sync-folder"},
        {"llama-server", "model-server"},
        {"restore a backup", "backups-and-trash"},
        {"shortcuts", "keyboard-shortcuts"},
        {"pairing", "mesh"},
    };
    for (const Case& c : cases) {
        const auto found = help.search(c.query);
        ASSERT_FALSE(found.empty()) << c.query;
        EXPECT_EQ(found.front()->id, c.article) << c.query;
    }
    EXPECT_EQ(help.banner("preech previw"), "Showing results for preach, preview");
    EXPECT_TRUE(help.search("").empty());
}

TEST(AskHowTo, AcceptsOnlyAnAnswerThatCitesAnArticleItWasGiven) {
    const AskHowTo::Input input{
        "How do I time my sermon?",
        {{"preach-preview", "Preach Preview", "Record actual time."}, {"exports", "Exports", "Export a PDF."}}};
    const HowToAnswer answer = AskHowTo::answerFrom("Open Preach Preview.\nRecord the time.\nSOURCE: 1", input);
    EXPECT_EQ(answer.text, "Open Preach Preview. Record the time.");
    EXPECT_EQ(answer.articleId, "preach-preview");
    for (const char* reply : {"NONE", "Open it.", "Open it.\nSOURCE: 3", "Open it.\nSOURCE: x", "SOURCE: 1"})
        EXPECT_THROW(AskHowTo::answerFrom(reply, input), orvane::IntelligenceError) << reply;
    EXPECT_EQ(AskHowTo().fallback(input).matchingArticleIds, (std::vector<std::string>{"preach-preview", "exports"}));
    EXPECT_NE(AskHowTo::prompt(input).find("2. Exports"), std::string::npos);
}

} // namespace
} // namespace quillon::app
