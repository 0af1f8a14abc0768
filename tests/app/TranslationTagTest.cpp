// A translation tag typed with a reference is read the same way by every reader: the controller
// attaching a typed passage, the importer reading an outline, and `quillon ref`.

#include "ControllerHarness.h"

#include "export/LibraryReferences.h"
#include "export/OutlineParser.h"
#include "scripture/ReferenceParser.h"

#include <gtest/gtest.h>

namespace quillon::app {

namespace {

struct Attached {
    std::string passage; // "Romans 8:28-28 KJV"
    std::string note;    // the sentence said about a translation Quillon lacks, or empty

    bool operator==(const Attached&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Attached& attached) {
    return out << attached.passage << " / " << attached.note;
}

std::string passageText(std::string_view book, int chapter, int first, int last, model::BibleVersion version) {
    return std::string(book) + " " + std::to_string(chapter) + ":" + std::to_string(first) + "-" +
           std::to_string(last) + " " + std::string(model::rawValue(version));
}

std::string passageText(const model::SermonScripture& s) {
    return passageText(s.bookName, s.chapter, s.startVerse, s.endVerse, s.version);
}

Attached byController(testing::ControllerHarness& harness, const model::SermonNote& sermon, const std::string& typed) {
    auto& desk = *harness.controller;
    const auto& subTopic = sermon.topics[0].subTopics[0];
    const auto id = desk.addScripture(sermon.id, subTopic.id, typed);
    const auto& message = harness.listener.messages.back();
    if (!id)
        return {"refused", message.detail};
    const auto& scriptures = desk.sermon(sermon.id)->topics[0].subTopics[0].scriptures;
    return {passageText(scriptures.back()), message.detail == "Saved locally" ? "" : message.detail};
}

Attached byImporter(const std::string& typed) {
    const auto sermon =
        exports::OutlineParser(exports::libraryReferenceRecognizer()).parse("Title\nI. Point\nA. Sub\n" + typed);
    const auto& subTopic = sermon.topics.at(0).subTopics.at(0);
    if (subTopic.scriptures.empty())
        return {"refused", subTopic.details};
    return {passageText(subTopic.scriptures.front()), subTopic.details};
}

/// What `quillon ref` reads, and the version the passage is shown in: the tag's when it is ours.
Attached byRef(const std::string& typed) {
    const auto reading = scripture::readReference(typed);
    if (!reading.reference)
        return {"refused", ""};
    const auto& reference = *reading.reference;
    const auto version = reading.version.value_or(model::BibleVersion::kjv);
    const int last = reference.lastVerse().value_or(reference.book.verseCount(reference.chapter));
    const int first = reference.firstVerse().value_or(1);
    const std::string shown = reference.book.name + " " + std::to_string(reference.chapter) + ":" +
                              std::to_string(first) + (first == last ? "" : "-" + std::to_string(last));
    const std::string note = !reading.translation.empty() && !reading.version
                                 ? exports::OutlineParser::missingVersionNote(reading.translation, shown)
                                 : "";
    return {passageText(reference.book.name, reference.chapter, first, last, version), note};
}

} // namespace

TEST(TranslationTag, controllerImporterAndRefReadATagAlike) {
    const auto missing = [](std::string_view tag, std::string_view reference) {
        return exports::OutlineParser::missingVersionNote(tag, reference);
    };
    struct Case {
        std::string typed;
        Attached expected;
    };
    const std::vector<Case> cases{
        {"John 3:16 ASV", {"John 3:16-16 ASV", ""}},
        {"Lev 1 (YLT)", {"Leviticus 1:1-17 YLT", ""}},
        {"NKJV: Matt 5:6", {"Matthew 5:6-6 NKJV", ""}},
        {"ASV: Ps 1", {"Psalms 1:1-6 ASV", ""}},
        {"1 Jn 1:9 kjv", {"1 John 1:9-9 KJV", ""}},
        {"Psalm 119:105 - asv", {"Psalms 119:105-105 ASV", ""}},
        {"Rom. 8:28 NIV", {"Romans 8:28-28 KJV", missing("NIV", "Romans 8:28")}},
        {"Luke 15:22-24 ESV", {"Luke 15:22-24 KJV", missing("ESV", "Luke 15:22-24")}},
        {"(ESV) John 3:16", {"John 3:16-16 KJV", missing("ESV", "John 3:16")}},
        {"“John 3:16 (NASB)”", {"John 3:16-16 KJV", missing("NASB", "John 3:16")}},
        {"rom 8 28-30", {"Romans 8:28-30 KJV", ""}},
    };
    testing::ControllerHarness harness;
    const auto sermon = testing::makeSermon("Tags");
    harness.seed(sermon);
    harness.open();
    for (const auto& c : cases) {
        EXPECT_EQ(byController(harness, sermon, c.typed), c.expected) << c.typed;
        EXPECT_EQ(byImporter(c.typed), c.expected) << c.typed;
        EXPECT_EQ(byRef(c.typed), c.expected) << c.typed;
    }
}

TEST(TranslationTag, aVersionChosenInTheSheetWinsAndTheNoteNamesIt) {
    testing::ControllerHarness harness;
    const auto sermon = testing::makeSermon("Chosen");
    harness.seed(sermon);
    auto& desk = harness.open();
    const auto subTopicId = sermon.topics[0].subTopics[0].id;
    ASSERT_TRUE(desk.addScripture(sermon.id, subTopicId, "John 3:16 NIV", model::BibleVersion::asv));
    EXPECT_EQ(harness.listener.messages.back(),
              (StatusMessage{"Scripture Added", "NIV is not in this build of Quillon, so John 3:16 is attached in ASV.",
                             StatusMessage::Kind::toast}));
    ASSERT_TRUE(desk.addScripture(sermon.id, subTopicId, "John 3:16 NKJV", model::BibleVersion::ylt));
    const auto& added = desk.sermon(sermon.id)->topics[0].subTopics[0].scriptures;
    EXPECT_EQ(passageText(added.back()), "John 3:16-16 YLT");
    EXPECT_EQ(harness.listener.messages.back().detail, "Saved locally");
}

} // namespace quillon::app
