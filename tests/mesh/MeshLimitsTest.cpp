#include "mesh/MeshLimits.h"
#include "BridgeHarness.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

namespace quillon::mesh {
namespace {

using namespace std::chrono_literals;
using testing::BridgeHarness;
using testing::LogCapture;
using testing::residentBytes;
using testing::VantalinkTestPeer;
using Type = SermonStudioMessageType;

std::size_t countLines(const LogCapture& log, const std::string& text) {
    auto lines = log.lines();
    return static_cast<std::size_t>(std::count_if(
        lines.begin(), lines.end(), [&](const std::string& line) { return line.find(text) != line.npos; }));
}

bool answersRequests(VantalinkTestPeer& peer) {
    peer.send(Type::requestScripture);
    return peer.waitFor(Type::scriptureCleared).has_value();
}

TEST(MeshLimits, oneAddressCannotTakeEveryPlace) {
    LogCapture log;
    BridgeHarness harness;
    std::vector<std::unique_ptr<VantalinkTestPeer>> crowd;
    for (std::size_t i = 0; i < limits::maximumConnectionsPerAddress + 4; ++i)
        crowd.push_back(VantalinkTestPeer::connectPlain(harness.bridge->plainPort(), "127.0.0.66"));
    std::size_t served = 0, refused = 0;
    for (auto& peer : crowd)
        answersRequests(*peer) ? ++served : ++refused;
    EXPECT_EQ(served, limits::maximumConnectionsPerAddress);
    EXPECT_EQ(refused, 4u);
    EXPECT_EQ(countLines(log, "Refused connections from 127.0.0.66"), 1u);

    // Another machine is served, and a place freed at the crowded address is taken again.
    auto neighbour = VantalinkTestPeer::connectPlain(harness.bridge->plainPort(), "127.0.0.67");
    EXPECT_TRUE(answersRequests(*neighbour));
    crowd.front().reset();
    bool readmitted = false;
    for (int attempt = 0; attempt < 50 && !readmitted; ++attempt) {
        auto again = VantalinkTestPeer::connectPlain(harness.bridge->plainPort(), "127.0.0.66");
        readmitted = answersRequests(*again);
    }
    EXPECT_TRUE(readmitted);
}

TEST(MeshLimits, aFloodingPeerIsHeardAtTheAllowedRateOnly) {
    LogCapture log;
    BridgeHarness harness;
    auto flooder = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    flooder->hello("Flooder");
    std::string burst;
    auto next = SermonStudioMessage{Type::nextVerse, {}, {}}.frame();
    for (int i = 0; i < 3000; ++i)
        burst += next;
    flooder->sendRaw(burst);
    ASSERT_TRUE(std::invoke([&] {
        for (int i = 0; i < 200 && !log.contains("Dropping messages from Flooder"); ++i)
            std::this_thread::sleep_for(10ms);
        return log.contains("Dropping messages from Flooder: it sends more than 200 a second");
    }));
    std::this_thread::sleep_for(200ms);
    {
        std::lock_guard lock(harness.mutex);
        // The burst allowance and what refilled while the burst was read, far from all 3000.
        EXPECT_GE(harness.nextVerses, static_cast<int>(limits::messageBurst) - 10);
        EXPECT_LT(harness.nextVerses, 1000);
    }
    // The peer is not cut off: once it slows down it is heard again.
    std::this_thread::sleep_for(100ms);
    EXPECT_TRUE(answersRequests(*flooder));
    EXPECT_EQ(countLines(log, "Dropping messages from Flooder"), 1u);
}

TEST(MeshLimits, unfinishedBodiesShareOneBoundedPool) {
    LogCapture log;
    BridgeHarness harness;
    // Each announces the largest frame and sends most of it; three fit in the pool, the fourth does not.
    std::string header = frameHeader(maximumFrameLength);
    std::string part(8'500'000, 'x');
    std::vector<std::unique_ptr<VantalinkTestPeer>> senders;
    for (int i = 0; i < 4; ++i) {
        senders.push_back(VantalinkTestPeer::connectPlain(harness.bridge->plainPort()));
        senders.back()->sendRaw(header + part);
    }
    std::vector<std::unique_ptr<VantalinkTestPeer>> open;
    for (auto& sender : senders)
        if (!sender->waitForClose(500ms))
            open.push_back(std::move(sender));
    EXPECT_EQ(open.size(), 3u);
    EXPECT_TRUE(log.contains("its unfinished messages would take more memory than the desk holds for all peers"));
    // The others finish their frames (a body that is not a message is dropped, the link stays).
    for (auto& sender : open) {
        sender->sendRaw(std::string(maximumFrameLength - part.size(), 'x'));
        EXPECT_TRUE(answersRequests(*sender));
    }
    // Finished bodies gave their share back: a new peer can send the largest frame whole.
    auto another = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    another->sendRaw(header + std::string(maximumFrameLength, 'y'));
    EXPECT_TRUE(answersRequests(*another));
}

TEST(MeshLimits, headersAloneCostTheDeskNoMemory) {
    BridgeHarness harness;
    auto before = residentBytes();
    std::vector<std::unique_ptr<VantalinkTestPeer>> idle;
    for (int i = 0; i < 12; ++i) {
        idle.push_back(VantalinkTestPeer::connectPlain(harness.bridge->plainPort()));
        idle.back()->sendRaw(frameHeader(maximumFrameLength) + "{");
    }
    auto probe = VantalinkTestPeer::connectPlain(harness.bridge->plainPort());
    ASSERT_TRUE(answersRequests(*probe)); // every header above has been read by now
    // Reserving the announced lengths would take 120 MB.
    EXPECT_LT(residentBytes() - before, 20L * 1024 * 1024);
}

/// Lowers the descriptor limit for the scope of a test and restores it.
struct DescriptorLimit {
    rlimit saved{};
    explicit DescriptorLimit(rlim_t soft) {
        getrlimit(RLIMIT_NOFILE, &saved);
        rlimit lowered = saved;
        lowered.rlim_cur = soft;
        setrlimit(RLIMIT_NOFILE, &lowered);
    }
    ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &saved); }
};

