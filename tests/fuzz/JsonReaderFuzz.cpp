// Differential: the sermon files' one-pass JSON reader must accept exactly what nlohmann accepts
// and read the same values, except that it refuses nesting nlohmann would follow to any depth.
#include "FuzzInput.h"

#include "model/JsonTree.h"
#include "model/SermonCoding.h"

#include <optional>
#include <string>

namespace {

using quillon::model::JsonTree;
using Json = quillon::model::OrderedJSON;

/// A value's kind and content, spelled so that 1, 1u and 1.0 differ and member order counts.
std::string describe(const Json& json) {
    switch (json.type()) {
    case Json::value_t::null:
        return "null";
    case Json::value_t::boolean:
        return json.get<bool>() ? "true" : "false";
    case Json::value_t::number_integer:
        return "i" + std::to_string(json.get<std::int64_t>());
    case Json::value_t::number_unsigned:
        return "u" + std::to_string(json.get<std::uint64_t>());
    case Json::value_t::number_float:
        return "f" + Json(json.get<double>()).dump();
    case Json::value_t::string:
        return Json(json.get<std::string>()).dump();
    case Json::value_t::array: {
        std::string text = "[";
        for (const auto& element : json)
            text += describe(element) + ",";
        return text + "]";
    }
    case Json::value_t::object: {
        std::string text = "{";
        for (auto it = json.begin(); it != json.end(); ++it)
            text += Json(it.key()).dump() + ":" + describe(it.value()) + ",";
        return text + "}";
    }
    default:
        return "?";
    }
}

std::string describe(const JsonTree::Value& value) {
    switch (value.kind()) {
    case JsonTree::Kind::null:
        return "null";
    case JsonTree::Kind::boolean:
        return value.boolean() ? "true" : "false";
    case JsonTree::Kind::integer:
        return "i" + std::to_string(value.integer());
    case JsonTree::Kind::unsignedInteger:
        return "u" + std::to_string(value.unsignedInteger());
    case JsonTree::Kind::floating:
        return "f" + Json(value.number()).dump();
    case JsonTree::Kind::string:
        return Json(std::string(value.text())).dump();
    case JsonTree::Kind::array: {
        std::string text = "[";
        value.forEachElement([&](const JsonTree::Value& element) { text += describe(element) + ","; });
        return text + "]";
    }
    case JsonTree::Kind::object: {
        std::string text = "{";
        value.forEachMember([&](std::string_view name, const JsonTree::Value& member) {
            text += Json(std::string(name)).dump() + ":" + describe(member) + ",";
        });
        return text + "}";
    }
    }
    return "?";
}

/// The deepest nesting of arrays and objects outside strings (the input is valid JSON here).
int nestingDepth(std::string_view text) {
    int depth = 0, deepest = 0;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            deepest = std::max(deepest, ++depth);
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
    return deepest;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using quillon::fuzz::require;
    const std::string_view text = quillon::fuzz::text(data, size);
    std::optional<Json> expected;
    try {
        expected = Json::parse(text);
    } catch (const Json::exception&) {
    }
    std::optional<JsonTree> tree;
    try {
        tree.emplace(JsonTree::parse(text));
    } catch (const quillon::model::DecodingError&) {
    }
    if (!expected) {
        require(!tree);
        return 0;
    }
    if (!tree) {
        // nlohmann takes a NUL byte for the end of its input and ignores what follows; the tree
        // refuses it like any other stray byte, so a file padded with NULs is not half-read.
        require(nestingDepth(text) > JsonTree::maximumDepth || text.find('\0') != std::string_view::npos);
        return 0;
    }
    require(describe(tree->root()) == describe(*expected));
    return 0;
}
