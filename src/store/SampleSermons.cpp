#include "store/SampleSermons.h"

#include "scripture/ReferenceParser.h"

#include <spdlog/spdlog.h>

#include <cstdint>
#include <string_view>

namespace quillon::store {

namespace {

std::uint64_t fnv1a(std::string_view text, std::uint64_t seed) {
    std::uint64_t hash = seed;
    for (unsigned char c : text) {
        hash ^= c;
        hash *= 0x100000001b3ULL;
    }
    return hash;
}

/// A stable identity for the part of a sample named by `path`, shaped like a random (version 4)
/// identifier so nothing downstream treats it differently.
model::Uuid derivedId(const model::Uuid& sampleId, std::string_view path) {
    const std::string key = sampleId.text() + "/" + std::string(path);
    const std::uint64_t high = fnv1a(key, 0xcbf29ce484222325ULL);
    const std::uint64_t low = fnv1a(key, 0x84222325cbf29ce4ULL ^ high);
    model::Uuid id;
    for (int index = 0; index < 8; ++index) {
        id.bytes[static_cast<std::size_t>(index)] = static_cast<std::uint8_t>(high >> (56 - 8 * index));
        id.bytes[static_cast<std::size_t>(index + 8)] = static_cast<std::uint8_t>(low >> (56 - 8 * index));
    }
    id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0F) | 0x40);
    id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3F) | 0x80);
    return id;
}

std::optional<model::SermonScripture> scriptureFor(std::string_view reference) {
    auto parsed = scripture::parse(reference);
    if (!parsed)
        return std::nullopt;
    model::SermonScripture scripture;
    scripture.bookName = parsed->book.name;
    scripture.chapter = parsed->chapter;
    scripture.startVerse = parsed->firstVerse().value_or(1);
    scripture.endVerse = parsed->lastVerse().value_or(scripture.startVerse);
    return scripture;
}

std::string describe(const SampleScriptureReference& reference) {
    std::string text =
        reference.bookName + " " + std::to_string(reference.chapter) + ":" + std::to_string(reference.startVerse);
    if (reference.endVerse != reference.startVerse)
        text += "-" + std::to_string(reference.endVerse);
    return text;
}

/// A definition without authored topics still gives a usable outline: one topic per listed title,
/// one sub-topic per angle, and the listed passages dealt out in turn.
std::vector<AuthoredTopic> outlineFromTitles(const SampleSermonDefinition& definition) {
    std::vector<AuthoredTopic> topics;
    std::size_t nextScripture = 0;
    for (const std::string& title : definition.topics) {
        AuthoredTopic topic{title, definition.focus, {}};
        for (const std::string& angle : definition.subtopicAngles) {
            AuthoredSubTopic subTopic{angle, {}, {}};
            if (!definition.scriptures.empty())
                subTopic.scriptures.push_back(
                    {describe(definition.scriptures[nextScripture++ % definition.scriptures.size()]), {}});
            topic.subTopics.push_back(std::move(subTopic));
        }
        topics.push_back(std::move(topic));
    }
    return topics;
}

} // namespace

model::SermonNote buildSampleSermon(const SampleSermonDefinition& definition, model::DateTime now) {
    model::SermonNote sermon;
    sermon.id = model::Uuid::parse(definition.id).value_or(derivedId({}, definition.title));
    sermon.title = definition.title;
    sermon.date = now;
    sermon.series = definition.series;
    sermon.notes = definition.notes;
    sermon.createdAt = now;
    sermon.modifiedAt = now;

    const std::vector<AuthoredTopic> authored =
        definition.authoredTopics.empty() ? outlineFromTitles(definition) : definition.authoredTopics;
    for (std::size_t t = 0; t < authored.size(); ++t) {
        const AuthoredTopic& source = authored[t];
        model::SermonTopic topic;
        topic.id = derivedId(sermon.id, std::to_string(t));
        topic.title = source.title;
        topic.details = source.summary;
        topic.sortOrder = static_cast<int>(t);
        for (std::size_t s = 0; s < source.subTopics.size(); ++s) {
            const AuthoredSubTopic& subSource = source.subTopics[s];
            model::SermonSubTopic subTopic;
            const std::string path = std::to_string(t) + "/" + std::to_string(s);
            subTopic.id = derivedId(sermon.id, path);
            subTopic.title = subSource.title;
            subTopic.details = subSource.summary;
            subTopic.sortOrder = static_cast<int>(s);
            for (std::size_t r = 0; r < subSource.scriptures.size(); ++r) {
                const AuthoredScripture& authoredScripture = subSource.scriptures[r];
                auto scripture = scriptureFor(authoredScripture.reference);
                if (!scripture) {
                    spdlog::warn("Sample sermon “{}” names “{}”, which is not a reference", definition.title,
                                 authoredScripture.reference);
                    continue;
                }
                scripture->id = derivedId(sermon.id, path + "/" + std::to_string(r));
                scripture->sortOrder = static_cast<int>(subTopic.scriptures.size());
                subTopic.scriptures.push_back(std::move(*scripture));
                // The record has no place of its own for the insight, so it is kept with the sub-point.
                if (!authoredScripture.insight.empty())
                    subTopic.details += "\n\n" + authoredScripture.reference + " — " + authoredScripture.insight;
            }
            topic.subTopics.push_back(std::move(subTopic));
        }
        sermon.topics.push_back(std::move(topic));
    }
    return sermon;
}

std::vector<model::SermonNote> buildSampleSermons(model::DateTime now) {
    std::vector<model::SermonNote> sermons;
    for (const SampleSermonDefinition& definition : sampleSermonDefinitions())
        sermons.push_back(buildSampleSermon(definition, now));
    return sermons;
}

bool isSampleSermon(const model::Uuid& id) {
    for (const SampleSermonDefinition& definition : sampleSermonDefinitions())
        if (model::Uuid::parse(definition.id) == id)
            return true;
    return false;
}

} // namespace quillon::store
