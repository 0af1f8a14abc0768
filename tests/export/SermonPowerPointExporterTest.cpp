#include "ExportTestSupport.h"

#include "export/SermonPowerPointExporter.h"
#include "export/SlideTitleFit.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

namespace quillon::exports {

using Kind = PowerPointSlide::Kind;
using testing::FixedVerses;
using testing::sampleSermon;
using testing::zipEntries;
using testing::zipEntry;

TEST(SermonPowerPointExporter, aSermonWithoutTopicsIsOneSlide) {
    FixedVerses verses;
    SermonPowerPointExporter exporter(verses);
    model::SermonNote sermon;
    const std::string pptx = exporter.render(sermon);
    EXPECT_NE(zipEntry(pptx, "docProps/app.xml").find("<Slides>1</Slides>"), std::string::npos);
    EXPECT_EQ(exporter.slides(sermon), (std::vector<PowerPointSlide>{{Kind::note, "Untitled Sermon", ""}}));
    const std::string slide = zipEntry(pptx, "ppt/slides/slide1.xml");
    EXPECT_EQ(slide.find("name=\"Body\""), std::string::npos);
}

TEST(SermonPowerPointExporter, ordersSlidesAsTheTalkAndNumbersTopicsInRomanNumerals) {
    FixedVerses verses;
    verses.texts["KJV John 3:16"] = "For God so loved the world";
    auto sermon = sampleSermon();
    sermon.topics.resize(14, sermon.topics[1]);
    const auto slides = SermonPowerPointExporter(verses).slides(sermon);
    ASSERT_GE(slides.size(), 6u);
    EXPECT_EQ(slides[0],
              (PowerPointSlide{Kind::note, "Grace & Truth", "Speaker: Ada Preacher\nSeries: Gospel of John"}));
    EXPECT_EQ(slides[1], (PowerPointSlide{Kind::note, "I. Grace Given", "God gives first."}));
    EXPECT_EQ(slides[2], (PowerPointSlide{Kind::note, "The Promise", "Application line"}));
    EXPECT_EQ(slides[3], (PowerPointSlide{Kind::scripture, "John 3:16 (KJV)", "For God so loved the world"}));
    EXPECT_EQ(slides[4], (PowerPointSlide{Kind::scripture, "Romans 5:1-2 (NKJV)",
                                          "The NKJV text is not available in this Bible library."}));
    std::vector<std::string> topicTitles;
    for (const auto& slide : slides)
        if (slide.title.find(". Truth Spoken") != std::string::npos)
            topicTitles.push_back(slide.title.substr(0, slide.title.find('.')));
    ASSERT_EQ(topicTitles.size(), 13u);
    EXPECT_EQ(topicTitles[2], "IV");
    EXPECT_EQ(topicTitles[7], "IX");
    EXPECT_EQ(topicTitles[12], "XIV");
}

TEST(SermonPowerPointExporter, scriptureAndNoteSlidesDifferInBackgroundAndSize) {
    const std::string scripture = SermonPowerPointExporter::slideXml({Kind::scripture, "John 3:16 (KJV)", "For God"});
    EXPECT_NE(scripture.find("<a:srgbClr val=\"F3EAD7\"/>"), std::string::npos);
    EXPECT_NE(scripture.find("sz=\"2400\""), std::string::npos);
    EXPECT_EQ(scripture.find("gradFill"), std::string::npos);

    const std::string note = SermonPowerPointExporter::slideXml({Kind::note, "I. Grace", "God gives"});
    EXPECT_NE(note.find("<a:gradFill flip=\"none\" rotWithShape=\"1\">"), std::string::npos);
    EXPECT_NE(note.find("<a:lin ang=\"5400000\""), std::string::npos);
    EXPECT_NE(note.find("sz=\"2200\""), std::string::npos);
    EXPECT_NE(note.find("<a:off x=\"685800\" y=\"457200\"/>"), std::string::npos);
    EXPECT_NE(note.find("<a:ext cx=\"11500000\" cy=\"5200000\"/>"), std::string::npos);
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(note.c_str()));
    std::vector<int> ids;
    for (auto node : document.select_nodes("//p:cNvPr"))
        ids.push_back(node.node().attribute("id").as_int());
    EXPECT_EQ(ids, (std::vector<int>{1, 2, 3}));
}

