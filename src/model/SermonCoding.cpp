#include "model/SermonCoding.h"

#include "model/Base64.h"

#include <cmath>
#include <limits>
#include <set>

namespace quillon::model {

namespace {

using Json = OrderedJSON;

// ---- reading -----------------------------------------------------------------------------------

[[noreturn]] void fail(const std::string& key, const std::string& problem) {
    throw DecodingError("The value for “" + key + "” " + problem + ".");
}

const Json& requireObject(const Json& json, const char* what) {
    if (!json.is_object())
        throw DecodingError(std::string("Expected ") + what + " to be a JSON object.");
    return json;
}

const Json& required(const Json& object, const std::string& key) {
    auto found = object.find(key);
    if (found == object.end())
        throw DecodingError("The required value “" + key + "” is missing.");
    return *found;
}

/// Null counts as absent for optional members, as a missing member does.
const Json* optional(const Json& object, const std::string& key) {
    auto found = object.find(key);
    if (found == object.end() || found->is_null())
        return nullptr;
    return &*found;
}

std::string text(const Json& value, const std::string& key) {
    if (!value.is_string())
        fail(key, "is not text");
    return value.get<std::string>();
}

int integer(const Json& value, const std::string& key) {
    if (value.is_number_integer() || value.is_number_unsigned()) {
        if (value.is_number_unsigned()) {
            auto number = value.get<std::uint64_t>();
            if (number > static_cast<std::uint64_t>(std::numeric_limits<int>::max()))
                fail(key, "is out of range");
            return static_cast<int>(number);
        }
        auto number = value.get<std::int64_t>();
        if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
            fail(key, "is out of range");
        return static_cast<int>(number);
    }
    if (value.is_number_float()) {
        double number = value.get<double>();
        // An integral float such as 3.0 is the same number; 3.5 is not an integer.
        if (std::trunc(number) == number && number >= std::numeric_limits<int>::min() &&
            number <= std::numeric_limits<int>::max())
            return static_cast<int>(number);
    }
    fail(key, "is not a whole number");
}

Uuid uuid(const Json& value, const std::string& key) {
    auto parsed = Uuid::parse(text(value, key));
    if (!parsed)
        fail(key, "is not a UUID");
    return *parsed;
}

DateTime dateTime(const Json& value, const std::string& key) {
    auto parsed = parseDateTime(text(value, key));
    if (!parsed)
        fail(key, "is not an ISO 8601 date-time in UTC with whole seconds");
    return *parsed;
}

std::string bytes(const Json& value, const std::string& key) {
    auto decoded = decodeBase64(text(value, key));
    if (!decoded)
        fail(key, "is not base64 data");
    return *decoded;
}

std::optional<std::string> optionalText(const Json& object, const std::string& key) {
    if (const Json* value = optional(object, key))
        return text(*value, key);
    return std::nullopt;
}

std::optional<std::string> optionalBytes(const Json& object, const std::string& key) {
    if (const Json* value = optional(object, key))
        return bytes(*value, key);
    return std::nullopt;
}

const Json& requiredArray(const Json& object, const std::string& key) {
    const Json& value = required(object, key);
    if (!value.is_array())
        fail(key, "is not a list");
    return value;
}

template <class Record, class Decode>
std::vector<Record> list(const Json& array, Decode decode) {
    std::vector<Record> records;
    records.reserve(array.size());
    for (const auto& element : array)
        records.push_back(decode(element));
    return records;
}

UnknownFields unknownMembers(const Json& object, const std::set<std::string, std::less<>>& knownKeys) {
    UnknownFields fields;
    for (auto it = object.begin(); it != object.end(); ++it)
        if (!knownKeys.contains(it.key()))
            fields.emplace_back(it.key(), decodeUnknownJSONValue(it.value()));
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
    // Tried in the order null, Boolean, number, text, object, array, so true stays a Boolean.
    if (json.is_null())
        return {nullptr};
    if (json.is_boolean())
        return {json.get<bool>()};
    if (json.is_number())
        return {json.get<double>()};
    if (json.is_string())
        return {json.get<std::string>()};
    if (json.is_object()) {
        UnknownJSONObject object;
        for (auto it = json.begin(); it != json.end(); ++it)
            object.emplace_back(it.key(), decodeUnknownJSONValue(it.value()));
        return {std::move(object)};
    }
    if (json.is_array()) {
        UnknownJSONArray array;
        for (const auto& element : json)
            array.push_back(decodeUnknownJSONValue(element));
        return {std::move(array)};
    }
    throw DecodingError("Unsupported JSON value in a field this app does not model.");
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

SermonScripture decodeSermonScripture(const Json& json) {
    const Json& object = requireObject(json, "a scripture");
    SermonScripture scripture;
    scripture.id = uuid(required(object, "id"), "id");
    scripture.bookName = text(required(object, "bookName"), "bookName");
    scripture.chapter = integer(required(object, "chapter"), "chapter");
    scripture.startVerse = integer(required(object, "startVerse"), "startVerse");
    scripture.endVerse = integer(required(object, "endVerse"), "endVerse");
    auto version = bibleVersionFromRawValue(text(required(object, "version"), "version"));
    if (!version)
        fail("version", "is not a known Bible version");
    scripture.version = *version;
    scripture.sortOrder = integer(required(object, "sortOrder"), "sortOrder");

    const Json& highlights = required(object, "wordHighlights");
    if (!highlights.is_object())
        fail("wordHighlights", "is not an object");
    for (auto it = highlights.begin(); it != highlights.end(); ++it) {
        const std::string& key = it.key();
        size_t used = 0;
        int position = 0;
        try {
            position = std::stoi(key, &used);
        } catch (const std::exception&) {
            used = 0;
        }
        if (used == 0 || used != key.size())
            fail("wordHighlights", "has a member name that is not a whole number");
        scripture.wordHighlights[position] = text(it.value(), "wordHighlights");
    }
    for (const auto& element : requiredArray(object, "breakIndicators"))
        scripture.breakIndicators.push_back(integer(element, "breakIndicators"));
    scripture.textColorHex = optionalText(object, "textColorHex");
    scripture.unknownFields = unknownMembers(object, scriptureKeys);
    return scripture;
}

SermonSubTopic decodeSermonSubTopic(const Json& json) {
    const Json& object = requireObject(json, "a sub-topic");
    SermonSubTopic subTopic;
    subTopic.id = uuid(required(object, "id"), "id");
    subTopic.title = text(required(object, "title"), "title");
    subTopic.details = text(required(object, "details"), "details");
    subTopic.detailsRTFData = optionalBytes(object, "detailsRTFData");
    subTopic.scriptures = list<SermonScripture>(requiredArray(object, "scriptures"), decodeSermonScripture);
    subTopic.sortOrder = integer(required(object, "sortOrder"), "sortOrder");
    subTopic.textColorHex = optionalText(object, "textColorHex");
    subTopic.unknownFields = unknownMembers(object, subTopicKeys);
    return subTopic;
}

SermonTopic decodeSermonTopic(const Json& json) {
    const Json& object = requireObject(json, "a topic");
    SermonTopic topic;
    topic.id = uuid(required(object, "id"), "id");
    topic.title = text(required(object, "title"), "title");
    topic.details = text(required(object, "details"), "details");
    topic.detailsRTFData = optionalBytes(object, "detailsRTFData");
    topic.subTopics = list<SermonSubTopic>(requiredArray(object, "subTopics"), decodeSermonSubTopic);
    topic.sortOrder = integer(required(object, "sortOrder"), "sortOrder");
    topic.textColorHex = optionalText(object, "textColorHex");
    topic.unknownFields = unknownMembers(object, topicKeys);
    return topic;
}

SermonNote decodeSermonNote(const Json& json) {
    const Json& object = requireObject(json, "a sermon");
    SermonNote sermon;
    sermon.id = uuid(required(object, "id"), "id");
    sermon.title = text(required(object, "title"), "title");
    sermon.date = dateTime(required(object, "date"), "date");
    sermon.speaker = text(required(object, "speaker"), "speaker");
    sermon.series = optionalText(object, "series");
    sermon.venue = optionalText(object, "venue");
    sermon.topics = list<SermonTopic>(requiredArray(object, "topics"), decodeSermonTopic);
    sermon.notes = text(required(object, "notes"), "notes");
    sermon.notesRTFData = optionalBytes(object, "notesRTFData");
    sermon.textColorHex = optionalText(object, "textColorHex");
    sermon.createdAt = dateTime(required(object, "createdAt"), "createdAt");
    sermon.modifiedAt = dateTime(required(object, "modifiedAt"), "modifiedAt");
    sermon.coverImageFileName = optionalText(object, "coverImageFileName");
    if (const Json* tags = optional(object, "tags")) {
        if (!tags->is_array())
            fail("tags", "is not a list");
        for (const auto& tag : *tags)
            sermon.tags.push_back(text(tag, "tags"));
    }
    sermon.unknownFields = unknownMembers(object, sermonKeys);
    return sermon;
}

SermonNoteExport decodeSermonNoteExport(const Json& json) {
    const Json& object = requireObject(json, "an archive");
    SermonNoteExport archive;
    archive.version = integer(required(object, "version"), "version");
    archive.appIdentifier = text(required(object, "appIdentifier"), "appIdentifier");
    archive.exportDate = dateTime(required(object, "exportDate"), "exportDate");
    archive.sermons = list<SermonNote>(requiredArray(object, "sermons"), decodeSermonNote);
    return archive;
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

std::string encodeSermonFile(const SermonNote& sermon) {
    // Text that is not valid UTF-8 (typed in by a tool that mangled it) is written with
    // replacement characters rather than failing the save.
    return encodeSermonNote(sermon).dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

SermonNote decodeSermonFile(std::string_view bytes) {
    Json json;
    try {
        json = Json::parse(bytes.begin(), bytes.end());
    } catch (const Json::parse_error& error) {
        throw DecodingError(std::string("The file is not valid JSON (") + error.what() + ").");
    }
    return decodeSermonNote(json);
}

} // namespace quillon::model
