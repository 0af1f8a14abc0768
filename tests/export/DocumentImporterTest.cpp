#include "ExportTestSupport.h"

#include "export/DocumentImporter.h"
#include "export/DocxReader.h"
#include "export/ExportError.h"
#include "export/RtfWriter.h"
#include "export/SermonMarkdownExporter.h"
#include "export/SermonRtfExporter.h"
#include "export/SermonWordExporter.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillon::exports {

namespace {

constexpr model::DateTime now{std::chrono::seconds{1'700'000'000}};

/// Titles of topics, sub-topics and references, enough to compare an import with its source.
std::vector<std::string> outline(const model::SermonNote& sermon) {
    std::vector<std::string> lines{sermon.title};
    for (const auto& topic : sermon.topics) {
        lines.push_back(topic.title);
        for (const auto& sub : topic.subTopics) {
            lines.push_back("  " + sub.title);
            for (const auto& s : sub.scriptures)
                lines.push_back("    " + s.bookName + " " + std::to_string(s.chapter) + ":" +
                                std::to_string(s.startVerse) + " " + std::string(model::rawValue(s.version)));
        }
    }
    return lines;
}

std::string errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const ExportError& error) {
        return error.what();
    }
    return {};
}

} // namespace

TEST(DocumentImporter, readsItsOwnExportsBackIntoTheSameOutline) {
    testing::FixedVerses verses;
    verses.texts["KJV John 3:16"] = "For God so loved the world";
    const auto sermon = testing::sampleSermon();
    const DocumentImporter importer(testing::fakeRecognizer());
    const std::vector<std::pair<std::string, std::string>> documents{
        {"docx", SermonWordExporter(verses).render(sermon)},
        {"md", SermonMarkdownExporter(verses).render(sermon)},
        {"rtf", SermonRtfExporter(verses).render(sermon)},
    };
    for (const auto& [kind, bytes] : documents) {
        const auto imported = importer.importBytes(bytes, kind, "fallback", now);
        EXPECT_EQ(outline(imported), outline(sermon)) << kind;
        EXPECT_EQ(imported.speaker, "Ada Preacher") << kind;
        EXPECT_EQ(imported.topics[0].subTopics[0].details, "Application line") << kind;
        EXPECT_EQ(imported.createdAt, now);
        EXPECT_NE(imported.id, sermon.id);
    }
}

TEST(DocumentImporter, namesADraftAfterItsFileWhenTheTextHasNoTitle) {
    testing::TemporaryFolder folder;
    const auto file = folder.write("Easter Morning.TXT", "I. Risen\nA. Empty tomb\n");
    const auto sermon = DocumentImporter(testing::fakeRecognizer()).importFile(file, now);
    EXPECT_EQ(sermon.title, "Easter Morning");
    EXPECT_EQ(sermon.topics.size(), 1u);
    EXPECT_EQ(sermon.date, now);
}

TEST(DocumentImporter, refusesHostileWordDocumentsWithAClearSentence) {
    const std::string body = "<?xml version=\"1.0\"?><w:document "
                             "xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"><w:body><w:p>"
                             "<w:r><w:t>I. Grace</w:t></w:r></w:p></w:body></w:document>";
    const std::string entities =
        "<?xml version=\"1.0\"?><!DOCTYPE lolz [<!ENTITY lol \"lol\"><!ENTITY lol2 \"&lol;&lol;&lol;\">]>"
        "<w:document xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"><w:body><w:p><w:r>"
        "<w:t>&lol2;</w:t></w:r></w:p></w:body></w:document>";
    struct Case {
        std::string name;
        std::string package;
        std::string sentence;
    };
    const std::vector<Case> cases{
        {"traversal", testing::makeZip({{"word/document.xml", body}, {"../../evil.sh", "rm -rf"}}),
         "Quillon refused this Word document because it holds entries that point outside the document (\"../\")."},
        {"bomb", testing::makeZip({{"word/document.xml", body + std::string(40u << 20, ' ')}}),
         "Quillon refused this Word document because it expands to far more data than a sermon document holds."},
        {"entities", testing::makeZip({{"word/document.xml", entities}}),
         "Quillon refused this Word document because its XML declares entities."},
        {"not a zip", "PK\x03\x04 truncated", "Quillon could not read this Word document."},
        {"no body", testing::makeZip({{"word/other.xml", body}}), "Quillon could not read this Word document."},
        {"broken xml", testing::makeZip({{"word/document.xml", "<w:document><w:body"}}),
         "Quillon could not read this Word document."},
    };
    const DocumentImporter importer(testing::fakeRecognizer());
    for (const auto& c : cases)
        EXPECT_EQ(errorOf([&] { importer.importBytes(c.package, "docx", "x", now); }), c.sentence) << c.name;
    EXPECT_EQ(importer.importBytes(testing::makeZip({{"word/document.xml", body}}), "docx", "x", now).topics.size(),
              1u);
}

TEST(DocumentImporter, readsMarkdownHeadingsQuotationsAndLists) {
    const std::string markdown =
        "# Living **Hope**\n\n- **Speaker:** Ada\n\n## Anchor\n\nText with a [link](http://x).\n\n"
        "### Steadfast\n\n> **John 3:16 (NKJV)**\n>\n> For God so loved\n\n* a list item\n";
    const auto sermon = DocumentImporter(testing::fakeRecognizer()).importBytes(markdown, "markdown", "x", now);
    EXPECT_EQ(sermon.title, "Living Hope");
    EXPECT_EQ(sermon.speaker, "Ada");
    ASSERT_EQ(sermon.topics.size(), 1u);
    EXPECT_EQ(sermon.topics[0].details, "Text with a link.");
    ASSERT_EQ(sermon.topics[0].subTopics.size(), 1u);
    const auto& sub = sermon.topics[0].subTopics[0];
    ASSERT_EQ(sub.scriptures.size(), 1u);
    EXPECT_EQ(sub.scriptures[0].version, model::BibleVersion::nkjv);
    EXPECT_EQ(sub.details, "a list item");
}

TEST(DocumentImporter, refusesKindsItDoesNotRead) {
    const DocumentImporter importer(testing::fakeRecognizer());
    EXPECT_FALSE(DocumentImporter::isDocument("a.pdf"));
    EXPECT_TRUE(DocumentImporter::isDocument("a.DOCX"));
    EXPECT_EQ(errorOf([&] { importer.importBytes("hello", "rtf", "x", now); }),
              "Quillon could not read this rich-text document.");
    EXPECT_EQ(errorOf([&] { importer.importFile("/nonexistent/x.md", now); }), "Quillon could not open “x.md”.");
}

} // namespace quillon::exports
