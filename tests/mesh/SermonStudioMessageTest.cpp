#include "mesh/SermonStudioMessage.h"
#include "mesh/MeshScriptureReference.h"
#include "mesh/MeshSettings.h"
#include "platform/Preferences.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace std::string_literals;

namespace quillon::mesh {
namespace {

using namespace std::chrono_literals;
using Type = SermonStudioMessageType;

TEST(SermonStudioMessage, encodesTypePayloadAndSecondsSince2001) {
    auto time = std::chrono::sys_days{std::chrono::year{2001} / 1 / 2} + 30min;
    SermonStudioMessage message{Type::scriptureAnnouncement, {{"reference", "John 3:16"}}, time};
    auto json = nlohmann::json::parse(message.encode());
    EXPECT_DOUBLE_EQ(json["timestamp"].get<double>(), 86400 + 1800);
    auto back = SermonStudioMessage::decode(message.encode());
    ASSERT_TRUE(back);
    EXPECT_EQ(back->type, Type::scriptureAnnouncement);
    EXPECT_EQ(back->payload, message.payload);
    EXPECT_EQ(back->timestamp, message.timestamp);
}

// Siblings parse what we send with their own JSON readers; the body must stay the plain compact
// JSON they have always received, whatever the payload holds.
TEST(SermonStudioMessage, bodyIsCompactJsonWithEscapesAndRepairedText) {
    const std::vector<std::map<std::string, std::string>> payloads{
        {},
        {{"reference", "John 3:16"}, {"book", "John"}, {"text", std::string(70000, 'a')}},
        {{"quote\"d", "back\\slash\ttab\nline\r\b\f"}, {"ctl", "\x01\x1f\x7f nul "s + '\0'}},
        {{"text", "caf\xC3\xA9 \xF0\x9F\x98\x80 \xE2\x88\x91"}, {"broken", "\xff\xfe cut \xF0\x9F\x98"}},
    };
    for (const auto& payload : payloads) {
        SermonStudioMessage message{Type::toolResponse, payload, std::chrono::system_clock::time_point{1234567ms}};
        const nlohmann::json expected = {{"type", "toolResponse"},
                                         {"payload", payload},
                                         {"timestamp", secondsSinceReferenceDate(message.timestamp)}};
        EXPECT_EQ(message.encode(), expected.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
        EXPECT_EQ(message.frame(), frameHeader(static_cast<std::uint32_t>(message.encode().size())) + message.encode());
    }
}

TEST(SermonStudioMessage, everyTypeRoundTripsAndUnknownNamesDecodeAsUnknown) {
    const char* names[] = {"hello",
                           "heartbeat",
                           "studioStatus",
                           "requestScripture",
                           "nextVerse",
                           "previousVerse",
                           "scriptureAnnouncement",
                           "scriptureCleared",
                           "scriptureDisplayed",
                           "scriptureFaded",
                           "pairChallenge",
                           "pairResponse",
                           "pairRejected",
                           "pairAccepted",
                           "toolRequest",
                           "toolResponse",
                           "unknown"};
    for (std::size_t i = 0; i < std::size(names); ++i) {
        EXPECT_EQ(rawValue(static_cast<Type>(i)), names[i]);
        EXPECT_EQ(messageTypeFromRawValue(names[i]), static_cast<Type>(i));
    }
    for (const char* other : {"Hello", "", "sing", "scripture"})
        EXPECT_EQ(messageTypeFromRawValue(other), Type::unknown) << other;
}

TEST(SermonStudioMessage, bodiesThatDoNotDecode) {
    for (const char* body :
         {"", "{not json", "[]", R"({"payload":{}})", R"({"type":7,"payload":{}})", R"({"type":"hello"})",
          R"({"type":"hello","payload":{"n":1}})", R"({"type":"hello","payload":{},"timestamp":"yesterday"})"})
        EXPECT_FALSE(SermonStudioMessage::decode(body)) << body;
    auto minimal = SermonStudioMessage::decode(R"({"type":"nextVerse","payload":{}})");
    ASSERT_TRUE(minimal);
    EXPECT_EQ(minimal->type, Type::nextVerse);
}

TEST(SermonStudioMessage, frameLengthsOutsideOneToTenMillionAreRefused) {
    struct Case {
        std::uint32_t length;
        bool accepted;
    };
    for (const Case& c :
         {Case{0, false}, Case{1, true}, Case{10'000'000, true}, Case{10'000'001, false}, Case{0xffffffffu, false}}) {
        std::string header = frameHeader(c.length);
        unsigned char bytes[4];
        std::copy(header.begin(), header.end(), bytes);
        EXPECT_EQ(acceptedFrameLength(bytes).has_value(), c.accepted) << c.length;
        if (c.accepted) {
            EXPECT_EQ(*acceptedFrameLength(bytes), c.length);
        }
    }
    EXPECT_EQ(frameHeader(0x01020304), "\x01\x02\x03\x04"s);
}

TEST(MeshScriptureReference, readsPayloadFieldsOrThePrintedReference) {
    using Ref = MeshScriptureReference;
    using Payload = std::map<std::string, std::string>;
    struct Case {
        Payload payload;
        std::optional<Ref> expected;
    };
    for (const Case& c : {
             Case{{{"book", "John"}, {"chapter", "3"}, {"startVerse", "16"}}, Ref{"John", 3, 16, std::nullopt}},
             Case{{{"book", "John"}, {"chapter", "3"}, {"startVerse", "16"}, {"endVerse", "18"}},
                  Ref{"John", 3, 16, 18}},
             Case{{{"book", "Psalms"}, {"chapter", "23"}, {"reference", "ignored 1"}}, Ref{"Psalms", 23, {}, {}}},
             Case{{{"reference", "1 John 4:8"}}, Ref{"1 John", 4, 8, std::nullopt}},
             Case{{{"reference", "jn 3:16-18"}}, Ref{"John", 3, 16, 18}},
             Case{{{"reference", "Hezekiah 3:1"}}, std::nullopt},
             Case{{{"reference", "Song of Solomon 2:1-4"}}, Ref{"Song of Solomon", 2, 1, 4}},
             Case{{{"book", "John"}, {"chapter", "0"}}, std::nullopt},
             Case{{{"book", "John"}, {"chapter", "3"}, {"startVerse", "18"}, {"endVerse", "16"}}, std::nullopt},
             Case{{{"book", "John"}, {"chapter", "3"}, {"endVerse", "16"}}, std::nullopt},
             Case{{{"book", "John"}, {"chapter", "three"}}, std::nullopt},
             Case{{{"reference", "John"}}, std::nullopt},
             // A peer that prints its range with an en dash is read like a preacher's paste.
             Case{{{"reference", "John 3:16\xe2\x80\x93"
                                 "18"}},
                  Ref{"John", 3, 16, 18}},
             Case{{}, std::nullopt},
         })
        EXPECT_EQ(Ref::fromPayload(c.payload), c.expected) << nlohmann::json(c.payload).dump();
    EXPECT_EQ((Ref{"John", 3, 16, 16}).description(), "John 3:16");
    EXPECT_EQ((Ref{"John", 3, 16, 18}).description(), "John 3:16-18");
    EXPECT_EQ((Ref{"Psalms", 23, {}, {}}).description(), "Psalms 23");
}

TEST(MeshSettings, preferencesWithTheirDefaults) {
    auto preferences = platform::Preferences::inMemory();
    auto defaults = MeshSettings::fromPreferences(preferences);
    EXPECT_EQ(defaults.tlsHandshakeTimeout, 10s);
    EXPECT_EQ(defaults.pairingWindow, 120s);
    EXPECT_EQ(defaults.port, 0);
    EXPECT_FALSE(defaults.calvaneAddress);
    preferences.set("vantalink.tlsHandshakeTimeoutSeconds", 0.5);
    preferences.set("Quillon.suiteMesh.pairingWindowSeconds", -3);
    preferences.set("vantalink.port", 47000);
    preferences.set("vantalink.tlsPort", 70000);
    preferences.set("vantalink.calvaneAddress", "192.168.1.4:8080");
    preferences.set("vantalink.requireEncrypted", true);
    preferences.set("Quillon.suiteMesh.requirePairing", true);
    auto set = MeshSettings::fromPreferences(preferences);
    EXPECT_EQ(set.tlsHandshakeTimeout, 500ms);
    EXPECT_EQ(set.pairingWindow, 120s);
    EXPECT_EQ(set.port, 47000);
    EXPECT_EQ(set.tlsPort, 0);
    EXPECT_EQ(set.calvaneAddress, "192.168.1.4:8080");
    EXPECT_TRUE(set.requireEncrypted && set.requirePairing);
    EXPECT_EQ(secondsText(10s), "10");
    EXPECT_EQ(secondsText(300ms), "0.3");
}

} // namespace
} // namespace quillon::mesh
