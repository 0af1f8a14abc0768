#include "ExportTestSupport.h"

#include "export/ExportError.h"
#include "export/SermonWordExporter.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

namespace quillon::exports {

using testing::FixedVerses;
using testing::sampleSermon;
using testing::zipEntries;
using testing::zipEntry;

namespace {

std::vector<std::string> paragraphTexts(const std::string& documentXml) {
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(documentXml.c_str()));
    std::vector<std::string> texts;
    for (auto paragraph : document.child("w:document").child("w:body").children("w:p"))
        texts.push_back(paragraph.child("w:r").child("w:t").text().get());
    return texts;
}

} // namespace

TEST(SermonWordExporter, packsTheSevenPartsContentTypesFirst) {
    FixedVerses verses;
    const std::string docx = SermonWordExporter(verses).render(sampleSermon());
    std::vector<std::string> names;
    for (const auto& [name, content] : zipEntries(docx)) {
        names.push_back(name);
        if (name.ends_with("/"))
            continue;
        EXPECT_TRUE(content.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n")) << name;
        pugi::xml_document part;
        EXPECT_TRUE(part.load_string(content.c_str())) << name;
    }
    EXPECT_EQ(names,
              (std::vector<std::string>{"[Content_Types].xml", "_rels/", "_rels/.rels", "docProps/",
                                        "docProps/core.xml", "docProps/app.xml", "word/", "word/_rels/",
                                        "word/_rels/document.xml.rels", "word/styles.xml", "word/document.xml"}));
}

TEST(SermonWordExporter, escapesTheTitleInPropertiesAndTitleParagraph) {
    FixedVerses verses;
    auto sermon = sampleSermon();
    sermon.title = "Tom & Jerry's \"<Best>\"";
    const std::string docx = SermonWordExporter(verses).render(sermon);
    EXPECT_NE(zipEntry(docx, "docProps/core.xml")
                  .find("<dc:title>Tom &amp; Jerry&apos;s &quot;&lt;Best&gt;&quot;</dc:title>"),
              std::string::npos);
    const std::string body = zipEntry(docx, "word/document.xml");
    EXPECT_NE(body.find(">Tom &amp; Jerry&apos;s &quot;&lt;Best&gt;&quot;</w:t>"), std::string::npos);
    EXPECT_EQ(paragraphTexts(body).front(), sermon.title);
}

TEST(SermonWordExporter, writesMetadataLinesOnlyWhenPresent) {
    FixedVerses verses;
    SermonWordExporter exporter(verses);
    auto sermon = sampleSermon();
    auto texts = paragraphTexts(exporter.documentXml(sermon));
    EXPECT_EQ(texts[1], "Speaker: Ada Preacher");
    EXPECT_EQ(texts[2], "Series: Gospel of John");

    sermon.speaker.clear();
    sermon.series.reset();
    sermon.venue.reset();
    sermon.title.clear();
    texts = paragraphTexts(exporter.documentXml(sermon));
    EXPECT_EQ(texts[0], "Untitled Sermon");
    for (const auto& text : texts) {
        EXPECT_FALSE(text.starts_with("Speaker: "));
        EXPECT_FALSE(text.starts_with("Series: "));
        EXPECT_FALSE(text.starts_with("Venue: "));
    }
}

TEST(SermonWordExporter, namesTheSameVersionInOutlineAndIndex) {
    FixedVerses verses;
    verses.texts["KJV John 3:16"] = "For God so loved the world";
    const std::string body = SermonWordExporter(verses).documentXml(sampleSermon());
    const auto texts = paragraphTexts(body);
    const auto has = [&](const std::string& text) {
        return std::find(texts.begin(), texts.end(), text) != texts.end();
    };
    EXPECT_TRUE(has("I. Grace Given"));
    EXPECT_TRUE(has("A. The Promise"));
    EXPECT_TRUE(has("John 3:16 (KJV)"));
    EXPECT_TRUE(has("Romans 5:1-2 (NKJV)"));
    EXPECT_TRUE(has("For God so loved the world"));
    EXPECT_TRUE(has("The NKJV text is not available in this Bible library."));

    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(body.c_str()));
    auto table = document.child("w:document").child("w:body").child("w:tbl");
    ASSERT_TRUE(table);
    EXPECT_STREQ(table.child("w:tblPr").child("w:tblStyle").attribute("w:val").value(), "TableGrid");
    std::vector<std::pair<std::string, std::string>> rows;
    for (auto row : table.children("w:tr")) {
        auto cell = row.child("w:tc");
        rows.emplace_back(cell.child("w:p").child("w:r").child("w:t").text().get(),
                          cell.next_sibling("w:tc").child("w:p").child("w:r").child("w:t").text().get());
    }
    EXPECT_EQ(rows,
              (std::vector<std::pair<std::string, std::string>>{
                  {"Reference", "Version"}, {"John 3:16", "KJV"}, {"Romans 5:1-2", "NKJV"}, {"John 1:14", "KJV"}}));
    EXPECT_NE(body.find("<w:pgSz w:w=\"12240\" w:h=\"15840\"/>"), std::string::npos);
    EXPECT_NE(body.find("<w:rFonts w:ascii=\"Menlo\" w:hAnsi=\"Menlo\"/>"), std::string::npos);
}

TEST(SermonWordExporter, replacesAnExistingFileAndNamesItByTitle) {
    testing::TemporaryFolder folder;
    FixedVerses verses;
    SermonWordExporter exporter(verses);
    folder.write("Grace & Truth.docx", std::string(1 << 20, 'x'));
    const auto file = exporter.exportSermon(sampleSermon(), folder.path());
    EXPECT_EQ(file, folder / "Grace & Truth.docx");
    const std::string bytes = testing::readText(file);
    EXPECT_LT(bytes.size(), 1u << 20);
    EXPECT_EQ(zipEntries(bytes).front().first, "[Content_Types].xml");
}

TEST(SermonWordExporter, failsWithItsSentenceWhenTheFolderIsMissing) {
    FixedVerses verses;
    try {
        SermonWordExporter(verses).exportSermon(sampleSermon(), "/nonexistent/folder");
        FAIL() << "expected an ExportError";
    } catch (const ExportError& error) {
        EXPECT_STREQ(error.what(), "Quillon could not create the Word document.");
    }
}

} // namespace quillon::exports
