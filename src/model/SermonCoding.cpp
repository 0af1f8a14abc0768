#include "model/SermonCoding.h"

#include "model/Base64.h"
#include "model/JsonWriter.h"
#include "platform/ParallelFor.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace quillon::model {

namespace {

using Json = OrderedJSON;

// ---- reading -----------------------------------------------------------------------------------
//
// The record readers are written once, as templates over a value type with the interface of
// JsonTree::Value: files are read through JsonTree (fast, no copies), while records built in
// memory as nlohmann documents are read through DomValue below.

/// An nlohmann value seen through the JsonTree::Value interface.
class DomValue {
public:
    explicit DomValue(const Json& json) : m_json(&json) {}

    JsonTree::Kind kind() const {
        if (m_json->is_number_unsigned())
            return JsonTree::Kind::unsignedInteger;
        if (m_json->is_number_integer())
            return JsonTree::Kind::integer;
        if (m_json->is_number_float())
            return JsonTree::Kind::floating;
        if (m_json->is_string())
            return JsonTree::Kind::string;
        if (m_json->is_array())
            return JsonTree::Kind::array;
        if (m_json->is_object())
            return JsonTree::Kind::object;
        if (m_json->is_boolean())
            return JsonTree::Kind::boolean;
        return JsonTree::Kind::null;
    }
    bool isNull() const { return m_json->is_null(); }
    bool isBoolean() const { return m_json->is_boolean(); }
    bool isNumber() const { return m_json->is_number(); }
    bool isString() const { return m_json->is_string(); }
    bool isArray() const { return m_json->is_array(); }
    bool isObject() const { return m_json->is_object(); }
    bool boolean() const { return m_json->get<bool>(); }
    std::int64_t integer() const { return m_json->get<std::int64_t>(); }
    std::uint64_t unsignedInteger() const { return m_json->get<std::uint64_t>(); }
    double number() const { return m_json->get<double>(); }
    std::string_view text() const { return m_json->get_ref<const std::string&>(); }
    std::size_t size() const { return m_json->size(); }

