#include "screens/ScreenOutlets.h"
#include "StubOpenLp.h"
#include "mesh/ScriptureBridge.h"
#include "mesh/SuiteMeshPairingStore.h"
#include "platform/Preferences.h"
#include "platform/SecretStore.h"
#include "screens/OpenLpOptions.h"
#include "screens/OutletWording.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace quillon::screens {
namespace {

bool eventually(const std::function<bool()>& condition) {
    for (int i = 0; i < 250 && !condition(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return condition();
}

// Whoever announces on the bridge (the command line, the desktop's "Send to Screen") reaches
// the outlets: they hang on the bridge, not on any one caller.
TEST(ScreenOutlets, EveryAnnounceAndClearOnTheBridgeReachesTheOutletsThePreferencesSwitchOn) {
    testing::TemporaryFolder folder;
    testing::StubOpenLp openLp;
    openLp.requireLogin("worship", "s3cret");
    platform::SecretStore pairingSecrets("pairing", folder / "pairing.json", platform::SecretStore::Backend::fileOnly);
    platform::SecretStore openLpSecrets(OpenLpOptions::secretService(), folder / "openlp.json",
                                        platform::SecretStore::Backend::fileOnly);
    ASSERT_TRUE(openLpSecrets.write("worship", "s3cret"));
    auto preferences = platform::Preferences::inMemory();
    preferences.set("Quillon.screens.openlp", true);
    preferences.set("Quillon.screens.openlp.address", openLp.address());
    preferences.set("Quillon.screens.openlp.user", "worship");
    preferences.set("Quillon.screens.livePage", true);
    preferences.set("Quillon.screens.livePage.port", 0);
    mesh::SuiteMeshPairingStore pairings(pairingSecrets, preferences);
    mesh::SerialExecutor main;
    mesh::ScriptureBridge bridge({}, pairings, main.executor());

    ScreenOutletChoices choices;
    choices.livePagePort = 0;
    auto hub = attachScreenOutlets(bridge, preferences, choices, &openLpSecrets);
    const auto statuses = hub->statuses();
    ASSERT_EQ(statuses.size(), 2u);
    EXPECT_EQ(statuses[0].name, "live page");
    EXPECT_EQ(statuses[1].name, "OpenLP");

    bridge.announce({"John 3:16", "John", "KJV", "For God so loved the world"});
    ASSERT_TRUE(eventually([&] { return openLp.lives().size() == 1; })) << outletStatusLine(hub->statuses()[1]);
    EXPECT_EQ(openLp.lives()[0], "King James Version|John 3:16");
    bridge.clear();
    EXPECT_TRUE(eventually([&] { return openLp.displays() == std::vector<std::string>{"theme"}; }));

    // Without the hub the bridge announces as before.
    hub.reset();
    bridge.announce({"Psalms 23:1", "Psalms", "KJV", "The Lord is my shepherd"});
    EXPECT_EQ(bridge.liveReference()->reference, "Psalms 23:1");
}

TEST(OutletWording, StatusLineHeadlineAndDetailsSayTheSameState) {
    struct Case {
        OutletStatus status;
        std::string line;
        std::string headline;
        std::vector<std::string> details;
    };
    const std::string page = "http://127.0.0.1:7316/";
    const std::vector<Case> cases = {
        {{"live page", {"serving", page + " (1 open)", false, page, {}}},
         "live page: serving http://127.0.0.1:7316/ (1 open)",
         "live page: serving",
         {}},
        // While failing, the reason is in the line and not repeated as the last failure.
        {{"OpenLP", {"failing", "no answer to its list of Bibles", true, "127.0.0.1:4316", "no answer"}},
         "OpenLP: failing: no answer to its list of Bibles",
         "OpenLP: failing",
         {"at 127.0.0.1:4316"}},
        {{"OpenLP", {"showing", "John 3:16 from King James Version", false, "127.0.0.1:4316", "HTTP 500"}},
         "OpenLP: showing John 3:16 from King James Version",
         "OpenLP: showing",
         {"at 127.0.0.1:4316", "last failure: HTTP 500"}},
        {{"BibleSync", {"off", {}, false, {}, {}}}, "BibleSync: off", "BibleSync: off", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        EXPECT_EQ(outletStatusLine(c.status), c.line);
        EXPECT_EQ(outletHeadline(c.status), c.headline);
        EXPECT_EQ(outletDetails(c.status), c.details);
    }
}

TEST(ScreenOutlets, NothingSwitchedOnMeansNoOutlets) {
    testing::TemporaryFolder folder;
    platform::SecretStore secrets("pairing", folder / "pairing.json", platform::SecretStore::Backend::fileOnly);
    auto preferences = platform::Preferences::inMemory();
    mesh::SuiteMeshPairingStore pairings(secrets, preferences);
    mesh::SerialExecutor main;
    mesh::ScriptureBridge bridge({}, pairings, main.executor());
    auto hub = attachScreenOutlets(bridge, preferences);
    EXPECT_TRUE(hub->empty());
    bridge.announce({"John 3:16", "John", "KJV", "text"});
}

} // namespace
} // namespace quillon::screens
