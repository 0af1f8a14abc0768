#include "preach/PreachTimeEstimate.h"
#include "platform/Preferences.h"
#include "preach/SpeakerProfile.h"
#include "preach/WordCount.h"

#include <gtest/gtest.h>

namespace quillon::preach {
namespace {

TEST(PreachTimeEstimate, formattedRoundsAndNeverShowsZero) {
    struct Case {
        double minutes;
        const char* text;
    };
    const Case cases[] = {
        {0, "1 min"},     {0.5, "1 min"},        {1.49, "1 min"}, {12.5, "13 min"},
        {59.4, "59 min"}, {59.5, "1 hr"},        {60, "1 hr"},    {90, "1 hr 30 min"},
        {120, "2 hr"},    {121.2, "2 hr 1 min"}, {-5, "1 min"},   {1.0 / 0.0, "1 min"},
    };
    for (const Case& test : cases)
        EXPECT_EQ(PreachTimeEstimate::formatted(test.minutes), test.text) << test.minutes;
}

TEST(PreachTimeEstimate, eachDeliveryIsTimedAtItsOwnRate) {
    using Section = PreachTimeEstimate::Section;
    PreachPace pace; // 130, 0.75, 0.8
    struct Case {
        const char* name;
        std::vector<Section> sections;
        PreachPace pace;
        double minutes;
    };
    PreachPace crawling{0.5, 0.75, 0.8};
    const Case cases[] = {
        {"no sections", {}, pace, 0},
        {"65 words of prose", {{"Topic", 65, Delivery::prose}}, pace, 0.5},
        {"scripture is slower", {{"John 3:16", 195, Delivery::scripture}}, pace, 2.0},
        {"lists are slower", {{"Steps", 104, Delivery::list}}, pace, 1.0},
        {"sections add up",
         {{"A", 130, Delivery::prose}, {"B", 195, Delivery::scripture}, {"C", 104, Delivery::list}},
         pace,
         4.0},
        {"a rate below one word a minute is raised to one", {{"A", 3, Delivery::list}}, crawling, 3.0},
    };
    for (const Case& test : cases) {
        PreachTimeEstimate estimate = PreachTimeEstimate::estimate(test.sections, test.pace);
        EXPECT_NEAR(estimate.minutes, test.minutes, 1e-9) << test.name;
        EXPECT_EQ(estimate.sections, test.sections) << test.name;
        EXPECT_FALSE(estimate.wasCategorised);
    }
    EXPECT_EQ(PreachTimeEstimate::formatted(PreachTimeEstimate::estimate(cases[1].sections, pace).minutes), "1 min");
}

TEST(PreachTimeEstimate, countsWordsAtWordBoundaries) {
    struct Case {
        const char* text;
        int words;
    };
    const Case cases[] = {
        {"", 0},
        {"   \n\t ", 0},
        {"Grace, mercy — and peace!", 4},
        {"God's love isn't earned.", 4},
        {"In 1 Corinthians 13:4-7 love is patient.", 9}, // chapter and verses are spoken
        {"«Ἐν ἀρχῇ ἦν ὁ λόγος»", 5},
        {"...!!! ???", 0},
        {"\xff\xfe broken bytes", 2},
    };
    for (const Case& test : cases)
        EXPECT_EQ(countSpokenWords(test.text), test.words) << test.text;
}

TEST(PreachTimeEstimate, sectionsFollowTheListOrderThatShowPrintsThenTheManuscript) {
    model::SermonNote sermon;
    model::SermonTopic second;
    second.title = "Second point";
    second.sortOrder = 2;
    model::SermonTopic first;
    first.title = "";
    first.details = "Opening words here";
    first.sortOrder = 1;
    model::SermonSubTopic sub;
    sub.title = "Sub";
    sub.details = "two more";
    model::SermonScripture verse;
    verse.bookName = "John";
    verse.chapter = 3;
    verse.startVerse = 16;
    verse.endVerse = 17;
    sub.scriptures.push_back(verse);
    model::SermonSubTopic empty;
    first.subTopics = {sub, empty};
    sermon.topics = {second, first};
    sermon.notes = "The manuscript itself.";

    auto scriptureText = [](const model::SermonScripture& scripture) {
        return scripture.bookName == "John" ? std::string("For God so loved the world") : std::string();
    };
    std::vector<PreachTimeEstimate::SectionText> sections = PreachTimeEstimate::sectionsOf(sermon, scriptureText);
    // Stored first, so preached first, although its sortOrder says otherwise.
    std::vector<PreachTimeEstimate::Section> expected = {
        {"Second point", 2, Delivery::prose},     {"Topic", 3, Delivery::prose}, {"Sub", 3, Delivery::prose},
        {"John 3:16-17", 6, Delivery::scripture}, {"Notes", 3, Delivery::prose},
    };
    ASSERT_EQ(sections.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(sections[i].section, expected[i]) << i;
    EXPECT_EQ(sections[2].text, "Sub\ntwo more");

    // Without Bible text the passages count nothing rather than guessing.
    EXPECT_EQ(PreachTimeEstimate::sectionsOf(sermon).size(), 4u);
    PreachTimeEstimate estimate = PreachTimeEstimate::estimate(sermon, PreachPace{}, scriptureText);
    EXPECT_EQ(estimate.words(Delivery::scripture), 6);
    EXPECT_EQ(estimate.words(Delivery::prose), 11);
    EXPECT_EQ(PreachTimeEstimate::estimate(model::SermonNote{}, PreachPace{}).minutes, 0);
}

TEST(PreachPace, settingsUseOnlyPositiveValuesAndSpeakersOverride) {
    platform::Preferences preferences = platform::Preferences::inMemory();
    EXPECT_EQ(PreachPace::fromPreferences(preferences), (PreachPace{130, 0.75, 0.8, false}));
    preferences.set("Quillon.pace.proseWordsPerMinute", 150);
    preferences.set("Quillon.pace.scriptureFactor", 0);
    preferences.set("Quillon.pace.listFactor", -1);
    EXPECT_EQ(PreachPace::fromPreferences(preferences), (PreachPace{150, 0.75, 0.8, false}));
    EXPECT_EQ(PreachPace::fromPreferences(preferences).explanation(),
              "Estimated from a starting pace of 150 words a minute. Record how long a sermon actually took to teach "
              "the estimate your own pace.");

    SpeakerProfile::save(preferences, {"Anna Reyes", 110});
    SpeakerProfile::save(preferences, {"Tom", std::nullopt});
    EXPECT_EQ(PreachPace::forSpeaker(preferences, "  anna reyes ").wordsPerMinute, 110);
    EXPECT_EQ(PreachPace::forSpeaker(preferences, "Tom").wordsPerMinute, 150);
    EXPECT_EQ(PreachPace::forSpeaker(preferences, "").wordsPerMinute, 150);
    SpeakerProfile::save(preferences, {"ANNA REYES", 95});
    EXPECT_EQ(SpeakerProfile::all(preferences).size(), 2u);
    EXPECT_EQ(PreachPace::forSpeaker(preferences, "Anna Reyes").wordsPerMinute, 95);

    preferences.set("Quillon.profiles.speakers", nlohmann::json::parse(R"([{"nom":"x"}, {"name":"Ok"}, 7])"));
    EXPECT_EQ(SpeakerProfile::all(preferences), (std::vector<SpeakerProfile>{{"Ok", std::nullopt}}));
}

} // namespace
} // namespace quillon::preach
