#include "LibraryRun.h"
#include "platform/Paths.h"
#include "platform/Preferences.h"
#include "platform/SecretStore.h"
#include "screens/OpenLpOptions.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

namespace quillon::cli {
namespace {

/// Feeds `text` to std::cin while alive, as a pipe into `quillon` would.
class ScopedInput {
public:
    explicit ScopedInput(const std::string& text) : m_input(text), m_previous(std::cin.rdbuf(m_input.rdbuf())) {}
    ~ScopedInput() { std::cin.rdbuf(m_previous); }
    ScopedInput(const ScopedInput&) = delete;
    ScopedInput& operator=(const ScopedInput&) = delete;

private:
    std::istringstream m_input;
    std::streambuf* m_previous;
};

class OpenLpLoginTest : public testing::LibraryRun {};

TEST_F(OpenLpLoginTest, KeepsTheUserInThePreferencesAndThePasswordAmongTheSecrets) {
    {
        ScopedInput input("s3cret pass\r\n");
        auto result = run({"mesh", "openlp-login", "--user", "worship"});
        ASSERT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out, "Quillon will log in to OpenLP as worship.\n");
    }
    platform::Preferences preferences(platform::preferencesFile());
    EXPECT_EQ(preferences.string("Quillon.screens.openlp.user"), "worship");
    const auto service = screens::OpenLpOptions::secretService();
    platform::SecretStore secrets(service, platform::SecretStore::defaultFallbackFile(service));
    EXPECT_EQ(secrets.read("worship"), "s3cret pass");

    auto withoutUser = run({"mesh", "openlp-login"});
    EXPECT_NE(withoutUser.status, 0);
}

} // namespace
} // namespace quillon::cli
