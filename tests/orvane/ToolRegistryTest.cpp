#include "orvane/ToolRegistry.h"
#include "orvane/TextCorpusTool.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

std::vector<std::string> sourcesOf(const ToolResult& result) {
    std::vector<std::string> sources;
    for (const Passage& passage : result.passages)
        sources.push_back(passage.source);
    return sources;
}

TextCorpusTool illustrations(int maximum = 3) {
    return TextCorpusTool("illustrations", "Finds stories by theme.",
                          {{"Lighthouse", "The lighthouse keeper kept the lamp burning through the storm."},
                           {"Prodigal", "A son came home to a father who ran to meet him: grace and welcome."},
                           {"Storm", "Jesus stilled the storm; the disciples feared, then trusted."},
                           {"Shepherd", "The Shepherd leaves the ninety-nine for the one lost sheep. Psalm 23."},
                           {"Welcome", "Grace welcomes the stranger at the door."}},
                          maximum);
}

TEST(TextCorpusTool, ranksEntriesByQueryWordsFoundThenCorpusOrder) {
    struct Case {
        const char* query;
        int maximum;
        std::vector<std::string> sources;
    };
    const Case cases[] = {
        {"storm", 3, {"Lighthouse", "Storm"}},
        {"grace welcome storm", 3, {"Prodigal", "Welcome", "Lighthouse"}},
        {"grace welcome storm", 1, {"Prodigal"}},
        {"GRACE", 3, {"Prodigal", "Welcome"}},
        {"the and of a I", 3, {}},
        {"x y z", 3, {}},
        {"23", 3, {"Shepherd"}},
        {"storms", 3, {}},
        {"", 3, {}},
        {"storm storm storm grace", 5, {"Lighthouse", "Prodigal", "Storm", "Welcome"}},
    };
    for (const Case& test : cases)
        EXPECT_EQ(sourcesOf(illustrations(test.maximum).lookup(test.query)), test.sources) << test.query;
    ToolResult found = illustrations().lookup("lamp");
    ASSERT_EQ(found.passages.size(), 1u);
    EXPECT_EQ(found.passages[0].text, "The lighthouse keeper kept the lamp burning through the storm.");
}

class FailingTool final : public IntelligenceTool {
public:
    std::string name() const override { return "broken"; }
    std::string purpose() const override { return "Always fails."; }
    ToolResult lookup(const std::string&) const override { throw ToolError::lookupFailed("disk gone"); }
};

TEST(ToolRegistry, catalogueCallAndGather) {
    auto first = std::make_shared<TextCorpusTool>(illustrations());
    auto replacement = std::make_shared<TextCorpusTool>(
        TextCorpusTool("illustrations", "Replacement.", {{"Only", "storm at sea"}}, 3));
    ToolRegistry registry({first, std::make_shared<FailingTool>()});
    registry.registerTool(replacement);

    std::vector<std::string> names;
    for (const auto& tool : registry.catalogue())
        names.push_back(tool->name());
    EXPECT_EQ(names, (std::vector<std::string>{"broken", "illustrations"}));
    EXPECT_EQ(registry.tool("illustrations")->purpose(), "Replacement.");

    EXPECT_EQ(sourcesOf(registry.call("illustrations", "storm")), std::vector<std::string>{"Only"});
    try {
        registry.call("missing", "storm");
        FAIL();
    } catch (const ToolError& error) {
        EXPECT_EQ(error.kind(), ToolError::Case::notRegistered);
        EXPECT_EQ(error.name(), "missing");
    }
    EXPECT_THROW(registry.call("broken", "storm"), ToolError);
    EXPECT_THROW(registry.tool("nope"), ToolError);

    std::map<std::string, ToolResult> gathered =
        registry.gather({"missing", "illustrations", "broken", "illustrations"}, "storm");
    ASSERT_EQ(gathered.size(), 3u);
    EXPECT_EQ(gathered["missing"], ToolResult::empty());
    EXPECT_EQ(gathered["broken"], ToolResult::empty());
    EXPECT_EQ(sourcesOf(gathered["illustrations"]), std::vector<std::string>{"Only"});
}

} // namespace
} // namespace orvane