    std::optional<DomValue> find(std::string_view name) const {
        auto found = m_json->find(std::string(name));
        if (found == m_json->end())
            return std::nullopt;
        return DomValue(*found);
    }
    template <class Visit>
    void forEachMember(Visit&& visit) const {
        for (auto it = m_json->begin(); it != m_json->end(); ++it)
            visit(std::string_view(it.key()), DomValue(it.value()));
    }
    template <class Visit>
    void forEachElement(Visit&& visit) const {
        for (const auto& element : *m_json)
            visit(DomValue(element));
    }

private:
    const Json* m_json;
};

[[noreturn]] void fail(std::string_view key, const char* problem) {
    throw DecodingError("The value for “" + std::string(key) + "” " + problem + ".");
}

template <class V>
const V& requireObject(const V& json, const char* what) {
    if (!json.isObject())
        throw DecodingError(std::string("Expected ") + what + " to be a JSON object.");
    return json;
}

template <class V>
V required(const V& object, std::string_view key) {
    auto found = object.find(key);
    if (!found)
        throw DecodingError("The required value “" + std::string(key) + "” is missing.");
    return *found;
}

/// Null counts as absent for optional members, as a missing member does.
template <class V>
std::optional<V> optional(const V& object, std::string_view key) {
    auto found = object.find(key);
    if (!found || found->isNull())
        return std::nullopt;
    return found;
}

template <class V>
std::string_view textView(const V& value, std::string_view key) {
    if (!value.isString())
        fail(key, "is not text");
    return value.text();
}

template <class V>
std::string text(const V& value, std::string_view key) {
    return std::string(textView(value, key));
}

template <class V>
int integer(const V& value, std::string_view key) {
    if (value.isNumber()) {
        switch (value.kind()) {
        case JsonTree::Kind::unsignedInteger: {
            auto number = value.unsignedInteger();
            if (number > static_cast<std::uint64_t>(std::numeric_limits<int>::max()))
                fail(key, "is out of range");
            return static_cast<int>(number);
        }
        case JsonTree::Kind::integer: {
            auto number = value.integer();
            if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
                fail(key, "is out of range");
            return static_cast<int>(number);
        }
        default: {
            double number = value.number();
            // An integral float such as 3.0 is the same number; 3.5 is not an integer.
            if (std::trunc(number) == number && number >= std::numeric_limits<int>::min() &&
                number <= std::numeric_limits<int>::max())
                return static_cast<int>(number);
        }
        }
    }
    fail(key, "is not a whole number");
}

template <class V>
Uuid uuid(const V& value, std::string_view key) {
    auto parsed = Uuid::parse(textView(value, key));
    if (!parsed)
        fail(key, "is not a UUID");
    return *parsed;
}

template <class V>
DateTime dateTime(const V& value, std::string_view key) {
    auto parsed = parseDateTime(textView(value, key));
    if (!parsed)
        fail(key, "is not an ISO 8601 date-time in UTC with whole seconds");
    return *parsed;
}

template <class V>
std::string bytes(const V& value, std::string_view key) {
    auto decoded = decodeBase64(textView(value, key));
    if (!decoded)
        fail(key, "is not base64 data");
    return *decoded;
}

template <class V>
std::optional<std::string> optionalText(const V& object, std::string_view key) {
    if (auto value = optional(object, key))
        return text(*value, key);
    return std::nullopt;
}

template <class V>
std::optional<std::string> optionalBytes(const V& object, std::string_view key) {
    if (auto value = optional(object, key))
        return bytes(*value, key);
    return std::nullopt;
}

template <class V>
V requiredArray(const V& object, std::string_view key) {
    V value = required(object, key);
    if (!value.isArray())
        fail(key, "is not a list");
    return value;
}

template <class Record, class V, class Decode>
std::vector<Record> list(const V& array, Decode decode) {
    std::vector<Record> records;
    records.reserve(array.size());
    array.forEachElement([&](const V& element) { records.push_back(decode(element)); });
    return records;
}

template <class V>
UnknownJSONValue unknownValue(const V& json) {
    // Tried in the order null, Boolean, number, text, object, array, so true stays a Boolean.
    if (json.isNull())
        return {nullptr};
    if (json.isBoolean())
        return {json.boolean()};
    if (json.isNumber())
        return {json.number()};
    if (json.isString())
        return {std::string(json.text())};
    if (json.isObject()) {
        UnknownJSONObject object;
        object.reserve(json.size());
        json.forEachMember([&](std::string_view name, const V& member) {
            object.emplace_back(std::string(name), unknownValue(member));
        });
        return {std::move(object)};
    }
    if (json.isArray()) {
        UnknownJSONArray array;
        array.reserve(json.size());
        json.forEachElement([&](const V& element) { array.push_back(unknownValue(element)); });
        return {std::move(array)};
    }
    throw DecodingError("Unsupported JSON value in a field this app does not model.");
}

template <class V>
UnknownFields unknownMembers(const V& object, const std::set<std::string, std::less<>>& knownKeys) {
    UnknownFields fields;
    object.forEachMember([&](std::string_view name, const V& value) {
        if (!knownKeys.contains(name))
            fields.emplace_back(std::string(name), unknownValue(value));
    });
    return fields;
}

// ---- writing -----------------------------------------------------------------------------------

Json number(double value) {
    // A whole number is written without a fraction (1, not 1.0), as it was read.
    constexpr double exactIntegerLimit = 9007199254740992.0; // 2^53
    if (std::isfinite(value) && std::trunc(value) == value && std::fabs(value) < exactIntegerLimit)
        return static_cast<std::int64_t>(value);
    return value;
}

void putOptional(Json& object, const char* key, const std::optional<std::string>& value) {
    if (value)
        object[key] = *value;
}

void putOptionalBytes(Json& object, const char* key, const std::optional<std::string>& value) {
    if (value)
        object[key] = encodeBase64(*value);
}

void putUnknown(Json& object, const UnknownFields& fields) {
    for (const auto& [name, value] : fields)
        object[name] = encodeUnknownJSONValue(value);
}

const std::set<std::string, std::less<>> scriptureKeys = {
    "id",      "bookName",  "chapter",        "startVerse",      "endVerse",
    "version", "sortOrder", "wordHighlights", "breakIndicators", "textColorHex"};
const std::set<std::string, std::less<>> subTopicKeys = {"id",         "title",     "details",     "detailsRTFData",
                                                         "scriptures", "sortOrder", "textColorHex"};
const std::set<std::string, std::less<>> topicKeys = {"id",        "title",     "details",     "detailsRTFData",
                                                      "subTopics", "sortOrder", "textColorHex"};
const std::set<std::string, std::less<>> sermonKeys = {"id",
                                                       "title",
                                                       "date",
                                                       "speaker",
                                                       "series",
                                                       "venue",
                                                       "topics",
                                                       "notes",
                                                       "notesRTFData",
                                                       "textColorHex",
                                                       "createdAt",
                                                       "modifiedAt",
                                                       "coverImageFileName",
                                                       "tags"};

} // namespace

