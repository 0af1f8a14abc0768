// Every export is opened by a real office suite: LibreOffice converts each document to PDF and
// pdftotext must find the sermon's title, headings and references. One soffice run converts all
// documents, because starting the suite dominates the time.
#include "ExportTestSupport.h"

#include "export/RtfReader.h"
#include "export/SermonPowerPointExporter.h"
#include "export/SermonRtfExporter.h"
#include "export/SermonWordExporter.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <regex>

namespace quillon::exports {

namespace fs = std::filesystem;
using testing::FixedVerses;

namespace {

model::SermonNote hostileSermon() {
    auto sermon = testing::sampleSermon();
    sermon.title = "Fish & <Loaves> \"5\" 'and' 2\x01\x02 \xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xF0\x9F\x99\x8F";
    sermon.topics[0].details = std::string(10000, 'n');
    sermon.topics[0].title = "Mercy \x07 & <Justice>";
    sermon.topics[1].subTopics[0].scriptures.push_back(testing::scripture("Hezekiah", 4, 1, 3));
    sermon.notes = "\xD8\xA7\xD9\x84\xD8\xB3\xD9\x84\xD8\xA7\xD9\x85 peace \xF0\x9F\x95\x8A\xEF\xB8\x8F";
    return sermon;
}

model::SermonNote manyTopics() {
    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = "Three Hundred Points";
    for (int i = 1; i <= 300; ++i) {
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = "Point " + std::to_string(i);
        sermon.topics.push_back(topic);
    }
    return sermon;
}

model::SermonNote longTitle() {
    auto sermon = testing::sampleSermon();
    sermon.title = "When the Prodigal Comes Home: Grace, Repentance and the Father Who Runs Down the Long Road to "
                   "Meet Him Before He Can Finish His Speech";
    sermon.venue = "Grace Chapel";
    return sermon;
}

std::string run(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return output;
    char buffer[4096];
    for (std::size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, n);
    pclose(pipe);
    return output;
}

std::string quoted(const fs::path& path) {
    return "'" + path.string() + "'";
}

/// Converts every file to `format` in one soffice run with a private profile.
void convert(const std::vector<fs::path>& files, const std::string& format, const fs::path& outFolder,
             const fs::path& profile) {
    std::string command = "soffice -env:UserInstallation=file://" + profile.string() +
                          " --headless --norestore --convert-to " + format + " --outdir " + quoted(outFolder);
    for (const auto& file : files)
        command += " " + quoted(file);
    run(command + " >/dev/null 2>&1");
}

std::string pdfText(const fs::path& pdf) {
    return run("pdftotext -layout " + quoted(pdf) + " - 2>/dev/null");
}

class OfficeSuite : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        s_folder = new testing::TemporaryFolder();
        s_texts = new std::map<std::string, std::string>();
        FixedVerses verses;
        verses.texts["KJV John 3:16"] = "For God so loved the world";
        const SermonWordExporter word(verses);
        const SermonPowerPointExporter slides(verses);
        const SermonRtfExporter rtf(verses);
        const std::vector<std::pair<std::string, model::SermonNote>> sermons{
            {"sample", testing::sampleSermon()},
            {"hostile", hostileSermon()},
            {"empty", model::SermonNote{}},
            {"many", manyTopics()},
            {"long", longTitle()},
        };
        std::vector<fs::path> documents;
        for (const auto& [name, sermon] : sermons) {
            for (const SermonExporter* exporter : std::initializer_list<const SermonExporter*>{&word, &slides, &rtf}) {
                // Distinct stems: soffice names each PDF after its document's stem.
                const std::string extension(exporter->extension());
                const fs::path file = *s_folder / (name + "-" + extension + "." + extension);
                exporter->exportSermonTo(sermon, file);
                documents.push_back(file);
            }
        }
        const fs::path out = *s_folder / "pdf";
        fs::create_directories(out);
        convert(documents, "pdf", out, *s_folder / "profile");
        for (const auto& document : documents)
            (*s_texts)[document.stem().string()] = pdfText(out / (document.stem().string() + ".pdf"));

        // LibreOffice's own RTF of our Word document, for the reader.
        const fs::path rtfOut = *s_folder / "rtf";
        fs::create_directories(rtfOut);
        convert({*s_folder / "sample-docx.docx"}, "rtf", rtfOut, *s_folder / "profile");
        (*s_texts)["libreoffice.rtf"] = testing::readText(rtfOut / "sample-docx.rtf");
    }

