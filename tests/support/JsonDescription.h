#pragma once

#include "model/JsonTree.h"
#include "model/SermonCoding.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quillon::testing {

/// A value's kind and content, spelled so that 1, 1u and 1.0 differ and member order counts: the
/// one-pass reader and nlohmann must give the same spelling for the same document.
inline std::string describe(const model::OrderedJSON& json) {
    using Json = model::OrderedJSON;
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

inline std::string describe(const model::JsonTree::Value& value) {
    using Json = model::OrderedJSON;
    using Kind = model::JsonTree::Kind;
    switch (value.kind()) {
    case Kind::null:
        return "null";
    case Kind::boolean:
        return value.boolean() ? "true" : "false";
    case Kind::integer:
        return "i" + std::to_string(value.integer());
    case Kind::unsignedInteger:
        return "u" + std::to_string(value.unsignedInteger());
    case Kind::floating:
        return "f" + Json(value.number()).dump();
    case Kind::string:
        return Json(std::string(value.text())).dump();
    case Kind::array: {
        std::string text = "[";
        value.forEachElement([&](const model::JsonTree::Value& element) { text += describe(element) + ","; });
        return text + "]";
    }
    case Kind::object: {
        std::string text = "{";
        value.forEachMember([&](std::string_view name, const model::JsonTree::Value& member) {
            text += Json(std::string(name)).dump() + ":" + describe(member) + ",";
        });
        return text + "}";
    }
    }
    return "?";
}

} // namespace quillon::testing
