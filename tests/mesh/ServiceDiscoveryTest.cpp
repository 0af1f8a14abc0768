#include "mesh/ServiceDiscovery.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace quillon::mesh {
namespace {

using testing::LogCapture;

TEST(ServiceDiscovery, withoutADaemonDiscoveryIsOffAndSaidOnce) {
    testing::TemporaryFolder folder;
    std::string address = "unix:path=" + (folder / "no-bus-here").string();
    setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);
    LogCapture log;
    ServiceDiscovery first("Quillon");
    EXPECT_FALSE(first.start(4000, 4001, {}));
    ServiceDiscovery second("Quillon");
    EXPECT_FALSE(second.start(4000, 4001, {}));
    int mentions = 0;
    for (const auto& line : log.lines())
        mentions += line.find("Discovery is off") != std::string::npos;
    EXPECT_EQ(mentions, 1);
    unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

TEST(ServiceDiscovery, avahiBrowseSeesQuillonInsideAPrivateNamespace) {
    if (geteuid() != 0)
        GTEST_SKIP() << "creating a network namespace needs root";
    if (std::system("ip netns list >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "`ip netns` is not available here";
    for (const char* tool : {"avahi-daemon", "avahi-browse", "dbus-daemon"})
        if (std::system((std::string("command -v ") + tool + " >/dev/null 2>&1").c_str()) != 0)
            GTEST_SKIP() << tool << " is not installed";
    std::string command = std::string(QUILLON_DISCOVERY_SCRIPT) + " " + QUILLON_BINARY + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    ASSERT_TRUE(pipe);
    std::string output;
    std::array<char, 4096> buffer;
    while (auto read = fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), read);
    int status = pclose(pipe);
    EXPECT_EQ(status, 0) << output;
    EXPECT_NE(output.find(";Quillon;_vantalink._tcp;"), std::string::npos) << output;
}

} // namespace
} // namespace quillon::mesh