    static void TearDownTestSuite() {
        delete s_texts;
        if (!std::getenv("QUILLON_KEEP_OFFICE_OUTPUT"))
            delete s_folder;
    }

    static const std::string& text(const std::string& name) { return (*s_texts)[name]; }

    static testing::TemporaryFolder* s_folder;
    static std::map<std::string, std::string>* s_texts;
};

testing::TemporaryFolder* OfficeSuite::s_folder = nullptr;
std::map<std::string, std::string>* OfficeSuite::s_texts = nullptr;

} // namespace

TEST_F(OfficeSuite, opensEveryExportAndShowsTitleHeadingsAndReferences) {
    for (const std::string extension : {"docx", "pptx", "rtf"}) {
        const std::string& pdf = text("sample-" + extension);
        ASSERT_FALSE(pdf.empty()) << extension << " did not convert";
        for (const std::string expected : {"Grace & Truth", "Grace Given", "The Promise", "Truth Spoken", "John 3:16",
                                           "Romans 5:1-2", "John 1:14", "For God so loved the world"})
            EXPECT_NE(pdf.find(expected), std::string::npos) << extension << " lacks " << expected;
    }
    EXPECT_NE(text("sample-docx").find("Scripture Index"), std::string::npos);
}

TEST_F(OfficeSuite, opensExportsOfBadInput) {
    for (const std::string name : {"hostile", "empty", "many"})
        for (const std::string extension : {"docx", "pptx", "rtf"})
            EXPECT_FALSE(text(name + "-" + extension).empty()) << name << "." << extension << " did not convert";
    EXPECT_NE(text("hostile-docx").find("Fish & <Loaves>"), std::string::npos);
    EXPECT_NE(text("hostile-pptx").find("Hezekiah 4:1-3"), std::string::npos);
    EXPECT_NE(text("empty-docx").find("Untitled Sermon"), std::string::npos);
    EXPECT_NE(text("many-pptx").find("CCC. Point 300"), std::string::npos);
    EXPECT_NE(text("many-docx").find("CCC. Point 300"), std::string::npos);
}

TEST_F(OfficeSuite, keepsALongSlideTitleClearOfTheLinesBelowIt) {
    // Word boxes on the title slide as LibreOffice draws them: the title's lowest word must end
    // above the speaker line.
    const std::string boxes =
        run("pdftotext -f 1 -l 1 -bbox " + quoted(*s_folder / "pdf" / "long-pptx.pdf") + " - 2>/dev/null");
    const std::regex word(R"#(<word xMin="[\d.]+" yMin="([\d.]+)" xMax="[\d.]+" yMax="([\d.]+)">([^<]*)</word>)#");
    double titleBottom = 0;
    double speakerTop = -1;
    std::string title;
    for (auto it = std::sregex_iterator(boxes.begin(), boxes.end(), word); it != std::sregex_iterator(); ++it) {
        if ((*it)[3].str() == "Speaker:") {
            speakerTop = std::stod((*it)[1].str());
            break;
        }
        title += (*it)[3].str() + " ";
        titleBottom = std::max(titleBottom, std::stod((*it)[2].str()));
    }
    ASSERT_GT(speakerTop, 0) << boxes;
    EXPECT_NE(title.find("Speech"), std::string::npos) << title; // the whole title is there
    EXPECT_LT(titleBottom, speakerTop) << title;
}

TEST_F(OfficeSuite, readsAnotherWordProcessorsRtfIntoPlainText) {
    const std::string& rtf = text("libreoffice.rtf");
    ASSERT_TRUE(rtf.starts_with("{\\rtf")) << "LibreOffice wrote no RTF";
    const std::string plain = RtfReader::read(rtf).plainText();
    for (const std::string expected : {"Grace & Truth", "I. Grace Given", "A. The Promise", "John 3:16 (KJV)"})
        EXPECT_NE(plain.find(expected), std::string::npos) << expected << "\n" << plain;
    EXPECT_EQ(plain.find("\\"), std::string::npos);
    EXPECT_EQ(plain.find("Times New Roman"), std::string::npos);
}

} // namespace quillon::exports
