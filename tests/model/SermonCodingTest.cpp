#include "model/SermonCoding.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace quillon::model {
namespace {

using Json = OrderedJSON;

const char* const minimalSermon = R"({
  "id": "E621E1F8-C36C-495A-93FC-0C247A3E6E5F",
  "title": "Grace Abounds",
  "date": "2025-03-09T14:30:00Z",
  "speaker": "",
  "topics": [{
    "id": "11111111-2222-3333-4444-555555555555",
    "title": "Promise", "details": "", "sortOrder": 0,
    "subTopics": [{
      "id": "21111111-2222-3333-4444-555555555555",
      "title": "Given", "details": "d", "sortOrder": 0,
      "scriptures": [{
        "id": "31111111-2222-3333-4444-555555555555",
        "bookName": "John", "chapter": 3, "startVerse": 16, "endVerse": 17,
        "version": "KJV", "sortOrder": 0,
        "wordHighlights": {"3": "yellow", "17": "blue"}, "breakIndicators": [2, 5]
      }]
    }]
  }],
  "notes": "Manuscript",
  "createdAt": "2025-03-01T08:00:00Z",
  "modifiedAt": "2025-03-02T09:15:30Z"
})";

Json parsed(const char* text) {
    return Json::parse(text);
}

TEST(SermonCoding, readsRequiredAndDefaultsOptionalMembers) {
    SermonNote sermon = decodeSermonNote(parsed(minimalSermon));
    EXPECT_EQ(sermon.id.text(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    EXPECT_FALSE(sermon.series || sermon.venue || sermon.notesRTFData || sermon.textColorHex ||
                 sermon.coverImageFileName);
    EXPECT_TRUE(sermon.tags.empty());
    const auto& scripture = sermon.topics.at(0).subTopics.at(0).scriptures.at(0);
    EXPECT_EQ(scripture.wordHighlights.at(17), "blue");
    EXPECT_EQ(scripture.breakIndicators, (std::vector<int>{2, 5}));

    Json written = encodeSermonNote(sermon);
    EXPECT_EQ(written["tags"], Json::array());
    for (const char* absent : {"series", "venue", "notesRTFData", "textColorHex", "coverImageFileName"})
        EXPECT_FALSE(written.contains(absent)) << absent;
    // Known members in table order.
    std::vector<std::string> keys;
    for (auto it = written.begin(); it != written.end(); ++it)
        keys.push_back(it.key());
    EXPECT_EQ(keys, (std::vector<std::string>{"id", "title", "date", "speaker", "topics", "notes", "createdAt",
                                              "modifiedAt", "tags"}));
}

TEST(SermonCoding, missingOrMistypedRequiredMembersFailTheRead) {
    for (const char* key : {"id", "title", "date", "speaker", "topics", "notes", "createdAt", "modifiedAt"}) {
        Json json = parsed(minimalSermon);
        json.erase(key);
        EXPECT_THROW(decodeSermonNote(json), DecodingError) << key;
    }
    for (const char* key : {"wordHighlights", "breakIndicators", "version", "sortOrder"}) {
        Json json = parsed(minimalSermon);
        json["topics"][0]["subTopics"][0]["scriptures"][0].erase(key);
        EXPECT_THROW(decodeSermonNote(json), DecodingError) << key;
    }
    struct Case {
        const char* pointer;
        Json value;
    };
    for (const Case& c : {Case{"/title", 3}, Case{"/id", "not-a-uuid"}, Case{"/date", "2025-03-09T14:30:00.250Z"},
                          Case{"/date", "2025-03-09T14:30:00+01:00"}, Case{"/date", "2025-02-30T14:30:00Z"},
                          Case{"/topics", Json::object()}, Case{"/tags", "sermon"}, Case{"/topics/0/sortOrder", 1.5},
                          Case{"/topics/0/sortOrder", 1e12}, Case{"/topics/0/subTopics/0/scriptures/0/version", "ESV"},
                          Case{"/topics/0/subTopics/0/scriptures/0/wordHighlights", Json{{"x", "red"}}},
                          Case{"/notesRTFData", "not base64!"}}) {
        Json json = parsed(minimalSermon);
        json[Json::json_pointer(c.pointer)] = c.value;
        EXPECT_THROW(decodeSermonNote(json), DecodingError) << c.pointer << " = " << c.value.dump();
    }
}

TEST(SermonCoding, unknownMembersSurviveAWriteWithTheirStructure) {
    Json json = parsed(minimalSermon);
    json["mood"] = parsed(R"({"a": [1, true, null, 2.5, "x", {"z": 1, "b": 2}]})");
    json["topics"][0]["colourScheme"] = "warm";
    json["topics"][0]["subTopics"][0]["scriptures"][0]["audio"] = false;

    SermonNote sermon = decodeSermonNote(json);
    ASSERT_EQ(sermon.unknownFields.size(), 1u);
    EXPECT_EQ(sermon.unknownFields[0].first, "mood");
    Json written = encodeSermonNote(sermon);
    EXPECT_EQ(written["mood"].dump(), R"({"a":[1,true,null,2.5,"x",{"z":1,"b":2}]})");
    EXPECT_EQ(written["topics"][0]["colourScheme"], "warm");
    EXPECT_EQ(written["topics"][0]["subTopics"][0]["scriptures"][0]["audio"], false);
    EXPECT_EQ(decodeSermonNote(written), sermon);
}

TEST(SermonCoding, roundTripKeepsEveryField) {
    SermonNote sermon = decodeSermonNote(parsed(minimalSermon));
    sermon.series = "Romans";
    sermon.venue = "Main hall";
    sermon.notesRTFData = "{\\rtf1\0\xff}"s;
    sermon.textColorHex = "#336699";
    sermon.coverImageFileName = sermon.id.text() + "_cover.jpg";
    sermon.tags = {"grace", "hope"};
    sermon.topics[0].detailsRTFData = std::string("x");
    sermon.topics[0].subTopics[0].textColorHex = "#000000";
    std::string file = encodeSermonFile(sermon);
    EXPECT_EQ(decodeSermonFile(file), sermon);
    EXPECT_NE(file.find("\n  \"title\""), std::string::npos) << "pretty-printed";
}

TEST(SermonCoding, damagedFilesAreDecodingErrors) {
    for (std::string bytes : {std::string(""), std::string("{\"id\": "), std::string("[]"), std::string("\xff\xfe"),
                              std::string(minimalSermon).substr(0, 200)})
        EXPECT_THROW(decodeSermonFile(bytes), DecodingError) << bytes;
}

} // namespace
} // namespace quillon::model
