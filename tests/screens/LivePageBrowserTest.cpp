#include "screens/LivePageServer.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

namespace quillon::screens {
namespace {

std::filesystem::path chromium() {
    for (const char* candidate : {"/usr/bin/chromium", "/usr/bin/chromium-browser"})
        if (std::filesystem::exists(candidate))
            return candidate;
    return {};
}

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
    return run("timeout 40 " + chromium().string() +
               " --headless --no-sandbox --disable-gpu --no-first-run --hide-scrollbars" +
               " --user-data-dir=" + (folder / "profile").string() + " --window-size=1280,720" + " --timeout=5000 " +
               action + " '" + url + "' 2>/dev/null");
}

class LivePageBrowserTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (chromium().empty())
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
    const std::string page = browse(m_folder, "--dump-dom", m_server->url());
    EXPECT_NE(page.find(R"(data-state="live")"), std::string::npos) << page;
    EXPECT_NE(page.find(R"(<span id="reference">John 3:16</span>)"), std::string::npos) << page;
    EXPECT_NE(page.find("that he gave his only begotten Son"), std::string::npos);
    EXPECT_NE(page.find(R"(data-fit="whole")"), std::string::npos);
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
