#include "mesh/SuiteMeshPairingStore.h"
#include "platform/Preferences.h"
#include "platform/SecretStore.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillon::mesh {
namespace {

using testing::TemporaryFolder;

orvane::SuitePairing pairingWith(const std::string& name) {
    return {name, orvane::SuiteCapability::grantedAtPairing(), orvane::randomBytes(32), {}};
}

TEST(SuiteMeshPairingStore, aRunningDeskKeepsWhatOthersChangedMeanwhile) {
    TemporaryFolder folder;
    auto preferencesFile = folder / "preferences.json";
    platform::SecretStore secrets(SuiteMeshPairingStore::serviceName(), folder / "secrets.json",
                                  platform::SecretStore::Backend::fileOnly);
    // `mesh serve` reads the preferences once when it starts ...
    platform::Preferences serving(preferencesFile);
    SuiteMeshPairingStore servingStore(secrets, serving);
    // ... while the preacher pairs elsewhere and changes another setting.
    platform::Preferences elsewhere(preferencesFile);
    SuiteMeshPairingStore elsewhereStore(secrets, elsewhere);
    ASSERT_TRUE(elsewhereStore.save(pairingWith("Calvane")));
    elsewhere.set("Quillon.pace.proseWordsPerMinute", 150);

    ASSERT_TRUE(servingStore.save(pairingWith("Brenmoor")));
    platform::Preferences after(preferencesFile);
    EXPECT_EQ(after.stringList("Quillon.suiteMesh.pairedPeerNames"), (std::vector<std::string>{"Calvane", "Brenmoor"}));
    EXPECT_EQ(after.positiveNumber("Quillon.pace.proseWordsPerMinute", 0), 150);

    // Removing through the stale copy takes out only its own name.
    ASSERT_TRUE(servingStore.remove("Brenmoor"));
    EXPECT_EQ(platform::Preferences(preferencesFile).stringList("Quillon.suiteMesh.pairedPeerNames"),
              std::vector<std::string>{"Calvane"});
    EXPECT_FALSE(servingStore.pairing("Brenmoor"));
    EXPECT_TRUE(servingStore.pairing("Calvane"));
}

} // namespace
} // namespace quillon::mesh
