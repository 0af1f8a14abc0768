#include "HeadlessBrowser.h"
#include "screens/LivePageServer.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <thread>

namespace quillon::screens {
namespace {

using testing::HeadlessBrowser;

std::string run(const std::string& command) {
    std::string output;
    if (FILE* pipe = popen(command.c_str(), "r")) {
        std::array<char, 4096> chunk{};
        while (std::size_t size = fread(chunk.data(), 1, chunk.size(), pipe))
            output.append(chunk.data(), size);
        pclose(pipe);
    }
    return output;
}

/// Headless Chromium with a profile of its own; `action` is "--dump-dom" or "--screenshot=…".
std::string browse(const testing::TemporaryFolder& folder, const std::string& action, const std::string& url) {
    return run("timeout 40 " + HeadlessBrowser::executable().string() +
               " --headless --no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking" +
               " --disable-component-update --disable-sync --hide-scrollbars" +
               " --user-data-dir=" + (folder / "profile").string() + " --window-size=1280,720" + " --timeout=5000 " +
               action + " '" + url + "' 2>/dev/null");
}

/// The passage as the open page shows it, once `condition` (script over the passage element
/// `p`) holds, or after five seconds.
std::optional<nlohmann::json> shownWhen(HeadlessBrowser& browser, const std::string& condition) {
    return browser.evaluate(R"(new Promise(resolve => {
  const p = document.getElementById('passage');
  const shown = () => ({state: p.dataset.state, reference: document.getElementById('reference').textContent,
                        version: document.getElementById('version').textContent,
                        text: document.getElementById('text').textContent});
  const holds = () => )" + condition +
                            R"(;
  if (holds()) return resolve(shown());
  const observer = new MutationObserver(() => { if (holds()) { observer.disconnect(); resolve(shown()); } });
  observer.observe(p, {subtree: true, childList: true, characterData: true, attributes: true});
  setTimeout(() => { observer.disconnect(); resolve(shown()); }, 5000);
}))");
}

template <typename Condition>
bool eventually(Condition condition, std::chrono::milliseconds timeout = std::chrono::seconds(20)) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

class LivePageBrowserTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (HeadlessBrowser::executable().empty())
            GTEST_SKIP() << "Chromium is not installed";
        LivePageOptions options;
        options.port = 0;
        options.token = "browsertoken";
        options.themeFile = m_folder / "theme.json";
        m_server = std::make_unique<LivePageServer>(options);
        ASSERT_TRUE(m_server->start());
    }

    testing::TemporaryFolder m_folder;
    std::unique_ptr<LivePageServer> m_server;
};

TEST_F(LivePageBrowserTest, PageShowsTheLivePassageAndFollowsTheStream) {
    m_server->show({"John 3:16", "John", "KJV", "For God so loved the world, that he gave his only begotten Son"});
    HeadlessBrowser browser(m_folder / "profile");
    ASSERT_TRUE(browser.open(m_server->url())) << "Chromium did not open the page";
    // The page is served with the passage live when it loads.
    const auto first = shownWhen(browser, "p.dataset.state === 'live'");
    ASSERT_TRUE(first);
    EXPECT_EQ((*first)["reference"], "John 3:16") << first->dump();
    EXPECT_NE((*first)["text"].get<std::string>().find("only begotten Son"), std::string::npos);
    // Only what arrives through the page's open event stream can bring the next passage.
    ASSERT_TRUE(eventually([&] { return m_server->streamCount() >= 1; })) << "the page opened no event stream";

    m_server->show({"Psalms 23:1", "Psalms", "ESV", "The Lord is my shepherd; I shall not want."});
    const auto second = shownWhen(browser, "document.getElementById('reference').textContent === 'Psalms 23:1'");
    ASSERT_TRUE(second);
    EXPECT_EQ((*second)["reference"], "Psalms 23:1") << second->dump();
    EXPECT_EQ((*second)["version"], "ESV");
    EXPECT_EQ((*second)["text"], "The Lord is my shepherd; I shall not want.");
    EXPECT_EQ((*second)["state"], "live");

    m_server->clear();
    const auto cleared = shownWhen(browser, "p.dataset.state === 'clear'");
    ASSERT_TRUE(cleared);
    EXPECT_EQ((*cleared)["state"], "clear") << cleared->dump();
    EXPECT_EQ((*cleared)["reference"], "");
}

TEST_F(LivePageBrowserTest, LongPassageIsShrunkOrSplitNeverClipped) {
    std::string words;
    for (int i = 0; i < 40; ++i)
        words += "And the LORD spake unto Moses, saying, Speak unto the children of Israel. ";
    m_server->show({"Leviticus 1:1-40", "Leviticus", "KJV", words});
    const std::string lowerThird = browse(m_folder, "--dump-dom", m_server->url());
    EXPECT_NE(lowerThird.find(R"(data-fit="split")"), std::string::npos) << lowerThird;
    EXPECT_NE(lowerThird.find(R"(<span id="part">(1/)"), std::string::npos);

    m_server->show({"Psalm 117:1-2", "Psalms", "KJV", words.substr(0, 220)});
    const std::string shrunk = browse(m_folder, "--dump-dom", m_server->url());
    EXPECT_NE(shrunk.find(R"(data-fit="shrunk")"), std::string::npos) << shrunk;

    const auto screenshot = m_folder / "confidence.png";
    browse(m_folder, "--screenshot=" + screenshot.string(),
           "http://127.0.0.1:" + std::to_string(m_server->port()) + "/confidence?token=browsertoken");
    ASSERT_TRUE(std::filesystem::exists(screenshot));
    EXPECT_GT(std::filesystem::file_size(screenshot), 1000u);
}

} // namespace
} // namespace quillon::screens
