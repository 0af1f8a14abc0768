#include "LibraryRun.h"

#include "store/SampleSermons.h"

namespace {
using quillon::testing::LibraryRun;

class SamplesCommandTest : public LibraryRun {
protected:
    SamplesCommandTest() : LibraryRun(false) {}
};

TEST_F(SamplesCommandTest, aFreshLibraryShowsTheSamplesUntilTheyAreHidden) {
    const auto& samples = quillon::store::sampleSermonDefinitions();
    auto listed = run({"list"});
    for (const auto& sample : samples)
        EXPECT_NE(listed.out.find(sample.title), std::string::npos) << sample.title;

    EXPECT_EQ(run({"samples", "hide"}).out, "The sample sermons are hidden.\n");
    listed = run({"list"});
    for (const auto& sample : samples)
        EXPECT_EQ(listed.out.find(sample.title), std::string::npos) << sample.title;

    EXPECT_EQ(run({"samples", "show"}).out, "The sample sermons are shown.\n");
    listed = run({"list"});
    EXPECT_NE(listed.out.find(samples.front().title), std::string::npos);
}

TEST_F(SamplesCommandTest, aDeletedSampleIsNotAddedAgain) {
    const auto& first = quillon::store::sampleSermonDefinitions().front();
    run({"list"});
    ASSERT_EQ(run({"delete", first.id, "--yes"}).status, 0);
    EXPECT_EQ(run({"list"}).out.find(first.title), std::string::npos);
}

TEST_F(SamplesCommandTest, newFromATemplateStartsWithItsOutline) {
    auto created = run({"new", "--title", "Three Points", "--template", "topical"});
    ASSERT_EQ(created.status, 0) << created.err;
    const std::string id = created.out.substr(0, 36);
    const auto file = quillon::testing::readText(library() / "Sermons" / (id + ".json"));
    const auto sermon = quillon::model::decodeSermonFile(file);
    ASSERT_EQ(sermon.topics.size(), 3u);
    EXPECT_EQ(sermon.topics[2].title, "Point 3");
    EXPECT_EQ(sermon.topics[2].subTopics[1].title, "Application");

    auto wrong = run({"new", "--title", "X", "--template", "sermonette"});
    EXPECT_EQ(wrong.status, 1);
}

} // namespace
