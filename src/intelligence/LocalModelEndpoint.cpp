#include "intelligence/LocalModelEndpoint.h"

#include <algorithm>
#include <cctype>

namespace quillon::intelligence {

std::optional<LocalModelEndpoint> LocalModelEndpoint::parse(std::string_view text) {
    constexpr std::string_view scheme = "http://";
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    if (text.size() <= scheme.size() || !std::equal(scheme.begin(), scheme.end(), text.begin(), [](char a, char b) {
            return a == std::tolower(static_cast<unsigned char>(b));
        }))
        return std::nullopt;
    text.remove_prefix(scheme.size());

    std::string_view authority = text.substr(0, text.find('/'));
    std::string_view path = authority.size() < text.size() ? text.substr(authority.size()) : std::string_view();
    LocalModelEndpoint endpoint;
    std::string_view portText;
    if (authority.starts_with('[')) {
        std::size_t close = authority.find(']');
        if (close == std::string_view::npos)
            return std::nullopt;
        endpoint.host = std::string(authority.substr(1, close - 1));
        std::string_view rest = authority.substr(close + 1);
        if (!rest.empty()) {
            if (rest.front() != ':')
                return std::nullopt;
            portText = rest.substr(1);
        }
    } else {
        std::size_t colon = authority.rfind(':');
        endpoint.host = std::string(authority.substr(0, colon));
        if (colon != std::string_view::npos)
            portText = authority.substr(colon + 1);
    }
    if (endpoint.host.empty() || endpoint.host.find_first_of("@ ") != std::string::npos)
        return std::nullopt;
    if (portText.empty()) {
        // "http://host:" has no port, like "http://host": the scheme's own port applies.
        endpoint.port = "80";
    } else {
        if (portText.size() > 5 ||
            !std::all_of(portText.begin(), portText.end(), [](char c) { return c >= '0' && c <= '9'; }))
            return std::nullopt;
        int number = std::stoi(std::string(portText));
        if (number < 1 || number > 65535)
            return std::nullopt;
        endpoint.port = std::to_string(number);
    }
    while (path.ends_with('/'))
        path.remove_suffix(1);
    if (path.find_first_of("?# ") != std::string_view::npos)
        return std::nullopt;
    endpoint.basePath = std::string(path);
    return endpoint;
}

} // namespace quillon::intelligence
