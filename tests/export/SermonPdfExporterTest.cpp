#include "ExportTestSupport.h"

#include "export/SermonPdfExporter.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <regex>
#include <sstream>

namespace quillon::exports {

namespace {

std::string runCommand(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    char buffer[4096];
    for (std::size_t n; pipe && (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, n);
    if (pipe)
        pclose(pipe);
    return output;
}

} // namespace

TEST(SermonPdfExporter, printsTheOutlineOnLetterPagesWithPageNumbers) {
    testing::TemporaryFolder folder;
    testing::FixedVerses verses;
    verses.texts["KJV John 3:16"] = "For God so loved the world";
    auto sermon = testing::largeSermon(12);
    sermon.topics[0].subTopics[0].scriptures[0] = testing::scripture("John", 3, 16, 16);
    const auto file = SermonPdfExporter(verses).exportSermon(sermon, folder.path());
    EXPECT_EQ(file.filename(), "A Long Series Sermon.pdf");

    const std::string info = runCommand("pdfinfo '" + file.string() + "'");
    EXPECT_TRUE(std::regex_search(info, std::regex(R"(Page size:\s+612 x 792 pts)"))) << info;
    EXPECT_TRUE(std::regex_search(info, std::regex(R"(Title:\s+A Long Series Sermon)"))) << info;
    std::smatch pages;
    ASSERT_TRUE(std::regex_search(info, pages, std::regex(R"(Pages:\s+(\d+))")));
    const int pageCount = std::stoi(pages[1].str());
    EXPECT_GT(pageCount, 2);

    const std::string text = runCommand("pdftotext -layout '" + file.string() + "' -");
    for (const std::string& expected :
         std::vector<std::string>{"A Long Series Sermon", "Speaker: Ada Preacher", "I. Main point 1",
                                  "A. Sub-point 1.1", "John 3:16 (KJV)", "For God so loved the world",
                                  "Psalms 23:1-6 (ASV)", "The ASV text is not available in this Bible library.",
                                  "XII. Main point 12", "Page 1 of " + std::to_string(pageCount)})
        EXPECT_NE(text.find(expected), std::string::npos) << expected;

    // Every word stays inside the 0.75-inch (54 pt) margins.
    const std::string boxes = runCommand("pdftotext -bbox '" + file.string() + "' -");
    const std::regex word(R"#(xMin="([\d.]+)" yMin="([\d.]+)" xMax="([\d.]+)" yMax="([\d.]+)")#");
    int words = 0;
    for (auto it = std::sregex_iterator(boxes.begin(), boxes.end(), word); it != std::sregex_iterator(); ++it) {
        ++words;
        EXPECT_GE(std::stod((*it)[1].str()), 53.5);
        EXPECT_LE(std::stod((*it)[3].str()), 612 - 53.5);
        EXPECT_GE(std::stod((*it)[2].str()), 26.0); // the footer sits in the bottom margin
        EXPECT_LE(std::stod((*it)[4].str()), 792 - 20.0);
    }
    EXPECT_GT(words, 500);
}

TEST(SermonPdfExporter, printsBadInputWithoutFailing) {
    testing::FixedVerses verses;
    model::SermonNote sermon;
    sermon.title = std::string("\x01\xFF bad <&> \xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xF0\x9F\x99\x8F");
    sermon.notes = std::string(10000, 'w');
    const std::string pdf = SermonPdfExporter(verses).render(sermon);
    EXPECT_TRUE(pdf.starts_with("%PDF-"));
    EXPECT_NE(SermonPdfExporter(verses).render(model::SermonNote{}).find("%%EOF"), std::string::npos);
}

TEST(SermonPdfExporter, neverLeavesAHeadingAloneAtTheFootOfAPage) {
    testing::FixedVerses verses;
    verses.texts["KJV John 3:16"] = "For God so loved the world";
    // Notes of varying length put every kind of heading at every height on the page somewhere.
    model::SermonNote sermon;
    sermon.title = "Headings";
    for (int t = 1; t <= 40; ++t) {
        model::SermonTopic topic;
        topic.title = "Point " + std::to_string(t);
        for (int line = 0; line <= (t * 7) % 11; ++line)
            topic.details += (line ? "\n" : "") + std::string("topic note ") + std::to_string(line);
        model::SermonSubTopic sub;
        sub.title = "Sub " + std::to_string(t);
        for (int line = 0; line <= (t * 5) % 3; ++line)
            sub.details += (line ? "\n" : "") + std::string("sub note ") + std::to_string(line);
        sub.scriptures.push_back(testing::scripture("John", 3, 16, 16));
        topic.subTopics.push_back(sub);
        sermon.topics.push_back(topic);
    }
    testing::TemporaryFolder folder;
    const auto file = folder.write("headings.pdf", SermonPdfExporter(verses).render(sermon));
    const std::string text = runCommand("pdftotext '" + file.string() + "' -");
    const std::regex heading(R"(^([IVXLC]+\. Point \d+|A\. Sub \d+|John 3:16 \(KJV\))$)");
    std::size_t pages = 0;
    std::size_t start = 0;
    for (std::size_t feed = text.find('\f'); feed != std::string::npos; feed = text.find('\f', start)) {
        std::vector<std::string> lines;
        std::istringstream page(text.substr(start, feed - start));
        for (std::string line; std::getline(page, line);)
            if (!line.empty() && !line.starts_with("Page "))
                lines.push_back(line);
        start = feed + 1;
        ++pages;
        ASSERT_FALSE(lines.empty());
        EXPECT_FALSE(std::regex_match(lines.back(), heading)) << "page " << pages << " ends with " << lines.back();
    }
    EXPECT_GT(pages, 4u);
}

} // namespace quillon::exports
