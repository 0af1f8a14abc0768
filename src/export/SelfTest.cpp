#include "export/SelfTest.h"

#include "model/SermonDocument.h"

namespace quillon::exports {

std::vector<SelfTestResult> SelfTest::run(model::DateTime now) const {
    std::vector<SelfTestResult> results;

    const auto draft = OutlineParser(m_recognize).parse("I. Grace\nA. Promise\nJohn 3:16\nApplication line");
    const std::size_t topics = draft.topics.size();
    results.push_back(
        {"Import parser", topics == 1,
         topics == 1 ? ""
                     : "Self-test: the import parser produced " + std::to_string(topics) + " topics, expected 1."});

    model::SermonScripture john;
    john.bookName = "John";
    john.chapter = 3;
    john.startVerse = 16;
    john.endVerse = 16;
    john.version = model::BibleVersion::kjv;
    const bool found = !m_verses.passage(john).text.empty();
    results.push_back(
        {"Bible loader", found, found ? "" : "Self-test: the Bible loader returned no text for John 3:16."});

    model::SermonNote sample = draft;
    sample.title = "Self-test";
    std::string archive;
    try {
        archive = model::encodeArchive({sample}, now);
    } catch (const std::exception&) {
        archive.clear();
    }
    results.push_back(
        {"Archive export", !archive.empty(), archive.empty() ? "Self-test: archive export returned no data." : ""});
    return results;
}

} // namespace quillon::exports
