#include "BridgeHarness.h"
#include "mesh/VantalinkPsk.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <sys/wait.h>

namespace quillon::mesh {
namespace {

using testing::BridgeHarness;

struct Run {
    int status;
    std::string output;
};

Run opensslClient(std::uint16_t port, const std::string& keyHex, const std::string& identity) {
    std::string command = "timeout 20 openssl s_client -connect 127.0.0.1:" + std::to_string(port) + " -psk " + keyHex +
                          " -psk_identity '" + identity + "' -tls1_2 </dev/null 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    std::array<char, 4096> buffer;
    while (auto read = fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), read);
    int status = pclose(pipe);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

TEST(OpenSslClient, completesTheHandshakeWithTheRightKeyOnly) {
    BridgeHarness harness;
    auto secret = harness.pair("Brenmoor");
    std::string identity = VantalinkPsk::identity(secret);
    ASSERT_EQ(identity.size(), 16u);

    auto right = opensslClient(harness.bridge->securePort(), orvane::hexEncode(VantalinkPsk::key(secret)), identity);
    EXPECT_EQ(right.status, 0) << right.output;
    EXPECT_NE(right.output.find("Cipher is PSK-AES128-GCM-SHA256"), std::string::npos) << right.output;
    EXPECT_EQ(right.output.find("alert"), std::string::npos) << right.output;

    auto wrong = opensslClient(harness.bridge->securePort(), orvane::hexEncode(orvane::randomBytes(32)), identity);
    EXPECT_NE(wrong.status, 0) << wrong.output;
    // s_client prints the negotiated suite even when the server then refuses the Finished message.
    EXPECT_NE(wrong.output.find("alert bad record mac"), std::string::npos) << wrong.output;
    auto status = harness.waitForEvent(MeshEvent::Kind::tlsStatus);
    ASSERT_TRUE(status);
}

} // namespace
} // namespace quillon::mesh
