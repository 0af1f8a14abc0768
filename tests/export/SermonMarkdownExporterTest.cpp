#include "ExportTestSupport.h"

#include "export/SermonMarkdownExporter.h"
#include "export/XmlText.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillon::exports {

TEST(SermonMarkdownExporter, writesHeadingsQuotationsAndTheManuscript) {
    testing::FixedVerses verses;
    verses.texts["KJV John 3:16"] = "For God so loved the world";
    const std::string md = SermonMarkdownExporter(verses).render(testing::sampleSermon());
    for (const std::string expected :
         {"# Grace & Truth\n\n", "- **Speaker:** Ada Preacher\n", "- **Series:** Gospel of John\n",
          "## I. Grace Given\n\n", "### A. The Promise\n\nApplication line\n",
          "> **John 3:16 (KJV)**\n>\n> For God so loved the world\n",
          "> The NKJV text is not available in this Bible library.\n",
          "## Manuscript\n\nOpen with the story.\\\nClose in prayer.\n"})
        EXPECT_NE(md.find(expected), std::string::npos) << expected << "\n" << md;
}

TEST(SermonMarkdownExporter, escapesWhatMarkdownWouldReadAsFormatting) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"*bold* _it_ `code`", "\\*bold\\* \\_it\\_ \\`code\\`"},
        {"# not a heading", "\\# not a heading"},
        {"- not a list", "\\- not a list"},
        {"12. not a list", "12\\. not a list"},
        {"b) not a list", "b\\) not a list"},
        {"<script>", "\\<script\\>"},
        {"a | b [c]", "a \\| b \\[c\\]"},
        {"plain text 3:16", "plain text 3:16"},
        {"---", "\\-\\-\\-"},
        {"~~~", "\\~\\~\\~"},
        {"Fish &amp; loaves & fish", "Fish \\&amp; loaves & fish"},
        {"    indented", "indented"},
        {"Grace & Truth 1. 2.", "Grace & Truth 1. 2."},
    };
    for (const auto& [text, escaped] : cases)
        EXPECT_EQ(SermonMarkdownExporter::escapeMarkdown(text), escaped) << text;
}

TEST(SermonMarkdownExporter, rendersLineForLineAsTheSermonReads) {
    // Lines a preacher types that Markdown would otherwise merge, turn into headings, code,
    // lists, mathematics, sub- and superscripts or entities.
    const std::vector<std::string> tricky{"Line one",
                                          "Line two",
                                          "A heading?",
                                          "---",
                                          "===",
                                          "~~~",
                                          "```",
                                          "After the fence",
                                          "&amp; stays as typed & so does this",
                                          "1. not a list",
                                          "b) not a list",
                                          "(a) not a list",
                                          "IV. not a list",
                                          "- not a list",
                                          "+ not a list",
                                          "* not a list",
                                          "> not a quote",
                                          "# not a heading",
                                          "Price $5 and $6",
                                          "x^2^ and H~2~O and a--b and a---b",
                                          "<b>not bold</b> [not](a link) *not* _em_ | a | b |",
                                          ": not a definition",
                                          "{#not-an-id} C:\\Path\\"};
    std::string details;
    for (const std::string& line : tricky)
        details += (details.empty() ? "" : "\n") + line;
    model::SermonNote sermon;
    sermon.title = "Grace & Truth";
    model::SermonTopic topic;
    topic.title = "Point";
    topic.details = "    Indented first line\n" + details + "\n\nA new paragraph";
    sermon.topics.push_back(topic);
    sermon.notes = details;

    testing::TemporaryFolder folder;
    const auto file = folder.write("sermon.md", SermonMarkdownExporter(testing::FixedVerses{}).render(sermon));
    for (const std::string format : {"markdown", "commonmark"}) {
        const std::string plain =
            testing::commandOutput("pandoc -f " + format + " -t plain --wrap=none '" + file.string() + "'");
        std::vector<std::string> lines;
        for (const std::string& line : splitLines(plain))
            lines.push_back(line);
        const auto count = [&](const std::string& wanted) { return std::count(lines.begin(), lines.end(), wanted); };
        for (const std::string& line : tricky)
            EXPECT_EQ(count(line), 2) << format << ": " << line << "\n" << plain; // details and manuscript
        EXPECT_EQ(count("Indented first line"), 1) << format;
        EXPECT_EQ(count("A new paragraph"), 1) << format;

        const std::string html =
            testing::commandOutput("pandoc -f " + format + " -t html --wrap=none '" + file.string() + "'");
        EXPECT_NE(html.find("<h1"), std::string::npos) << format;
        for (const std::string element : {"<h3", "<h4", "<pre", "<code", "<hr", "<ol", "<dl", "<sup", "<sub", "<del",
                                          "<em", "<strong>not", "<b>", "<a ", "math", "<blockquote"})
            EXPECT_EQ(html.find(element), std::string::npos) << format << ": " << element << "\n" << html;
        const auto headings = [&](const std::string& tag) {
            std::size_t found = 0;
            for (std::size_t at = html.find(tag); at != std::string::npos; at = html.find(tag, at + 1))
                ++found;
            return found;
        };
        EXPECT_EQ(headings("<h2"), 2u) << format << "\n" << html; // the point and the manuscript
    }
}

} // namespace quillon::exports