TEST(MeshLimits, runningOutOfDescriptorsPausesAcceptingInsteadOfSpinning) {
    LogCapture log;
    BridgeHarness harness;
    // The client's socket exists before the table fills; only the desk's accept needs a new one.
    int client = ::socket(AF_INET, SOCK_STREAM, 0);
    std::vector<int> fillers;
    {
        DescriptorLimit limit(static_cast<rlim_t>(client) + 64);
        for (int fd; (fd = ::open("/dev/null", O_RDONLY)) >= 0;)
            fillers.push_back(fd);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(harness.bridge->plainPort());
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        ASSERT_EQ(::connect(client, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        rusage start{}, end{};
        getrusage(RUSAGE_SELF, &start);
        std::this_thread::sleep_for(600ms);
        getrusage(RUSAGE_SELF, &end);
        auto cpu = [](const rusage& usage) {
            return usage.ru_utime.tv_sec * 1e3 + usage.ru_utime.tv_usec / 1e3 + usage.ru_stime.tv_sec * 1e3 +
                   usage.ru_stime.tv_usec / 1e3;
        };
        EXPECT_LT(cpu(end) - cpu(start), 300.0); // a spinning accept loop burns all 600 ms
        for (int fd : fillers)
            ::close(fd);
    }
    EXPECT_EQ(countLines(log, "The Brenmoor/Calvane listener failed: "), 1u);
    // Once descriptors are free the waiting connection is taken and served.
    auto frame = SermonStudioMessage{Type::requestScripture, {}, {}}.frame();
    ASSERT_EQ(::send(client, frame.data(), frame.size(), MSG_NOSIGNAL), static_cast<ssize_t>(frame.size()));
    timeval five{5, 0};
    ::setsockopt(client, SOL_SOCKET, SO_RCVTIMEO, &five, sizeof five);
    std::string received;
    char buffer[4096];
    while (received.find("scriptureCleared") == std::string::npos) {
        auto got = ::recv(client, buffer, sizeof buffer, 0);
        if (got <= 0)
            break;
        received.append(buffer, static_cast<std::size_t>(got));
    }
    ::close(client);
    EXPECT_NE(received.find("scriptureCleared"), std::string::npos);
    EXPECT_TRUE(log.contains("The Brenmoor/Calvane listener accepts connections again"));
}

} // namespace
} // namespace quillon::mesh
