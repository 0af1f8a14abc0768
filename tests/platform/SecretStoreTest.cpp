#include "platform/SecretStore.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace quillon::platform {
namespace {

using testing::TemporaryFolder;
namespace fs = std::filesystem;

TEST(SecretStore, fileFallbackKeepsSecretsPerAccountReadableOnlyByTheOwner) {
    TemporaryFolder folder;
    auto file = folder / "secrets" / "io.veltra.qln.suite-mesh-pairing.json";
    {
        SecretStore store("io.veltra.qln.suite-mesh-pairing", file, SecretStore::Backend::fileOnly);
        EXPECT_FALSE(store.usesSecretService());
        EXPECT_FALSE(store.read("Brenmoor"));
        EXPECT_TRUE(store.write("Brenmoor", "one"));
        EXPECT_TRUE(store.write("Calvane.code", "123456"));
        EXPECT_TRUE(store.write("Brenmoor", "two"));
        EXPECT_TRUE(store.remove("Calvane.code"));
        EXPECT_TRUE(store.remove("never stored"));
    }
    SecretStore again("io.veltra.qln.suite-mesh-pairing", file, SecretStore::Backend::fileOnly);
    EXPECT_EQ(again.read("Brenmoor"), "two");
    EXPECT_FALSE(again.read("Calvane.code"));
    EXPECT_EQ(fs::status(file).permissions() & fs::perms::all, fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(file.parent_path()).permissions() & fs::perms::all, fs::perms::owner_all);
}

TEST(SecretStore, corruptFileReadsAsEmptyAndIsNeverOverwritten) {
    TemporaryFolder folder;
    auto file = folder.write("secrets/s.json", "{not json");
    SecretStore store("s", file, SecretStore::Backend::fileOnly);
    EXPECT_FALSE(store.read("a"));
    EXPECT_FALSE(store.write("a", "b")); // never overwrite what cannot be read: the user may still rescue it
    EXPECT_EQ(testing::readText(file), "{not json");
}

TEST(SecretStore, withoutASessionBusItFallsBackToTheFile) {
    TemporaryFolder folder;
    std::string oldAddress = std::getenv("DBUS_SESSION_BUS_ADDRESS") ? std::getenv("DBUS_SESSION_BUS_ADDRESS") : "";
    std::string oldRuntime = std::getenv("XDG_RUNTIME_DIR") ? std::getenv("XDG_RUNTIME_DIR") : "";
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    SecretStore store("s", folder / "s.json");
    EXPECT_FALSE(store.usesSecretService());
    EXPECT_TRUE(store.write("a", "b"));
    EXPECT_EQ(store.read("a"), "b");
    if (!oldAddress.empty())
        setenv("DBUS_SESSION_BUS_ADDRESS", oldAddress.c_str(), 1);
    if (!oldRuntime.empty())
        setenv("XDG_RUNTIME_DIR", oldRuntime.c_str(), 1);
    else
        unsetenv("XDG_RUNTIME_DIR");
}

} // namespace
} // namespace quillon::platform
