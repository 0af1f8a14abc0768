#include "screens/OpenLpOptions.h"

#include "platform/ApplicationIdentity.h"
#include "platform/Preferences.h"

#include <algorithm>
#include <cctype>

namespace quillon::screens {

namespace {

bool isPort(const std::string& text) {
    if (text.empty() || text.size() > 5 ||
        !std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c) != 0; }))
        return false;
    const int value = std::stoi(text);
    return value > 0 && value <= 65535;
}

} // namespace

OpenLpOptions OpenLpOptions::fromPreferences(const platform::Preferences& preferences) {
    OpenLpOptions options;
    options.enabled = preferences.boolean("Quillon.screens.openlp", false);
    options.setAddress(preferences.string("Quillon.screens.openlp.address"));
    options.user = preferences.string("Quillon.screens.openlp.user");
    return options;
}

bool OpenLpOptions::setAddress(const std::string& text) {
    std::string host = text;
    std::string port = "4316";
    if (!text.empty() && text.front() == '[') {
        const auto close = text.find(']');
        if (close == std::string::npos)
            return false;
        host = text.substr(1, close - 1);
        const std::string rest = text.substr(close + 1);
        if (!rest.empty()) {
            if (rest.front() != ':')
                return false;
            port = rest.substr(1);
        }
    } else if (const auto colon = text.rfind(':'); colon != std::string::npos) {
        if (text.find(':') != colon)
            return false; // a bare IPv6 address needs its brackets to carry a port
        host = text.substr(0, colon);
        port = text.substr(colon + 1);
    }
    const bool hostUsable = !host.empty() && std::none_of(host.begin(), host.end(), [](unsigned char c) {
        return std::isspace(c) || c == '/' || c == '@' || c == '?' || c == '#';
    });
    if (!hostUsable || !isPort(port))
        return false;
    this->host = host;
    this->port = port;
    return true;
}

std::string OpenLpOptions::address() const {
    return (host.find(':') != std::string::npos ? "[" + host + "]" : host) + ":" + port;
}

std::string OpenLpOptions::secretService() {
    return std::string(platform::applicationIdentifier) + ".openlp";
}

} // namespace quillon::screens