// ---- unknown values ----------------------------------------------------------------------------

UnknownJSONValue decodeUnknownJSONValue(const Json& json) {
    return unknownValue(DomValue(json));
}

Json encodeUnknownJSONValue(const UnknownJSONValue& value) {
    struct Encoder {
        Json operator()(std::nullptr_t) const { return nullptr; }
        Json operator()(bool flag) const { return flag; }
        Json operator()(double value) const { return number(value); }
        Json operator()(const std::string& text) const { return text; }
        Json operator()(const UnknownJSONObject& object) const {
            Json json = Json::object();
            for (const auto& [name, member] : object)
                json[name] = encodeUnknownJSONValue(member);
            return json;
        }
        Json operator()(const UnknownJSONArray& array) const {
            Json json = Json::array();
            for (const auto& element : array)
                json.push_back(encodeUnknownJSONValue(element));
            return json;
        }
    };
    return std::visit(Encoder{}, value.value);
}

// ---- records -----------------------------------------------------------------------------------

namespace {

template <class V>
SermonScripture scriptureFrom(const V& json) {
    const V& object = requireObject(json, "a scripture");
    SermonScripture scripture;
    scripture.id = uuid(required(object, "id"), "id");
    scripture.bookName = text(required(object, "bookName"), "bookName");
    scripture.chapter = integer(required(object, "chapter"), "chapter");
    scripture.startVerse = integer(required(object, "startVerse"), "startVerse");
    scripture.endVerse = integer(required(object, "endVerse"), "endVerse");
    auto version = bibleVersionFromRawValue(textView(required(object, "version"), "version"));
    if (!version)
        fail("version", "is not a known Bible version");
    scripture.version = *version;
    scripture.sortOrder = integer(required(object, "sortOrder"), "sortOrder");

    const V highlights = required(object, "wordHighlights");
    if (!highlights.isObject())
        fail("wordHighlights", "is not an object");
    highlights.forEachMember([&](std::string_view name, const V& colour) {
        // std::stoi's rules (leading blanks and a sign allowed, the whole name used) are the file format's.
        const std::string key(name);
        size_t used = 0;
        int position = 0;
        try {
            position = std::stoi(key, &used);
        } catch (const std::exception&) {
            used = 0;
        }
        if (used == 0 || used != key.size())
            fail("wordHighlights", "has a member name that is not a whole number");
        scripture.wordHighlights[position] = text(colour, "wordHighlights");
    });
    const V breaks = requiredArray(object, "breakIndicators");
    scripture.breakIndicators.reserve(breaks.size());
    breaks.forEachElement(
        [&](const V& element) { scripture.breakIndicators.push_back(integer(element, "breakIndicators")); });
    scripture.textColorHex = optionalText(object, "textColorHex");
    scripture.unknownFields = unknownMembers(object, scriptureKeys);
    return scripture;
}

template <class V>
SermonSubTopic subTopicFrom(const V& json) {
    const V& object = requireObject(json, "a sub-topic");
    SermonSubTopic subTopic;
    subTopic.id = uuid(required(object, "id"), "id");
    subTopic.title = text(required(object, "title"), "title");
    subTopic.details = text(required(object, "details"), "details");
    subTopic.detailsRTFData = optionalBytes(object, "detailsRTFData");
    subTopic.scriptures = list<SermonScripture>(requiredArray(object, "scriptures"), scriptureFrom<V>);
    subTopic.sortOrder = integer(required(object, "sortOrder"), "sortOrder");
    subTopic.textColorHex = optionalText(object, "textColorHex");
    subTopic.unknownFields = unknownMembers(object, subTopicKeys);
    return subTopic;
}

template <class V>
SermonTopic topicFrom(const V& json) {
    const V& object = requireObject(json, "a topic");
    SermonTopic topic;
    topic.id = uuid(required(object, "id"), "id");
    topic.title = text(required(object, "title"), "title");
    topic.details = text(required(object, "details"), "details");
    topic.detailsRTFData = optionalBytes(object, "detailsRTFData");
    topic.subTopics = list<SermonSubTopic>(requiredArray(object, "subTopics"), subTopicFrom<V>);
    topic.sortOrder = integer(required(object, "sortOrder"), "sortOrder");
    topic.textColorHex = optionalText(object, "textColorHex");
    topic.unknownFields = unknownMembers(object, topicKeys);
    return topic;
}

template <class V>
SermonNote sermonFrom(const V& json) {
    const V& object = requireObject(json, "a sermon");
    SermonNote sermon;
    sermon.id = uuid(required(object, "id"), "id");
    sermon.title = text(required(object, "title"), "title");
    sermon.date = dateTime(required(object, "date"), "date");
    sermon.speaker = text(required(object, "speaker"), "speaker");
    sermon.series = optionalText(object, "series");
    sermon.venue = optionalText(object, "venue");
    sermon.topics = list<SermonTopic>(requiredArray(object, "topics"), topicFrom<V>);
    sermon.notes = text(required(object, "notes"), "notes");
    sermon.notesRTFData = optionalBytes(object, "notesRTFData");
    sermon.textColorHex = optionalText(object, "textColorHex");
    sermon.createdAt = dateTime(required(object, "createdAt"), "createdAt");
    sermon.modifiedAt = dateTime(required(object, "modifiedAt"), "modifiedAt");
    sermon.coverImageFileName = optionalText(object, "coverImageFileName");
    if (auto tags = optional(object, "tags")) {
        if (!tags->isArray())
            fail("tags", "is not a list");
        sermon.tags.reserve(tags->size());
        tags->forEachElement([&](const V& tag) { sermon.tags.push_back(text(tag, "tags")); });
    }
    sermon.unknownFields = unknownMembers(object, sermonKeys);
    return sermon;
}

template <class V>
std::vector<SermonNote> sermonList(const V& array) {
    return list<SermonNote>(array, sermonFrom<V>);
}

/// An archive holds thousands of independent sermons: they are decoded on several threads.
std::vector<SermonNote> sermonList(const JsonTree::Value& array) {
    std::vector<JsonTree::Value> elements;
    elements.reserve(array.size());
    array.forEachElement([&](const JsonTree::Value& element) { elements.push_back(element); });
    std::vector<std::optional<SermonNote>> decoded(elements.size());
    platform::parallelFor(elements.size(), [&](std::size_t index) { decoded[index] = sermonFrom(elements[index]); });
    std::vector<SermonNote> sermons;
    sermons.reserve(decoded.size());
    for (auto& sermon : decoded)
        sermons.push_back(std::move(*sermon));
    return sermons;
}

template <class V>
SermonNoteExport exportFrom(const V& json) {
    const V& object = requireObject(json, "an archive");
    SermonNoteExport archive;
    archive.version = integer(required(object, "version"), "version");
    archive.appIdentifier = text(required(object, "appIdentifier"), "appIdentifier");
    archive.exportDate = dateTime(required(object, "exportDate"), "exportDate");
    archive.sermons = sermonList(requiredArray(object, "sermons"));
    return archive;
}

} // namespace

