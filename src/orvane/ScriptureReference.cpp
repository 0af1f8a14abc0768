#include "orvane/ScriptureReference.h"

namespace orvane {

std::string ScriptureReference::description() const {
    std::string text = book + " " + std::to_string(chapter);
    if (!startVerse)
        return text;
    text += ":" + std::to_string(*startVerse);
    if (endVerse && *endVerse != *startVerse)
        text += "-" + std::to_string(*endVerse);
    return text;
}

bool ScriptureReference::isValid() const {
    if (chapter < 1)
        return false;
    if (!startVerse)
        return !endVerse;
    return *startVerse >= 1 && (!endVerse || *endVerse >= *startVerse);
}

nlohmann::ordered_json encodeScriptureReference(const ScriptureReference& reference) {
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    json["book"] = reference.book;
    json["chapter"] = reference.chapter;
    if (reference.startVerse)
        json["startVerse"] = *reference.startVerse;
    if (reference.endVerse)
        json["endVerse"] = *reference.endVerse;
    return json;
}

namespace {

std::optional<int> optionalInteger(const nlohmann::ordered_json& json, const char* key, bool& wrongType) {
    auto found = json.find(key);
    if (found == json.end() || found->is_null())
        return std::nullopt;
    if (!found->is_number_integer()) {
        wrongType = true;
        return std::nullopt;
    }
    return found->get<int>();
}

} // namespace

std::optional<ScriptureReference> decodeScriptureReference(const nlohmann::ordered_json& json) {
    if (!json.is_object())
        return std::nullopt;
    auto book = json.find("book");
    auto chapter = json.find("chapter");
    if (book == json.end() || !book->is_string() || chapter == json.end() || !chapter->is_number_integer())
        return std::nullopt;
    ScriptureReference reference;
    reference.book = book->get<std::string>();
    reference.chapter = chapter->get<int>();
    bool wrongType = false;
    reference.startVerse = optionalInteger(json, "startVerse", wrongType);
    reference.endVerse = optionalInteger(json, "endVerse", wrongType);
    if (wrongType)
        return std::nullopt;
    return reference;
}

} // namespace orvane
