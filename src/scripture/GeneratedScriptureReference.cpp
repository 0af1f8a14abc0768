#include "scripture/GeneratedScriptureReference.h"

namespace quillon::scripture {

nlohmann::ordered_json GeneratedScriptureReference::generationSchema() {
    nlohmann::ordered_json properties = nlohmann::ordered_json::object();
    properties["book"] = {{"type", "string"}, {"description", bookDescription}};
    properties["chapter"] = {{"type", "integer"}, {"description", chapterDescription}};
    properties["startVerse"] = {{"type", "integer"}, {"description", startVerseDescription}};
    properties["endVerse"] = {{"type", "integer"}, {"description", endVerseDescription}};
    nlohmann::ordered_json schema = nlohmann::ordered_json::object();
    schema["type"] = "object";
    schema["properties"] = properties;
    schema["required"] = {"book", "chapter"};
    return schema;
}

GeneratedScriptureReference GeneratedScriptureReference::fromJSON(const nlohmann::ordered_json& json) {
    GeneratedScriptureReference reference;
    if (!json.is_object())
        return reference;
    auto integer = [&json](const char* key) -> std::optional<int> {
        auto found = json.find(key);
        if (found == json.end() || !found->is_number_integer())
            return std::nullopt;
        auto value = found->get<std::int64_t>();
        if (value < INT32_MIN || value > INT32_MAX)
            return std::nullopt;
        return static_cast<int>(value);
    };
    if (auto book = json.find("book"); book != json.end() && book->is_string())
        reference.book = book->get<std::string>();
    reference.chapter = integer("chapter");
    reference.startVerse = integer("startVerse");
    reference.endVerse = integer("endVerse");
    return reference;
}

std::optional<orvane::ScriptureReference> GeneratedScriptureReference::completed() const {
    if (!book || !chapter)
        return std::nullopt;
    return orvane::ScriptureReference{*book, *chapter, startVerse, endVerse};
}

} // namespace quillon::scripture