SermonScripture decodeSermonScripture(const Json& json) {
    return scriptureFrom(DomValue(json));
}

SermonSubTopic decodeSermonSubTopic(const Json& json) {
    return subTopicFrom(DomValue(json));
}

SermonTopic decodeSermonTopic(const Json& json) {
    return topicFrom(DomValue(json));
}

SermonNote decodeSermonNote(const Json& json) {
    return sermonFrom(DomValue(json));
}

SermonNoteExport decodeSermonNoteExport(const Json& json) {
    return exportFrom(DomValue(json));
}

SermonNote decodeSermonNote(const JsonTree::Value& json) {
    return sermonFrom(json);
}

SermonNoteExport decodeSermonNoteExport(const JsonTree::Value& json) {
    return exportFrom(json);
}

std::vector<SermonNote> decodeSermonList(const JsonTree::Value& json) {
    if (!json.isArray())
        throw DecodingError("Expected a list of sermons.");
    return sermonList(json);
}

Json encodeSermonScripture(const SermonScripture& scripture) {
    Json json = Json::object();
    json["id"] = scripture.id.text();
    json["bookName"] = scripture.bookName;
    json["chapter"] = scripture.chapter;
    json["startVerse"] = scripture.startVerse;
    json["endVerse"] = scripture.endVerse;
    json["version"] = std::string(rawValue(scripture.version));
    json["sortOrder"] = scripture.sortOrder;
    Json highlights = Json::object();
    for (const auto& [position, colour] : scripture.wordHighlights)
        highlights[std::to_string(position)] = colour;
    json["wordHighlights"] = std::move(highlights);
    json["breakIndicators"] = scripture.breakIndicators;
    putOptional(json, "textColorHex", scripture.textColorHex);
    putUnknown(json, scripture.unknownFields);
    return json;
}

