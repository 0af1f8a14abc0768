#include "platform/Paths.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace quillon::platform {
namespace {

TEST(Paths, followXdgVariablesAndFallBackUnderHome) {
    setenv("HOME", "/home/preacher", 1);
    setenv("XDG_DATA_HOME", "/data", 1);
    setenv("XDG_CONFIG_HOME", "relative/is/ignored", 1);
    unsetenv("XDG_STATE_HOME");
    EXPECT_EQ(applicationDataFolder(), "/data/Quillon");
    EXPECT_EQ(preferencesFile(), "/home/preacher/.config/Quillon/preferences.json");
    EXPECT_EQ(logFile(), "/home/preacher/.local/state/Quillon/quillon.log");
}

} // namespace
} // namespace quillon::platform
