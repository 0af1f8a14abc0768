#include "screens/LivePageTheme.h"
#include "screens/LivePageHtml.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillon::screens {
namespace {

TEST(LivePageThemeTest, KeepsTheDefaultForEveryValueItCannotUse) {
    const LivePageTheme defaults;
    struct Case {
        std::string json;
        std::function<bool(const LivePageTheme&)> holds;
    };
    const std::vector<Case> cases = {
        {R"({"textColour": "#00ff00"})", [](auto& t) { return t.textColour == "#00ff00"; }},
        {R"({"textColour": "red; } body { display: none"})",
         [&](auto& t) { return t.textColour == defaults.textColour; }},
        {R"({"panelColour": "</style><script>x()</script>"})",
         [&](auto& t) { return t.panelColour == defaults.panelColour; }},
        {R"({"fontFamily": "Comic\\\"Sans"})", [&](auto& t) { return t.fontFamily == defaults.fontFamily; }},
        {R"({"fontFamily": "Gentium Plus, serif"})", [](auto& t) { return t.fontFamily == "Gentium Plus, serif"; }},
        {R"({"fontSize": 2})", [&](auto& t) { return t.fontSize == defaults.fontSize; }},
        {R"({"fontSize": "60"})", [&](auto& t) { return t.fontSize == defaults.fontSize; }},
        {R"({"fontSize": 60, "minimumFontSize": 90})", [](auto& t) { return t.minimumFontSize == 60; }},
        {R"({"position": "sideways"})", [](auto& t) { return t.position == "bottom"; }},
        {R"({"position": "top"})", [](auto& t) { return t.position == "top"; }},
        {R"({"width": 500})", [&](auto& t) { return t.width == defaults.width; }},
        {R"({"transparentBackground": "no"})", [](auto& t) { return t.transparentBackground; }},
        {R"({"transparentBackground": false})", [](auto& t) { return !t.transparentBackground; }},
        {"not json at all", [&](auto& t) { return t.toJson() == defaults.toJson(); }},
        {"[1, 2]", [&](auto& t) { return t.toJson() == defaults.toJson(); }},
    };
    for (const auto& c : cases)
        EXPECT_TRUE(c.holds(LivePageTheme::fromJson(c.json))) << c.json;
}

TEST(LivePageThemeTest, WritesTheDefaultFileForThePreacherAndReadsTheirEdits) {
    testing::TemporaryFolder folder;
    const auto file = folder / "config" / "live-page-theme.json";
    EXPECT_EQ(LivePageTheme::load(file).toJson(), LivePageTheme{}.toJson());
    ASSERT_TRUE(std::filesystem::exists(file));
    EXPECT_EQ(LivePageTheme::fromJson(testing::readText(file)).toJson(), LivePageTheme{}.toJson());

    folder.write("config/live-page-theme.json", R"({"position": "top", "transparentBackground": false})");
    auto edited = LivePageTheme::load(file);
    EXPECT_EQ(edited.position, "top");
    auto page = renderLivePage(edited, LivePageLayout::lowerThird, std::nullopt);
    EXPECT_NE(page.find("background: #000000"), std::string::npos);
    EXPECT_NE(page.find("top: 4vh"), std::string::npos);
}

} // namespace
} // namespace quillon::screens
