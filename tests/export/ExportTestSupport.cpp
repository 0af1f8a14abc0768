#include "ExportTestSupport.h"

#include "model/BibleVersion.h"

#include <zip.h>

#include <cstdio>
#include <memory>
#include <regex>
#include <stdexcept>

namespace quillon::testing {

model::SermonScripture scripture(std::string book, int chapter, int start, int end, model::BibleVersion version) {
    model::SermonScripture s;
    s.id = model::Uuid::random();
    s.bookName = std::move(book);
    s.chapter = chapter;
    s.startVerse = start;
    s.endVerse = end;
    s.version = version;
    return s;
}

model::SermonNote sampleSermon() {
    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = "Grace & Truth";
    sermon.speaker = "Ada Preacher";
    sermon.series = "Gospel of John";
    sermon.notes = "Open with the story.\nClose in prayer.";

    model::SermonTopic grace;
    grace.id = model::Uuid::random();
    grace.title = "Grace Given";
    grace.details = "God gives first.";
    model::SermonSubTopic promise;
    promise.id = model::Uuid::random();
    promise.title = "The Promise";
    promise.details = "Application line";
    promise.scriptures.push_back(scripture("John", 3, 16, 16));
    promise.scriptures.push_back(scripture("Romans", 5, 1, 2, model::BibleVersion::nkjv));
    grace.subTopics.push_back(promise);

    model::SermonTopic truth;
    truth.id = model::Uuid::random();
    truth.title = "Truth Spoken";
    model::SermonSubTopic word;
    word.id = model::Uuid::random();
    word.title = "The Word";
    word.scriptures.push_back(scripture("John", 1, 14, 14));
    truth.subTopics.push_back(word);

    sermon.topics = {grace, truth};
    return sermon;
}

model::SermonNote largeSermon(int topics) {
    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = "A Long Series Sermon";
    sermon.speaker = "Ada Preacher";
    for (int t = 1; t <= topics; ++t) {
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = "Main point " + std::to_string(t);
        topic.details = "Notes for the main point, a sentence or two long, as preachers write them.";
        for (int s = 1; s <= 3; ++s) {
            model::SermonSubTopic sub;
            sub.id = model::Uuid::random();
            sub.title = "Sub-point " + std::to_string(t) + "." + std::to_string(s);
            sub.details = "What this means for the listener on Monday morning.";
            sub.scriptures.push_back(scripture("John", 3, 16, 17));
            sub.scriptures.push_back(scripture("Psalms", 23, 1, 6, model::BibleVersion::asv));
            topic.subTopics.push_back(sub);
        }
        sermon.topics.push_back(topic);
    }
    return sermon;
}

exports::PassageText FixedVerses::passage(const model::SermonScripture& s) const {
    exports::PassageText result;
    for (auto version : available)
        result.versionAvailable = result.versionAvailable || version == s.version;
    if (!result.versionAvailable)
        return result;
    const std::string key = std::string(model::rawValue(s.version)) + " " + s.bookName + " " +
                            std::to_string(s.chapter) + ":" + std::to_string(s.startVerse);
    if (auto found = texts.find(key); found != texts.end())
        result.text = found->second;
    return result;
}

exports::ReferenceRecognizer fakeRecognizer() {
    return [](std::string_view text) -> std::optional<exports::RecognizedPassage> {
        static const std::regex pattern(R"(^(John|Romans|Psalms|Psalm|1 John)\s+(\d+)(?::(\d+)(?:-(\d+))?)?$)",
                                        std::regex::icase);
        std::cmatch match;
        if (!std::regex_match(text.begin(), text.end(), match, pattern))
            return std::nullopt;
        exports::RecognizedPassage passage;
        passage.bookName = match[1].str();
        passage.chapter = std::stoi(match[2].str());
        passage.startVerse = match[3].matched ? std::stoi(match[3].str()) : 1;
        passage.endVerse = match[4].matched ? std::stoi(match[4].str()) : passage.startVerse;
        return passage;
    };
}

std::vector<std::pair<std::string, std::string>> zipEntries(std::string_view zipBytes) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_create(zipBytes.data(), zipBytes.size(), 0, &error);
    zip_t* archive = zip_open_from_source(source, ZIP_RDONLY, &error);
    if (!archive) {
        zip_source_free(source);
        throw std::runtime_error("not a zip");
    }
    std::vector<std::pair<std::string, std::string>> entries;
    for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i) {
        const auto index = static_cast<zip_uint64_t>(i);
        zip_file_t* file = zip_fopen_index(archive, index, 0);
        std::string content;
        char chunk[8192];
        for (zip_int64_t n; (n = zip_fread(file, chunk, sizeof chunk)) > 0;)
            content.append(chunk, static_cast<std::size_t>(n));
        zip_fclose(file);
        entries.emplace_back(zip_get_name(archive, index, 0), content);
    }
    zip_discard(archive);
    return entries;
}

std::string zipEntry(std::string_view zipBytes, std::string_view name) {
    for (auto& [entry, content] : zipEntries(zipBytes))
        if (entry == name)
            return content;
    return {};
}

std::string commandOutput(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    char buffer[4096];
    for (std::size_t n; pipe && (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, n);
    if (pipe)
        pclose(pipe);
    return output;
}

std::string makeZip(const std::vector<std::pair<std::string, std::string>>& entries) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* buffer = zip_source_buffer_create(nullptr, 0, 0, &error);
    zip_source_keep(buffer);
    zip_t* archive = zip_open_from_source(buffer, ZIP_TRUNCATE, &error);
    for (const auto& [name, content] : entries)
        zip_file_add(archive, name.c_str(), zip_source_buffer(archive, content.data(), content.size(), 0), 0);
    zip_close(archive);
    zip_source_open(buffer);
    std::string bytes;
    char chunk[65536];
    for (zip_int64_t n; (n = zip_source_read(buffer, chunk, sizeof chunk)) > 0;)
        bytes.append(chunk, static_cast<std::size_t>(n));
    zip_source_close(buffer);
    zip_source_free(buffer);
    return bytes;
}

} // namespace quillon::testing