Json encodeSermonSubTopic(const SermonSubTopic& subTopic) {
    Json json = Json::object();
    json["id"] = subTopic.id.text();
    json["title"] = subTopic.title;
    json["details"] = subTopic.details;
    putOptionalBytes(json, "detailsRTFData", subTopic.detailsRTFData);
    Json scriptures = Json::array();
    for (const auto& scripture : subTopic.scriptures)
        scriptures.push_back(encodeSermonScripture(scripture));
    json["scriptures"] = std::move(scriptures);
    json["sortOrder"] = subTopic.sortOrder;
    putOptional(json, "textColorHex", subTopic.textColorHex);
    putUnknown(json, subTopic.unknownFields);
    return json;
}

Json encodeSermonTopic(const SermonTopic& topic) {
    Json json = Json::object();
    json["id"] = topic.id.text();
    json["title"] = topic.title;
    json["details"] = topic.details;
    putOptionalBytes(json, "detailsRTFData", topic.detailsRTFData);
    Json subTopics = Json::array();
    for (const auto& subTopic : topic.subTopics)
        subTopics.push_back(encodeSermonSubTopic(subTopic));
    json["subTopics"] = std::move(subTopics);
    json["sortOrder"] = topic.sortOrder;
    putOptional(json, "textColorHex", topic.textColorHex);
    putUnknown(json, topic.unknownFields);
    return json;
}

Json encodeSermonNote(const SermonNote& sermon) {
    Json json = Json::object();
    json["id"] = sermon.id.text();
    json["title"] = sermon.title;
    json["date"] = formatDateTime(sermon.date);
    json["speaker"] = sermon.speaker;
    putOptional(json, "series", sermon.series);
    putOptional(json, "venue", sermon.venue);
    Json topics = Json::array();
    for (const auto& topic : sermon.topics)
        topics.push_back(encodeSermonTopic(topic));
    json["topics"] = std::move(topics);
    json["notes"] = sermon.notes;
    putOptionalBytes(json, "notesRTFData", sermon.notesRTFData);
    putOptional(json, "textColorHex", sermon.textColorHex);
    json["createdAt"] = formatDateTime(sermon.createdAt);
    json["modifiedAt"] = formatDateTime(sermon.modifiedAt);
    putOptional(json, "coverImageFileName", sermon.coverImageFileName);
    json["tags"] = sermon.tags;
    putUnknown(json, sermon.unknownFields);
    return json;
}

Json encodeSermonNoteExport(const SermonNoteExport& archive) {
    Json json = Json::object();
    json["version"] = archive.version;
    json["appIdentifier"] = archive.appIdentifier;
    json["exportDate"] = formatDateTime(archive.exportDate);
    Json sermons = Json::array();
    for (const auto& sermon : archive.sermons)
        sermons.push_back(encodeSermonNote(sermon));
    json["sermons"] = std::move(sermons);
    return json;
}

// ---- writing straight to text ------------------------------------------------------------------
//
// The same member order and rules as the encode functions above, without building a document.
// Records whose unknown members could not be written member by member in the document's way (a
// name repeated, or equal to a known key, which the document would merge) take the document path.

