#include "model/JsonWriter.h"
#include "model/SermonCoding.h"
#include "model/SermonDocument.h"
#include "support/SermonFixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace std::string_literals;

namespace quillon::model {
namespace {

using Json = OrderedJSON;
using testing::makeSermon;

UnknownJSONValue object(UnknownJSONObject members) {
    return {std::move(members)};
}

UnknownJSONValue array(UnknownJSONArray elements) {
    return {std::move(elements)};
}

/// Sermons that exercise every rule of the text layout and escaping.
std::vector<std::pair<std::string, SermonNote>> sermonCases() {
    std::vector<std::pair<std::string, SermonNote>> cases;
    cases.emplace_back("plain", makeSermon("Grace"));

    SermonNote full = makeSermon("Every field");
    full.series = "Romans";
    full.venue = "Main hall";
    full.notesRTFData = "{\\rtf1\0\xff}"s;
    full.textColorHex = "#336699";
    full.coverImageFileName = full.id.text() + "_cover.jpg";
    full.topics[0].detailsRTFData = std::string("x");
    full.topics[0].textColorHex = "#111111";
    full.topics[0].subTopics[0].textColorHex = "#000000";
    full.topics[0].subTopics[0].scriptures[0].textColorHex = "#222222";
    full.topics[0].subTopics[0].scriptures[0].wordHighlights = {{-1, "red"}, {17, "blue"}, {3, "yellow"}};
    cases.emplace_back("every field", full);

    SermonNote empty = makeSermon("");
    empty.topics[0].subTopics[0].scriptures[0].wordHighlights.clear();
    empty.topics[0].subTopics[0].scriptures[0].breakIndicators.clear();
    empty.tags.clear();
    empty.notes.clear();
    SermonNote noSubTopics = empty;
    noSubTopics.topics[0].subTopics.clear();
    SermonNote noTopics = empty;
    noTopics.topics.clear();
    cases.emplace_back("empty lists", empty);
    cases.emplace_back("no sub-topics", noSubTopics);
    cases.emplace_back("no topics", noTopics);

    SermonNote text = makeSermon("Quotes \" and \\ slashes / and\ttabs\r\n\b\f");
    text.notes = "control \x01\x1f\x7f and nul "s + std::string(1, '\0') + " café 😀 ∑";
    text.speaker = "\xff\xfe broken";
    text.tags = {"a\xC3", "\xED\xA0\x80 surrogate", "\xF0\x9F\x98 cut", "ok"};
    cases.emplace_back("escaping and broken UTF-8", text);

    SermonNote unknown = makeSermon("Unknown members");
    unknown.unknownFields = {
        {"mood", object({{"a", array({{1.0}, {true}, {nullptr}, {2.5}, {std::string("x")}})}, {"empty", object({})}})},
        {"list", array({})},
        {"numbers", array({{-0.0},
                           {1e20},
                           {9007199254740991.0},
                           {9007199254740992.0},
                           {1e300},
                           {-1.25e-7},
                           {std::numeric_limits<double>::quiet_NaN()},
                           {std::numeric_limits<double>::infinity()}})},
        {"name \"quoted\"\n", {std::string("v")}}};
    unknown.topics[0].unknownFields = {{"colourScheme", {std::string("warm")}}};
    unknown.topics[0].subTopics[0].unknownFields = {{"nested", array({array({object({{"deep", {false}}})})})}};
    unknown.topics[0].subTopics[0].scriptures[0].unknownFields = {{"audio", {false}}};
    cases.emplace_back("unknown members", unknown);

    // Names the document would merge: the text must show the merged document too.
    SermonNote repeated = makeSermon("Repeated names");
    repeated.unknownFields = {{"x", {1.0}}, {"y", {2.0}}, {"x", {3.0}}};
    cases.emplace_back("repeated unknown name", repeated);
    SermonNote known = makeSermon("Known name");
    known.topics[0].subTopics[0].unknownFields = {{"title", {std::string("shadow")}}};
    cases.emplace_back("unknown name equal to a known key", known);
    SermonNote nestedRepeat = makeSermon("Nested repeat");
    nestedRepeat.topics[0].subTopics[0].scriptures[0].unknownFields = {{"o", object({{"k", {1.0}}, {"k", {2.0}}})}};
    cases.emplace_back("repeated name inside an unknown object", nestedRepeat);
    return cases;
}

// Files written straight from the records must be byte for byte what the document gives, so a
// library written by either way reads and diffs the same.
TEST(JsonWriter, sermonFilesMatchTheDocumentByteForByte) {
    for (const auto& [name, sermon] : sermonCases())
        EXPECT_EQ(encodeSermonFile(sermon),
                  encodeSermonNote(sermon).dump(2, ' ', false, Json::error_handler_t::replace) + "\n")
            << name;
}

TEST(JsonWriter, archivesMatchTheDocumentByteForByte) {
    std::vector<SermonNote> sermons;
    for (const auto& [name, sermon] : sermonCases())
        sermons.push_back(sermon);
    const DateTime exportDate = testing::at(2025, 3, 9, 14, 30);
    for (std::size_t count : {std::size_t{0}, std::size_t{1}, sermons.size()}) {
        const std::vector<SermonNote> some(sermons.begin(), sermons.begin() + static_cast<std::ptrdiff_t>(count));
        const SermonNoteExport archive{1, "io.veltra.qln", exportDate, some};
        EXPECT_EQ(encodeSermonArchive(some, "io.veltra.qln", exportDate),
                  encodeSermonNoteExport(archive).dump(2, ' ', false, Json::error_handler_t::replace) + "\n")
            << count << " sermons";
    }
}

TEST(JsonWriter, writtenFilesReadBackToTheSameRecords) {
    for (const auto& [name, sermon] : sermonCases()) {
        if (name.find("broken") != std::string::npos || name.find("equal to a known") != std::string::npos ||
            name.find("repeated") != std::string::npos)
            continue; // repaired text and merged names deliberately do not read back as they were
        SermonNote expected = sermon;
        for (auto& [member, value] : expected.unknownFields)
            if (member == "numbers")
                value = decodeUnknownJSONValue(Json::parse(encodeUnknownJSONValue(value).dump())); // NaN becomes null
        EXPECT_EQ(decodeSermonFile(encodeSermonFile(sermon)), expected) << name;
    }
}

} // namespace
} // namespace quillon::model