TEST(SermonPowerPointExporter, theThemeRelationshipFollowsTheLastSlide) {
    FixedVerses verses;
    const std::string pptx = SermonPowerPointExporter(verses).render(sampleSermon());
    const std::string relationships = zipEntry(pptx, "ppt/_rels/presentation.xml.rels");
    // Title, 2 topics, 2 sub-topics, 3 passages.
    EXPECT_NE(relationships.find("Id=\"rId8\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
                                 "relationships/slide\" Target=\"slides/slide8.xml\""),
              std::string::npos);
    EXPECT_NE(relationships.find("Id=\"rId9\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
                                 "relationships/theme\" Target=\"theme/theme1.xml\""),
              std::string::npos);
    const std::string presentation = zipEntry(pptx, "ppt/presentation.xml");
    EXPECT_NE(presentation.find("<p:sldId id=\"256\" r:id=\"rId1\"/>"), std::string::npos);
    EXPECT_NE(presentation.find("<p:notesSz cx=\"6858000\" cy=\"9144000\"/>"), std::string::npos);
    const auto entries = zipEntries(pptx);
    EXPECT_EQ(entries.front().first, "[Content_Types].xml");
    for (const auto& [name, content] : entries) {
        if (name.ends_with("/"))
            continue;
        pugi::xml_document part;
        EXPECT_TRUE(part.load_string(content.c_str())) << name;
    }
}

TEST(SermonPowerPointExporter, splitsLongBodiesOverContinuationSlides) {
    FixedVerses verses;
    auto sermon = sampleSermon();
    std::string details;
    for (int i = 0; i < 400; ++i)
        details += "word" + std::to_string(i) + " ";
    details += "\n" + std::string(500, 'x'); // one unbreakable word longer than a line
    sermon.topics[0].details = details;
    const auto slides = SermonPowerPointExporter(verses).slides(sermon);
    std::vector<PowerPointSlide> topicSlides;
    for (const auto& slide : slides)
        if (slide.title.starts_with("I. Grace Given"))
            topicSlides.push_back(slide);
    ASSERT_GE(topicSlides.size(), 3u);
    EXPECT_EQ(topicSlides[0].title, "I. Grace Given");
    EXPECT_EQ(topicSlides[1].title, "I. Grace Given (cont.)");
    std::string rejoined;
    for (const auto& slide : topicSlides) {
        EXPECT_LE(slide.body.size(), 68u * 13u + 13u);
        rejoined += slide.body + "\n";
    }
    EXPECT_NE(rejoined.find("word0 "), std::string::npos);
    EXPECT_NE(rejoined.find("word399"), std::string::npos);
    EXPECT_EQ(std::count(rejoined.begin(), rejoined.end(), 'x'), 500);
}

TEST(SermonPowerPointExporter, setsALongTitleSmallerSoItStaysInItsBox) {
    const std::string sentence = "When the Prodigal Comes Home to the Father Who Runs ";
    std::string endless;
    for (int i = 0; i < 40; ++i)
        endless += sentence;
    struct Case {
        std::string title;
        int smallestSize; // hundredths of a point
        int largestSize;
        bool shortened;
    };
    const std::vector<Case> cases{
        {"Grace", 3600, 3600, false},
        {sentence + sentence, 2200, 3000, false},
        {sentence + sentence + sentence + sentence, 1400, 2200, false},
        {std::string(200, 'W'), 1400, 1400, true},
        {endless, 1400, 1400, true},
        {std::string(3u << 20, 'i'), 1400, 1400, true}, // a stored title of megabytes is measured in part
    };
    for (const auto& c : cases) {
        const SlideTitleFit fit = SlideTitleFit::fit(c.title, 11962000, 900000);
        EXPECT_GE(fit.size, c.smallestSize) << c.title.substr(0, 100);
        EXPECT_LE(fit.size, c.largestSize) << c.title.substr(0, 100);
        if (c.shortened) {
            EXPECT_TRUE(fit.text.ends_with("\xE2\x80\xA6")) << fit.text.substr(0, 100);
            EXPECT_LT(fit.text.size(), c.title.size());
            EXPECT_TRUE(c.title.starts_with(fit.text.substr(0, fit.text.size() - 3)));
        } else {
            EXPECT_EQ(fit.text, c.title);
        }
        const std::string xml =
            SermonPowerPointExporter::slideXml(PowerPointSlide{PowerPointSlide::Kind::note, c.title, "Speaker: Ada"});
        // The title's run and the end of its paragraph carry the fitted size; the body keeps 22 pt.
        EXPECT_NE(xml.find("sz=\"" + std::to_string(fit.size) + "\" b=\"1\""), std::string::npos)
            << c.title.substr(0, 100);
        EXPECT_NE(xml.find("<a:off x=\"685800\" y=\"457200\"/>\n            <a:ext cx=\"11962000\" cy=\"900000\"/>"),
                  std::string::npos);
        EXPECT_NE(xml.find("sz=\"2200\""), std::string::npos);
    }
}

} // namespace quillon::exports
