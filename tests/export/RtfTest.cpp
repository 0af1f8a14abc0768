#include "export/RtfReader.h"
#include "export/RtfWriter.h"

#include <gtest/gtest.h>

namespace quillon::exports {

namespace {

RichRun run(std::string text) {
    RichRun r;
    r.text = std::move(text);
    return r;
}

} // namespace

TEST(Rtf, roundTripKeepsEveryFeature) {
    RichText text;
    RichParagraph first;
    first.runs.push_back(run("Plain, "));
    RichRun bold = run("bold");
    bold.bold = true;
    first.runs.push_back(bold);
    RichRun mixed = run(" italic underlined red 18pt");
    mixed.italic = true;
    mixed.underline = true;
    mixed.colorHex = "C0392B";
    mixed.fontSize = 18;
    first.runs.push_back(mixed);
    text.paragraphs.push_back(first);

    RichParagraph bullet;
    bullet.bullet = true;
    bullet.leftIndent = 360;
    bullet.runs.push_back(run("See "));
    RichRun link = run("John 3:16");
    link.link = "quillscripture://E621E1F8-C36C-495A-93FC-0C247A3E6E5F";
    link.underline = true;
    bullet.runs.push_back(link);
    RichRun web = run("site");
    web.link = "https://example.org/a?b=1&c={2}";
    bullet.runs.push_back(web);
    text.paragraphs.push_back(bullet);

    text.paragraphs.push_back(RichParagraph{}); // an empty paragraph stays
    RichParagraph special;
    special.runs.push_back(run("Braces {} back\\slash tab\tline\nend \xC3\xA9 \xD7\xA9 \xF0\x9F\x99\x8F"));
    text.paragraphs.push_back(special);

    const RichText back = RtfReader::read(RtfWriter::write(text));
    EXPECT_EQ(back, text) << RtfWriter::write(text);
    EXPECT_EQ(RtfReader::read(RtfWriter::write(RichText{})), RichText{});
}

TEST(Rtf, readsWhatOtherWordProcessorsWrite) {
    struct Case {
        std::string rtf;
        std::string plain;
    };
    const std::vector<Case> cases{
        // Code-page bytes, smart quotes as control words, skipped destinations.
        {R"({\rtf1\ansi{\fonttbl{\f0 Times New Roman;}}{\*\generator Writer;}{\info{\title T}})"
         R"(\pard caf\'e9 \ldblquote x\rdblquote\par})",
         "caf\xC3\xA9 \xE2\x80\x9Cx\xE2\x80\x9D"},
        // Old-style bullets and \uN with a fallback character to skip.
        {R"({\rtf1{\pntext\'b7\tab}item \u8364\'80 euro\par})", "\xE2\x80\xA2 item \xE2\x82\xAC euro"},
        // LibreOffice-style list text with \pard inside must not cancel the bullet.
        {R"({\rtf1\pard\plain{\listtext\pard\plain \u8226\'95\tab}\ls1 point\par})", "\xE2\x80\xA2 point"},
        {R"({\rtf1 a\line b\par c})", "a\nb\nc"},
        {"not rtf at all", "not rtf at all"},
        {"{\\rtf1 {{{{{{ unbalanced", " unbalanced"},
        {"{\\rtf1 \\u-3 \\'zz \\", "\xEF\xBF\xBD"},
        // Escaped control characters are not text, as raw ones are not; an escaped tab is.
        {R"({\rtf1 a\u0?b\'01c\u9?d\'0de})", "abc\td"
                                             "e"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(RtfReader::read(c.rtf).plainText(), c.plain) << c.rtf;
}

TEST(Rtf, readsHyperlinkFieldsAndColours) {
    const auto text = RtfReader::read(R"({\rtf1{\colortbl;\red255\green0\blue0;\red0\green0\blue255;})"
                                      R"({\field{\*\fldinst HYPERLINK "quillscripture://ABC" }{\fldrslt {\cf2 Ps 23}}})"
                                      R"( {\cf1\b red}\par})");
    ASSERT_EQ(text.paragraphs.size(), 1u);
    const auto& runs = text.paragraphs[0].runs;
    ASSERT_EQ(runs.size(), 3u);
    EXPECT_EQ(runs[0].text, "Ps 23");
    EXPECT_EQ(runs[0].link, "quillscripture://ABC");
    EXPECT_EQ(runs[0].colorHex, "0000FF");
    EXPECT_TRUE(runs[1].link.empty());
    EXPECT_EQ(runs[2].colorHex, "FF0000");
    EXPECT_TRUE(runs[2].bold);
}

TEST(Rtf, staysBoundedOnDeeplyNestedInput) {
    const std::string deep = "{\\rtf1 " + std::string(100000, '{') + "deep" + std::string(100000, '}') + "}";
    EXPECT_EQ(RtfReader::read(deep).plainText(), "deep");
}

} // namespace quillon::exports
