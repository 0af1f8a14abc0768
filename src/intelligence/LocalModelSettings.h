#pragma once

#include <chrono>
#include <string>

namespace quillon::platform {
class Preferences;
}

namespace quillon::intelligence {

/// How to reach the local OpenAI-compatible model server (llama.cpp's llama-server, Ollama).
struct LocalModelSettings {
    static constexpr const char* endpointKey = "Quillon.intelligence.endpoint";
    static constexpr const char* modelKey = "Quillon.intelligence.model";
    static constexpr const char* timeoutKey = "Quillon.intelligence.timeoutSeconds";
    static constexpr const char* embeddingsKey = "Quillon.intelligence.embeddings";
    static constexpr const char* disabledKey = "Quillon.intelligenceDisabled";
    static constexpr const char* defaultEndpoint = "http://127.0.0.1:8080/v1";

    std::string endpoint = defaultEndpoint;
    /// Empty: the first model the server lists.
    std::string model;
    std::chrono::milliseconds connectTimeout{2000};
    std::chrono::milliseconds replyTimeout{120000};
    /// The server's embeddings route feeds the semantic index.
    bool embeddings = false;

    static LocalModelSettings fromPreferences(const platform::Preferences& preferences);
};

} // namespace quillon::intelligence
