#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillon::intelligence {

/// The address of an OpenAI-compatible model server: "http://127.0.0.1:8080/v1" splits into host
/// "127.0.0.1", port "8080" and base path "/v1". Only plain http is spoken: the server is expected on
/// this computer.
struct LocalModelEndpoint {
    std::string host;
    std::string port;
    /// Without a trailing slash; "/v1", or empty for a server mounted at the root.
    std::string basePath;

    /// Accepts "http://host[:port][/path]", with an IPv6 host in brackets; anything else is nothing.
    static std::optional<LocalModelEndpoint> parse(std::string_view text);

    /// The request target of one API route: basePath + route ("/v1" + "/models").
    std::string target(std::string_view route) const { return basePath + std::string(route); }

    bool operator==(const LocalModelEndpoint&) const = default;
};

} // namespace quillon::intelligence
