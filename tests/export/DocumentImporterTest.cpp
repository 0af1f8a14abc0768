#include "ExportTestSupport.h"

#include "export/DocumentImporter.h"
#include "export/DocxReader.h"
#include "export/ExportError.h"
#include "export/RtfReader.h"
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

/// A Word package holding only `body` as the document's body.
std::string wordDocument(const std::string& body) {
    return testing::makeZip(
        {{"word/document.xml", "<?xml version=\"1.0\"?><w:document "
                               "xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"><w:body>" +
                                   body + "</w:body></w:document>"}});
}

std::string repeated(std::string_view piece, std::size_t times) {
    std::string text;
    text.reserve(piece.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        text += piece;
    return text;
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

TEST(DocumentImporter, readsItsOwnExportsBackIntoTheSameOutlineAndManuscript) {
    testing::FixedVerses verses;
    verses.texts["KJV John 3:16"] = "For God so loved the world";
    auto sermon = testing::sampleSermon();
    sermon.notes =
        "Open with the story.\n\nI. This numeral line belongs to the manuscript.\nJohn 3:16\n\nClose in prayer.";
    sermon.topics[0].details = "God gives first.\n\nThen we answer.";
    sermon.topics[1].subTopics[0].details = "Last point's own notes";
    const DocumentImporter importer(testing::fakeRecognizer());
    struct Case {
        std::string kind;
        std::string bytes;
        bool carriesManuscript;
    };
    const std::vector<Case> cases{
        {"docx", SermonWordExporter(verses).render(sermon), false},
        {"md", SermonMarkdownExporter(verses).render(sermon), true},
        {"rtf", SermonRtfExporter(verses).render(sermon), true},
    };
    for (const auto& c : cases) {
        const auto imported = importer.importBytes(c.bytes, c.kind, "fallback", now);
        EXPECT_EQ(outline(imported), outline(sermon)) << c.kind;
        EXPECT_EQ(imported.speaker, "Ada Preacher") << c.kind;
        EXPECT_EQ(imported.series, "Gospel of John") << c.kind;
        EXPECT_EQ(imported.topics[0].details, sermon.topics[0].details) << c.kind; // paragraphs stay apart
        EXPECT_EQ(imported.topics[0].subTopics[0].details, "Application line") << c.kind;
        // Nothing after the outline (the index table's heading, the manuscript) joins the last point.
        EXPECT_EQ(imported.topics[1].subTopics[0].details, "Last point's own notes") << c.kind;
        EXPECT_EQ(imported.notes, c.carriesManuscript ? sermon.notes : "") << c.kind;
        EXPECT_EQ(imported.createdAt, now);
        EXPECT_NE(imported.id, sermon.id);
    }
}

TEST(DocumentImporter, readsMarkdownHeadingDepthsRelativeToTheDocument) {
    struct Case {
        std::string name;
        std::string markdown;
        std::vector<std::string> expected;
    };
    const std::vector<Case> cases{
        {"title and points share #",
         "# Title\n# Point one\n## Sub a\n## Sub b\n# Point two\n",
         {"Title", "Point one", "  Sub a", "  Sub b", "Point two"}},
        {"points under ##",
         "# Title\n## Point one\n### Sub a\n#### Deeper\n",
         {"Title", "Point one", "  Sub a", "  Deeper"}},
        {"no title heading", "## Point one\n### Sub a\n", {"", "Point one", "  Sub a"}},
        {"underlined headings", "Title\n=====\nPoint one\n---------\n", {"Title", "Point one"}},
        {"closing hashes and escaped ones", "# Title ##\n## C\\# and F\\#\n", {"Title", "C# and F#"}},
    };
    const DocumentImporter importer(testing::fakeRecognizer());
    for (const auto& c : cases) {
        auto lines = outline(importer.importBytes(c.markdown, "md", "", now));
        if (lines.front() == "Untitled Sermon")
            lines.front().clear();
        EXPECT_EQ(lines, c.expected) << c.name;
    }
}

TEST(DocumentImporter, keepsTheSpacesWordWritesAsRunsOfTheirOwn) {
    // Word and pandoc put the space between differently formatted words into a run of its own.
    const std::string body = "<w:p><w:r><w:t>The</w:t></w:r><w:r><w:t xml:space=\"preserve\"> </w:t></w:r>"
                             "<w:r><w:rPr><w:b/></w:rPr><w:t>Prodigal\xE2\x80\x99s</w:t></w:r><w:r><w:t> </w:t></w:r>"
                             "<w:hyperlink><w:r><w:t>Return</w:t></w:r></w:hyperlink><w:r><w:tab/><w:t>Luke</w:t></w:r>"
                             "<w:r><w:t xml:space=\"preserve\">  15 </w:t><w:noBreakHyphen/><w:t>a</w:t></w:r></w:p>";
    const auto sermon = DocumentImporter(testing::fakeRecognizer()).importBytes(wordDocument(body), "docx", "x", now);
    EXPECT_EQ(sermon.title, "The Prodigal\xE2\x80\x99s Return\tLuke  15 -a");
}

TEST(DocumentImporter, readsHostileDocumentsWithoutRecursionOrRunawayCopies) {
    const DocumentImporter importer(testing::fakeRecognizer());
    // 22,000 nested content controls around a paragraph, and as many inside one.
    const std::string nestedBlocks =
        repeated("<w:sdt>", 22000) + "<w:p><w:r><w:t>I. Deep</w:t></w:r></w:p>" + repeated("</w:sdt>", 22000);
    const std::string nestedRuns = "<w:p>" + repeated("<w:sdt>", 22000) + "<w:r><w:t>A. Deeper</w:t></w:r>" +
                                   repeated("</w:sdt>", 22000) + "</w:p>";
    const auto word = importer.importBytes(wordDocument(nestedBlocks + nestedRuns), "docx", "x", now);
    EXPECT_EQ(outline(word), (std::vector<std::string>{"x", "Deep", "  Deeper"}));

    // Lines far longer than any regular expression could walk: one paragraph of a manuscript.
    const std::string longLine = repeated("grace upon grace ", 200000);
    for (const std::string kind : {"txt", "md"}) {
        const auto sermon = importer.importBytes("I. Point\n" + longLine + "\n[" + longLine + "\n", kind, "x", now);
        ASSERT_EQ(sermon.topics.size(), 1u) << kind;
        EXPECT_GT(sermon.topics[0].details.size(), 2 * longLine.size() - 10) << kind;
    }
    const auto escapes =
        importer.importBytes("{\\rtf1 I. Point\\par " + repeated("\\u8364?", 1000000) + "}", "rtf", "x", now);
    EXPECT_EQ(escapes.topics.at(0).details.size(), 3u * 1000000);

    // A hyperlink instruction without its closing quote runs on to the end of the field; then
    // come many groups and format changes, each of which used to copy the whole target.
    for (const std::size_t targetBytes : {100000u, 4000u}) {
        const std::string rtf = "{\\rtf1{\\field{\\*\\fldinst{HYPERLINK \"http://x/" + std::string(targetBytes, 'a') +
                                "}}{\\fldrslt{" + repeated("{\\b a}{\\i b}", 200000) + "}}}}";
        const RichText read = RtfReader::read(rtf);
        std::size_t linkBytes = 0;
        for (const auto& paragraph : read.paragraphs)
            for (const auto& run : paragraph.runs)
                linkBytes += run.link.size();
        EXPECT_LE(linkBytes, RtfReader::linkCopyBudget(rtf.size())) << targetBytes;
        EXPECT_EQ(read.plainText().size(), 400000u) << targetBytes;
    }
    // Formatting changes and paragraphs beyond the limits keep their text.
    const RichText many = RtfReader::read("{\\rtf1 " + repeated("{\\b a}{\\i b}\\par ", 200000) + "}");
    std::size_t runs = 0;
    for (const auto& paragraph : many.paragraphs)
        runs += paragraph.runs.size();
    EXPECT_LE(runs, RtfReader::maximumRuns + RtfReader::maximumParagraphs);
    EXPECT_EQ(many.paragraphs.size(), RtfReader::maximumParagraphs);
    // Compared as a whole: a failing comparison of 200,000 lines would print a quadratic diff.
    EXPECT_TRUE(many.plainText() == repeated("ab\n", 199999) + "ab");
    // A well-formed link still reaches every run of its text.
    const RichText linked =
        RtfReader::read("{\\rtf1{\\field{\\*\\fldinst{HYPERLINK \"https://example.org/\"}}{\\fldrslt{" +
                        repeated("{\\b a}{\\i b}", 100) + "}}}}");
    ASSERT_EQ(linked.paragraphs.size(), 1u);
    EXPECT_EQ(linked.paragraphs[0].runs.size(), 200u);
    for (const auto& run : linked.paragraphs[0].runs)
        EXPECT_EQ(run.link, "https://example.org/");
}

TEST(DocumentImporter, decodesUtf16AndRefusesWhatIsNotText) {
    const auto utf16 = [](std::string_view ascii, bool bigEndian) {
        std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
        for (char c : ascii) {
            bytes += bigEndian ? '\0' : c;
            bytes += bigEndian ? c : '\0';
        }
        return bytes;
    };
    const std::string elf = std::string("\x7F"
                                        "ELF\x02\x01\x01\0\0\0\0\0\0\0\0\0\x03\0>\0",
                                        20) +
                            "main\0printf";
    std::string noise;
    for (unsigned i = 0, x = 12345; i < 4096; ++i, x = x * 1103515245 + 12345)
        noise += static_cast<char>((x >> 16) & 0xFF);
    struct Case {
        std::string name;
        std::string bytes;
        std::string title; // empty when refused
    };
    const std::vector<Case> cases{
        {"UTF-16 little-endian", utf16("Grace\r\nI. Point", false), "Grace"},
        {"UTF-16 big-endian", utf16("Grace\nI. Point", true), "Grace"},
        {"UTF-8 with mark", "\xEF\xBB\xBFGrace\nI. Point", "Grace"},
        {"Windows-1252", "\x93Grace\x94 \x96 Truth\nI. Point", "\xE2\x80\x9CGrace\xE2\x80\x9D \xE2\x80\x93 Truth"},
        {"a program", elf, ""},
        {"random bytes", noise, ""},
        {"NUL bytes", std::string(1 << 20, '\0'), ""},
        {"control characters", "Grace\x1B[31m\x01\x02\x03 red", ""},
    };
    const DocumentImporter importer(testing::fakeRecognizer());
    for (const auto& c : cases) {
        for (const std::string kind : {"md", "txt"}) {
            if (c.title.empty()) {
                EXPECT_EQ(errorOf([&] { importer.importBytes(c.bytes, kind, "x", now); }),
                          "Quillon refused this document because it is not text.")
                    << c.name << " " << kind;
            } else {
                const auto sermon = importer.importBytes(c.bytes, kind, "x", now);
                EXPECT_EQ(sermon.title, c.title) << c.name << " " << kind;
                EXPECT_EQ(sermon.topics.size(), 1u) << c.name << " " << kind;
            }
        }
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
