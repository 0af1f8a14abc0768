#include "mesh/ToolAnswer.h"

#include <nlohmann/json.hpp>

namespace quillon::mesh {

ToolAnswer ToolAnswer::found(const orvane::ToolResult& result) {
    nlohmann::ordered_json passages = nlohmann::ordered_json::array();
    for (const auto& passage : result.passages)
        passages.push_back({{"source", passage.source}, {"text", passage.text}});
    // Replacement rather than an exception: a sermon with a broken byte must not silence the answer.
    return {
        nlohmann::ordered_json{{"passages", passages}}.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace),
        std::nullopt};
}

std::optional<orvane::ToolResult> ToolAnswer::decode(const std::string& text) {
    auto json = nlohmann::json::parse(text, nullptr, false);
    if (!json.is_object() || !json.contains("passages") || !json["passages"].is_array())
        return std::nullopt;
    orvane::ToolResult result;
    for (const auto& passage : json["passages"]) {
        if (!passage.is_object() || !passage.value("source", nlohmann::json()).is_string() ||
            !passage.value("text", nlohmann::json()).is_string())
            return std::nullopt;
        result.passages.push_back({passage["source"].get<std::string>(), passage["text"].get<std::string>()});
    }
    return result;
}

} // namespace quillon::mesh
