#include "PrivateNetwork.h"
#include "mesh/ScriptureBridge.h"
#include "mesh/SuiteMeshPairingStore.h"
#include "platform/Preferences.h"
#include "platform/SecretStore.h"
#include "screens/BibleSyncOutlet.h"
#include "screens/OsisReference.h"
#include "screens/OutletWording.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

// Last: the library's header defines macros and opens namespace std (see BibleSyncOutlet.cpp).
#include <biblesync/biblesync.hh>
#undef min
#undef _

namespace quillon::screens {
namespace {

using testing::LogCapture;

TEST(OsisReference, WritesPrintedReferencesTheWayBiblePrograms) {
    struct Case {
        std::string printed;
        std::optional<std::string> osis;
    };
    const std::vector<Case> cases = {
        {"John 3:16", "John.3.16"},
        {"John 3:16-18", "John.3.16-John.3.18"},
        {"Psalms 23", "Ps.23"},
        {"1 Corinthians 13:4-7", "1Cor.13.4-1Cor.13.7"},
        {"Song of Solomon 2:1", "Song.2.1"},
        {"Revelation 22:21", "Rev.22.21"},
        {"not a reference", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.printed);
        EXPECT_EQ(osisReference(c.printed), c.osis);
    }
}

TEST(OsisReference, ReadsTheFirstPassageOfWhatBibleProgramsSendAndNothingElse) {
    struct Case {
        std::string sent;
        std::optional<std::string> read;
    };
    const std::vector<Case> cases = {
        {"John.3.16", "John 3:16"},
        {"John.3.16-John.3.18", "John 3:16-18"},
        {"John.3.16-18", "John 3:16-18"},
        {"John.3.16-3.18", "John 3:16-18"},
        {"John.3.36-John.4.2", "John 3:36"},
        {"Ps.23", "Psalms 23"},
        {"1Cor.13.4", "1 Corinthians 13:4"},
        {"Rom.8.28;Rom.8.31", "Romans 8:28"},
        {"Rom.8.28,31", "Romans 8:28"},
        {"Gen.1.1 Gen.2.1", "Genesis 1:1"},
        {"John 3:16", "John 3:16"},
        {"Matt.5.3", "Matthew 5:3"},
        {"Xyz.1.1", std::nullopt},
        {"John", std::nullopt},
        {"John.0.1", std::nullopt},
        {"John.3.16.1.1", std::nullopt},
        {"John.3.x", std::nullopt},
        {"John.3.16-Rom.1.1-2", std::nullopt},
        {"John.99999999999999.1", std::nullopt},
        {"....----;;;", std::nullopt},
        {"", std::nullopt},
        {std::string(5000, 'J'), std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sent.substr(0, 40));
        auto read = referenceFromOsis(c.sent);
        EXPECT_EQ(read ? std::optional(read->description()) : std::nullopt, c.read);
    }
}

TEST(BibleSyncOptions, TrustsListedNamesAndAddressesOnly) {
    BibleSyncOptions options;
    options.trustedSpeakers = {"Pastor's Xiphos", "10.0.0.7", ""};
    EXPECT_TRUE(options.trusts("pastor's xiphos", "10.0.0.9"));
    EXPECT_TRUE(options.trusts("anyone", "10.0.0.7"));
    EXPECT_FALSE(options.trusts("Pastor", "10.0.0.70"));
    EXPECT_FALSE(options.trusts("", ""));
    EXPECT_FALSE(BibleSyncOptions{}.trusts("Quillon", "127.0.0.1"));
}

// MARK: two endpoints in a private network

struct Heard {
    std::string bible;
    std::string reference;
    std::string alternative;
};
std::vector<Heard> g_heard;
/// Speakers the programs have heard beacons from, by user name.
std::vector<std::string> g_speakersHeard;
/// The program whose packets are being read: the library's callback carries no context.
::BibleSync* g_polling = nullptr;

void listenerNavigation(char command, string speakerKey, string bible, string reference, string alternative, string,
                        string, string, string) {
    if (command == 'S' && g_polling) {
        g_polling->listenToSpeaker(true, speakerKey); // a program that follows everyone it hears
        g_speakersHeard.push_back(bible);
    }
    if (command == 'N')
        g_heard.push_back({bible, reference, alternative});
}

/// A Bible program on the same network (Xiphos, BibleTime), driven by the test's thread.
class BibleProgram {
public:
    explicit BibleProgram(const std::string& user) : m_sync("Xiphos", "4.2", user) {
        m_sync.setBeaconCount(3);
        m_joined = m_sync.setMode(BSP_MODE_PERSONAL, listenerNavigation, "BibleSync") == BSP_MODE_PERSONAL;
    }
    ~BibleProgram() { m_sync.setMode(BSP_MODE_DISABLE); }
    bool joined() const { return m_joined; }
    void poll() {
        g_polling = &m_sync;
        ::BibleSync::Receive(&m_sync);
        g_polling = nullptr;
    }
    void turnTo(const std::string& reference) { m_sync.Transmit("KJV", reference); }

private:
    ::BibleSync m_sync;
    bool m_joined = false;
};

/// Polls the programs every 50 ms (their beacons go out while they poll) until `done`, for up to 5 s.
bool pollUntil(std::vector<BibleProgram*> programs, const std::function<bool()>& done) {
    for (int i = 0; i < 100; ++i) {
        for (auto* program : programs)
            program->poll();
        if (done())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return done();
}

/// A desk whose bridge records what it is asked to focus; the bridge is not started, since the
/// outside references take the same path to the editor either way.
struct Desk {
    Desk()
        : secrets("test", folder / "secrets.json", platform::SecretStore::Backend::fileOnly),
          pairings(secrets, preferences), bridge({}, pairings, main.executor()) {
        bridge.onIncomingScripture = [this](const mesh::MeshScriptureReference& reference,
                                            const mesh::SermonStudioMessage& message) {
            std::lock_guard lock(mutex);
            focused.push_back(reference.description() + " from " + message.payload.at("source"));
        };
    }
    std::vector<std::string> focusedSoFar() {
        main.drain();
        std::lock_guard lock(mutex);
        return focused;
    }
    BibleSyncOutlet outlet(std::vector<std::string> trusted) {
        BibleSyncOptions options;
        options.enabled = true;
        options.user = "Pulpit";
        options.trustedSpeakers = std::move(trusted);
        options.pollInterval = std::chrono::milliseconds(50);
        return BibleSyncOutlet(options, [this](const std::string& speaker, const mesh::MeshScriptureReference& ref) {
            bridge.receiveOutsideReference("BibleSync " + speaker, ref);
        });
    }

    testing::TemporaryFolder folder;
    platform::SecretStore secrets;
    platform::Preferences preferences = platform::Preferences::inMemory();
    mesh::SuiteMeshPairingStore pairings;
    mesh::SerialExecutor main;
    mesh::ScriptureBridge bridge;
    std::mutex mutex;
    std::vector<std::string> focused;
};

int linesWith(const LogCapture& log, const std::string& text) {
    int count = 0;
    for (const auto& line : log.lines())
        count += line.find(text) != std::string::npos;
    return count;
}

TEST(BibleSyncOutlet, AnnouncesToListenersAndFollowsOnlyTrustedSpeakers) {
    testing::PrivateNetwork network;
    if (!network.available())
        GTEST_SKIP() << network.why();
    LogCapture log;
    Desk desk;
    auto outlet = desk.outlet({"Study Desk"});
    ASSERT_TRUE(outlet.start()) << outletStateSentence(outlet.state());
    BibleProgram trusted("Study Desk");
    BibleProgram stranger("Stranger");
    ASSERT_TRUE(trusted.joined() && stranger.joined());
    g_speakersHeard.clear();
    ASSERT_TRUE(pollUntil({&trusted, &stranger}, [&] {
        return log.contains("following speaker \"Study Desk\"") && log.contains("not following speaker \"Stranger\"") &&
               std::count(g_speakersHeard.begin(), g_speakersHeard.end(), "Pulpit") == 2;
    }));

    g_heard.clear();
    outlet.show({"John 3:16-18", "John", "KJV", "For God so loved the world"});
    ASSERT_TRUE(pollUntil({&trusted, &stranger}, [&] { return g_heard.size() >= 2; }));
    EXPECT_EQ(g_heard[0].bible, "KJV");
    EXPECT_EQ(g_heard[0].reference, "John.3.16-John.3.18");
    EXPECT_EQ(g_heard[0].alternative, "John 3:16-18");
    EXPECT_TRUE(outletStateSentence(outlet.state()).find("sent John 3:16-18") != std::string::npos)
        << outletStateSentence(outlet.state());

    for (int i = 0; i < 3; ++i)
        stranger.turnTo("Gen.1.1");
    trusted.turnTo("Rom.8.28");
    ASSERT_TRUE(pollUntil({&trusted, &stranger}, [&] { return !desk.focusedSoFar().empty(); }));
    std::this_thread::sleep_for(std::chrono::milliseconds(150)); // anything else would have come by now
    EXPECT_EQ(desk.focusedSoFar(), std::vector<std::string>{"Romans 8:28 from BibleSync Study Desk"});
    EXPECT_EQ(desk.bridge.incomingReference()->description(), "Romans 8:28");
    // The library drops the stranger's navigation once told not to follow it; it is named once.
    EXPECT_EQ(linesWith(log, "not following speaker \"Stranger\""), 1);
}

TEST(BibleSyncOutlet, MalformedAndOversizedPacketsAreDroppedAndTheDeskKeepsFollowing) {
    testing::PrivateNetwork network;
    if (!network.available())
        GTEST_SKIP() << network.why();
    LogCapture log;
    Desk desk;
    auto outlet = desk.outlet({"Study Desk"});
    ASSERT_TRUE(outlet.start()) << outletStateSentence(outlet.state());
    BibleProgram trusted("Study Desk");
    ASSERT_TRUE(pollUntil({&trusted}, [&] { return log.contains("following speaker \"Study Desk\""); }));

    const int sender = socket(AF_INET, SOCK_DGRAM, 0);
    ASSERT_GE(sender, 0);
    in_addr loopback{};
    inet_pton(AF_INET, "127.0.0.1", &loopback);
    setsockopt(sender, IPPROTO_IP, IP_MULTICAST_IF, &loopback, sizeof loopback);
    sockaddr_in group{};
    group.sin_family = AF_INET;
    group.sin_port = htons(BSP_PORT);
    inet_pton(AF_INET, BSP_MULTICAST, &group.sin_addr);
    std::string header(32, '\0');
    const uint32_t magic = htonl(0x409CAF11);
    std::memcpy(header.data(), &magic, 4);
    header[4] = 3;
    header[5] = 2;
    const std::vector<std::string> packets = {
        "garbage",
        header,
        header + "msg.sync.verse=John.3.16\n" + std::string(60'000, 'x'),
        header + "app.name\nno equals sign\n\n",
        std::string(1500, '\xff'),
    };
    for (const auto& packet : packets)
        sendto(sender, packet.data(), packet.size(), 0, reinterpret_cast<const sockaddr*>(&group), sizeof group);
    close(sender);

    trusted.turnTo("Ps.23.1");
    ASSERT_TRUE(pollUntil({&trusted}, [&] { return !desk.focusedSoFar().empty(); }));
    EXPECT_EQ(desk.focusedSoFar(), std::vector<std::string>{"Psalms 23:1 from BibleSync Study Desk"});
    EXPECT_LE(linesWith(log, "warning: BibleSync packets"), 1);
}

} // namespace
} // namespace quillon::screens