namespace {

bool hasDistinctNames(const UnknownJSONObject& object, const std::set<std::string, std::less<>>* knownKeys);

bool hasDistinctNames(const UnknownJSONValue& value) {
    if (const auto* object = std::get_if<UnknownJSONObject>(&value.value))
        return hasDistinctNames(*object, nullptr);
    if (const auto* array = std::get_if<UnknownJSONArray>(&value.value))
        return std::all_of(array->begin(), array->end(), [](const auto& element) { return hasDistinctNames(element); });
    return true;
}

bool hasDistinctNames(const UnknownJSONObject& object, const std::set<std::string, std::less<>>* knownKeys) {
    for (std::size_t i = 0; i < object.size(); ++i) {
        const std::string& name = object[i].first;
        if (knownKeys && knownKeys->contains(name))
            return false;
        for (std::size_t j = 0; j < i; ++j)
            if (object[j].first == name)
                return false;
        if (!hasDistinctNames(object[i].second))
            return false;
    }
    return true;
}

bool writesMemberByMember(const SermonNote& sermon) {
    if (!hasDistinctNames(sermon.unknownFields, &sermonKeys))
        return false;
    for (const auto& topic : sermon.topics) {
        if (!hasDistinctNames(topic.unknownFields, &topicKeys))
            return false;
        for (const auto& subTopic : topic.subTopics) {
            if (!hasDistinctNames(subTopic.unknownFields, &subTopicKeys))
                return false;
            for (const auto& scripture : subTopic.scriptures)
                if (!hasDistinctNames(scripture.unknownFields, &scriptureKeys))
                    return false;
        }
    }
    return true;
}

void write(JsonWriter& out, const UnknownJSONValue& value) {
    struct Writer {
        JsonWriter& out;
        void operator()(std::nullptr_t) const { out.null(); }
        void operator()(bool flag) const { out.boolean(flag); }
        void operator()(double value) const {
            // As number() above: a whole number is written without a fraction.
            constexpr double exactIntegerLimit = 9007199254740992.0; // 2^53
            if (std::isfinite(value) && std::trunc(value) == value && std::fabs(value) < exactIntegerLimit)
                out.integer(static_cast<std::int64_t>(value));
            else
                out.floating(value);
        }
        void operator()(const std::string& text) const { out.string(text); }
        void operator()(const UnknownJSONObject& object) const {
            out.beginObject();
            for (const auto& [name, member] : object) {
                out.key(name);
                write(out, member);
            }
            out.endObject();
        }
        void operator()(const UnknownJSONArray& array) const {
            out.beginArray();
            for (const auto& element : array)
                write(out, element);
            out.endArray();
        }
    };
    std::visit(Writer{out}, value.value);
}

void writeUnknown(JsonWriter& out, const UnknownFields& fields) {
    for (const auto& [name, value] : fields) {
        out.key(name);
        write(out, value);
    }
}

void writeText(JsonWriter& out, std::string_view key, std::string_view text) {
    out.key(key);
    out.string(text);
}

void writeOptional(JsonWriter& out, std::string_view key, const std::optional<std::string>& text) {
    if (text)
        writeText(out, key, *text);
}

void writeOptionalBytes(JsonWriter& out, std::string_view key, const std::optional<std::string>& bytes) {
    if (bytes)
        writeText(out, key, encodeBase64(*bytes));
}

void writeInteger(JsonWriter& out, std::string_view key, std::int64_t number) {
    out.key(key);
    out.integer(number);
}

void write(JsonWriter& out, const SermonScripture& scripture) {
    out.beginObject();
    writeText(out, "id", scripture.id.text());
    writeText(out, "bookName", scripture.bookName);
    writeInteger(out, "chapter", scripture.chapter);
    writeInteger(out, "startVerse", scripture.startVerse);
    writeInteger(out, "endVerse", scripture.endVerse);
    writeText(out, "version", rawValue(scripture.version));
    writeInteger(out, "sortOrder", scripture.sortOrder);
    out.key("wordHighlights");
    out.beginObject();
    for (const auto& [position, colour] : scripture.wordHighlights)
        writeText(out, std::to_string(position), colour);
    out.endObject();
    out.key("breakIndicators");
    out.beginArray();
    for (int position : scripture.breakIndicators)
        out.integer(position);
    out.endArray();
    writeOptional(out, "textColorHex", scripture.textColorHex);
    writeUnknown(out, scripture.unknownFields);
    out.endObject();
}

void write(JsonWriter& out, const SermonSubTopic& subTopic) {
    out.beginObject();
    writeText(out, "id", subTopic.id.text());
    writeText(out, "title", subTopic.title);
    writeText(out, "details", subTopic.details);
    writeOptionalBytes(out, "detailsRTFData", subTopic.detailsRTFData);
    out.key("scriptures");
    out.beginArray();
    for (const auto& scripture : subTopic.scriptures)
        write(out, scripture);
    out.endArray();
    writeInteger(out, "sortOrder", subTopic.sortOrder);
    writeOptional(out, "textColorHex", subTopic.textColorHex);
    writeUnknown(out, subTopic.unknownFields);
    out.endObject();
}

void write(JsonWriter& out, const SermonTopic& topic) {
    out.beginObject();
    writeText(out, "id", topic.id.text());
    writeText(out, "title", topic.title);
    writeText(out, "details", topic.details);
    writeOptionalBytes(out, "detailsRTFData", topic.detailsRTFData);
    out.key("subTopics");
    out.beginArray();
    for (const auto& subTopic : topic.subTopics)
        write(out, subTopic);
    out.endArray();
    writeInteger(out, "sortOrder", topic.sortOrder);
    writeOptional(out, "textColorHex", topic.textColorHex);
    writeUnknown(out, topic.unknownFields);
    out.endObject();
}

void write(JsonWriter& out, const SermonNote& sermon) {
    out.beginObject();
    writeText(out, "id", sermon.id.text());
    writeText(out, "title", sermon.title);
    writeText(out, "date", formatDateTime(sermon.date));
    writeText(out, "speaker", sermon.speaker);
    writeOptional(out, "series", sermon.series);
    writeOptional(out, "venue", sermon.venue);
    out.key("topics");
    out.beginArray();
    for (const auto& topic : sermon.topics)
        write(out, topic);
    out.endArray();
    writeText(out, "notes", sermon.notes);
    writeOptionalBytes(out, "notesRTFData", sermon.notesRTFData);
    writeOptional(out, "textColorHex", sermon.textColorHex);
    writeText(out, "createdAt", formatDateTime(sermon.createdAt));
    writeText(out, "modifiedAt", formatDateTime(sermon.modifiedAt));
    writeOptional(out, "coverImageFileName", sermon.coverImageFileName);
    out.key("tags");
    out.beginArray();
    for (const auto& tag : sermon.tags)
        out.string(tag);
    out.endArray();
    writeUnknown(out, sermon.unknownFields);
    out.endObject();
}

/// A sermon's text at `depth` levels of indentation (its first line not indented).
std::string sermonText(const SermonNote& sermon, std::size_t depth) {
    std::string text;
    if (!writesMemberByMember(sermon)) {
        text = encodeSermonNote(sermon).dump(2, ' ', false, Json::error_handler_t::replace);
        if (depth > 0) {
            const std::string indented = "\n" + std::string(depth * 2, ' ');
            for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + indented.size()))
                text.replace(at, 1, indented);
        }
        return text;
    }
    text.reserve(64 * 1024);
    JsonWriter out(text);
    // The writer indents relative to its own nesting; deeper starts are made by opening levels.
    for (std::size_t level = 0; level < depth; ++level)
        out.beginArray();
    write(out, sermon);
    if (depth == 0)
        return text;
    // Drop the opening brackets and their line breaks: what is left starts with the sermon's "{".
    return text.substr(text.find('{'));
}

} // namespace

