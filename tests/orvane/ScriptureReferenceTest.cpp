#include "orvane/ScriptureReference.h"

#include <gtest/gtest.h>

using orvane::ScriptureReference;

TEST(ScriptureReference, printsChapterVerseAndRange) {
    struct Row {
        ScriptureReference reference;
        const char* printed;
    };
    for (const Row& row :
         {Row{{"Psalms", 23, std::nullopt, std::nullopt}, "Psalms 23"}, Row{{"John", 3, 16, std::nullopt}, "John 3:16"},
          Row{{"John", 3, 16, 16}, "John 3:16"}, Row{{"John", 3, 16, 18}, "John 3:16-18"}})
        EXPECT_EQ(row.reference.description(), row.printed);
}

TEST(ScriptureReference, validityChecksItsOwnNumbers) {
    struct Row {
        ScriptureReference reference;
        bool valid;
    };
    for (const Row& row :
         {Row{{"John", 3, std::nullopt, std::nullopt}, true}, Row{{"John", 0, std::nullopt, std::nullopt}, false},
          Row{{"John", 3, std::nullopt, 5}, false}, Row{{"John", 3, 0, std::nullopt}, false},
          Row{{"John", 3, 16, 15}, false}, Row{{"John", 3, 16, 16}, true}, Row{{"John", 3, 16, 18}, true}})
        EXPECT_EQ(row.reference.isValid(), row.valid) << row.reference.description();
}

TEST(ScriptureReference, roundTripsThroughItsJSONKeys) {
    ScriptureReference range{"John", 3, 16, 18};
    auto json = orvane::encodeScriptureReference(range);
    EXPECT_EQ(json.dump(), R"({"book":"John","chapter":3,"startVerse":16,"endVerse":18})");
    EXPECT_EQ(orvane::decodeScriptureReference(json), range);

    ScriptureReference chapter{"Psalms", 23, std::nullopt, std::nullopt};
    EXPECT_EQ(orvane::encodeScriptureReference(chapter).dump(), R"({"book":"Psalms","chapter":23})");
    EXPECT_EQ(orvane::decodeScriptureReference(orvane::encodeScriptureReference(chapter)), chapter);

    for (const char* bad : {R"([])", R"({"chapter":3})", R"({"book":"John","chapter":"3"})",
                            R"({"book":"John","chapter":3,"startVerse":"16"})"})
        EXPECT_FALSE(orvane::decodeScriptureReference(nlohmann::ordered_json::parse(bad)).has_value()) << bad;
}
