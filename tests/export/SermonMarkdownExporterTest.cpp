#include "ExportTestSupport.h"

#include "export/SermonMarkdownExporter.h"

#include <gtest/gtest.h>

namespace quillon::exports {

TEST(SermonMarkdownExporter, writesHeadingsQuotationsAndTheManuscript) {
    testing::FixedVerses verses;
    verses.texts["KJV John 3:16"] = "For God so loved the world";
    const std::string md = SermonMarkdownExporter(verses).render(testing::sampleSermon());
    for (const std::string expected :
         {"# Grace & Truth\n\n", "- **Speaker:** Ada Preacher\n", "- **Series:** Gospel of John\n",
          "## I. Grace Given\n\n", "### A. The Promise\n\nApplication line\n",
          "> **John 3:16 (KJV)**\n>\n> For God so loved the world\n",
          "> The NKJV text is not available in this Bible library.\n", "## Manuscript\n\nOpen with the story.\n"})
        EXPECT_NE(md.find(expected), std::string::npos) << expected << "\n" << md;
}

TEST(SermonMarkdownExporter, escapesWhatMarkdownWouldReadAsFormatting) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"*bold* _it_ `code`", "\\*bold\\* \\_it\\_ \\`code\\`"},
        {"# not a heading", "\\# not a heading"},
        {"- not a list", "\\- not a list"},
        {"12. not a list", "12\\. not a list"},
        {"<script>", "\\<script\\>"},
        {"a | b [c]", "a \\| b \\[c\\]"},
        {"plain text 3:16", "plain text 3:16"},
    };
    for (const auto& [text, escaped] : cases)
        EXPECT_EQ(SermonMarkdownExporter::escapeMarkdown(text), escaped) << text;
}

} // namespace quillon::exports