std::string encodeSermonFile(const SermonNote& sermon) {
    // Text that is not valid UTF-8 (typed in by a tool that mangled it) is written with
    // replacement characters rather than failing the save.
    return sermonText(sermon, 0) + "\n";
}

std::string encodeSermonArchive(const std::vector<SermonNote>& sermons, std::string_view appIdentifier,
                                DateTime exportDate) {
    std::string text = "{\n  \"version\": 1,\n  \"appIdentifier\": ";
    JsonWriter(text).string(appIdentifier);
    text += ",\n  \"exportDate\": \"" + formatDateTime(exportDate) + "\",\n  \"sermons\": ";
    if (sermons.empty()) {
        text += "[]\n}\n";
        return text;
    }
    // Each sermon is written on its own thread's string and the pieces joined in order.
    std::vector<std::string> pieces(sermons.size());
    platform::parallelFor(sermons.size(), [&](std::size_t index) { pieces[index] = sermonText(sermons[index], 2); });
    std::size_t total = text.size() + 16;
    for (const auto& piece : pieces)
        total += piece.size() + 6;
    text.reserve(total);
    text += '[';
    for (std::size_t index = 0; index < pieces.size(); ++index) {
        text += index == 0 ? "\n    " : ",\n    ";
        text += pieces[index];
        std::string().swap(pieces[index]);
    }
    text += "\n  ]\n}\n";
    return text;
}

SermonNote decodeSermonFile(std::string_view bytes) {
    return sermonFrom(JsonTree::parse(bytes).root());
}

} // namespace quillon::model
