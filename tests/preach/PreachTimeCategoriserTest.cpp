#include "preach/PreachTimeCategoriser.h"

#include <gtest/gtest.h>

namespace quillon::preach {
namespace {

using orvane::IntelligenceBackendKind;
using orvane::IntelligenceReadiness;

class ScriptedBackend final : public orvane::IntelligenceBackendProviding {
public:
    explicit ScriptedBackend(std::string reply) : m_reply(std::move(reply)) {}
    IntelligenceBackendKind kind() const override { return IntelligenceBackendKind::onDevice; }
    orvane::IntelligenceResponse respond(const orvane::IntelligenceRequest& request) override {
        requests.push_back(request);
        return {m_reply, kind()};
    }
    std::vector<orvane::IntelligenceRequest> requests;

private:
    std::string m_reply;
};

model::SermonNote sermonWithList() {
    model::SermonNote sermon;
    model::SermonTopic topic;
    topic.title = "Three steps";
    topic.details = "1. Pray\n2. Read\n3. Serve";
    model::SermonSubTopic sub;
    sub.title = "Why it matters";
    sub.details = "Because the life of faith is lived in small daily choices.";
    model::SermonScripture verse;
    verse.bookName = "Micah";
    verse.chapter = 6;
    verse.startVerse = 8;
    verse.endVerse = 8;
    sub.scriptures = {verse};
    topic.subTopics = {sub};
    sermon.topics = {topic};
    return sermon;
}

std::string micah(const model::SermonScripture&) {
    return "He hath shewed thee, O man, what is good";
}

TEST(PreachTimeCategoriser, readsLabelLinesAndKeepsScriptureAsIs) {
    std::vector<PreachTimeEstimate::SectionText> sections = PreachTimeEstimate::sectionsOf(sermonWithList(), micah);
    ASSERT_EQ(sections.size(), 3u);
    EXPECT_EQ(PreachTimeCategoriser::prompt(sections),
              "0. Three steps\n1. Pray\n2. Read\n3. Serve\n1. Why it matters\nBecause the life of faith is lived in "
              "small daily choices.");
    struct Case {
        const char* reply;
        std::vector<Delivery> deliveries;
    };
    const Case cases[] = {
        {"0: list\n1: prose", {Delivery::list, Delivery::prose, Delivery::scripture}},
        {"  0 : LIST.\n", {Delivery::list, Delivery::prose, Delivery::scripture}},
        {"1: list\n2: list\n9: list", {Delivery::prose, Delivery::list, Delivery::scripture}},
        {"0) list", {Delivery::list, Delivery::prose, Delivery::scripture}},
    };
    for (const Case& test : cases)
        EXPECT_EQ(PreachTimeCategoriser::parseReply(test.reply, sections), test.deliveries) << test.reply;
    for (const char* unusable : {"", "Section one is a list.", "0: poetry", "7: list"})
        EXPECT_THROW(PreachTimeCategoriser::parseReply(unusable, sections), orvane::IntelligenceError) << unusable;
}

TEST(PreachTimeCategoriser, aModelLabelIsUsedWithoutTheGeneratedLabel) {
    auto backend = std::make_shared<ScriptedBackend>("0: list\n1: prose");
    auto probe = std::make_shared<orvane::StaticAvailabilityProbe>(orvane::IntelligenceAvailability{
        IntelligenceReadiness::ready(), IntelligenceReadiness::ready(), IntelligenceReadiness::ready()});
    orvane::ModelRouter router(probe, {backend});
    std::vector<PreachTimeEstimate::SectionText> sections = PreachTimeEstimate::sectionsOf(sermonWithList(), micah);
    auto outcome = orvane::run(PreachTimeCategoriser(), sections, router);
    EXPECT_EQ(outcome.path, orvane::IntelligencePath::generated(IntelligenceBackendKind::onDevice));
    EXPECT_FALSE(outcome.needsGeneratedLabel);
    ASSERT_EQ(backend->requests.size(), 1u);
    EXPECT_EQ(backend->requests[0].instructions, PreachTimeCategoriser::instructions);

    auto categorised = PreachTimeCategoriser::categorisedEstimate(sermonWithList(), PreachPace{}, micah, router);
    EXPECT_TRUE(categorised.value.wasCategorised);
    EXPECT_EQ(categorised.path, orvane::IntelligencePath::generated(IntelligenceBackendKind::onDevice));
    EXPECT_FALSE(categorised.needsGeneratedLabel);
    EXPECT_EQ(categorised.value.sections[0].delivery, Delivery::list);
    PreachTimeEstimate plain = PreachTimeEstimate::estimate(sermonWithList(), PreachPace{}, micah);
    EXPECT_GT(categorised.value.minutes, plain.minutes);

    // Without a backend the reason travels with the uncategorised estimate; a model that answers nonsense leaves
    // no reason, since its error is never shown.
    orvane::ModelRouter empty(probe);
    auto uncategorised = PreachTimeCategoriser::categorisedEstimate(sermonWithList(), PreachPace{}, micah, empty);
    EXPECT_FALSE(uncategorised.value.wasCategorised);
    EXPECT_EQ(uncategorised.path,
              orvane::IntelligencePath::fallback(orvane::IntelligenceUnavailableReason::notConfigured()));
    EXPECT_DOUBLE_EQ(uncategorised.value.minutes, plain.minutes);

    auto nonsense = std::make_shared<ScriptedBackend>("I think these are mostly prose.");
    orvane::ModelRouter confused(probe, {nonsense});
    auto unread = PreachTimeCategoriser::categorisedEstimate(sermonWithList(), PreachPace{}, micah, confused);
    EXPECT_FALSE(unread.value.wasCategorised);
    EXPECT_EQ(unread.path, orvane::IntelligencePath::fallback());
}

} // namespace
} // namespace quillon::preach
