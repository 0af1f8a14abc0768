#include "screens/LivePageOptions.h"

#include "platform/Preferences.h"
#include "screens/LivePageTheme.h"

#include <boost/asio/ip/address.hpp>

#include <fmt/format.h>
#include <random>

namespace quillon::screens {

bool isLoopbackAddress(const std::string& address) {
    if (address == "localhost")
        return true;
    boost::system::error_code error;
    auto parsed = boost::asio::ip::make_address(address, error);
    return !error && parsed.is_loopback();
}

std::string makePageToken() {
    std::random_device random;
    std::string token;
    for (int i = 0; i < 4; ++i)
        token += fmt::format("{:08x}", random());
    return token;
}

LivePageOptions LivePageOptions::fromPreferences(const platform::Preferences& preferences) {
    LivePageOptions options;
    options.enabled = preferences.boolean("Quillon.screens.livePage", false);
    options.address = preferences.string("Quillon.screens.livePage.address", options.address);
    const double port = preferences.positiveNumber("Quillon.screens.livePage.port", 7316);
    options.port = port <= 65535 ? static_cast<std::uint16_t>(port) : 7316;
    options.token = preferences.string("Quillon.screens.livePage.token");
    options.themeFile = LivePageTheme::defaultFile();
    return options;
}
// A page on the LAN is readable by anyone there; the token keeps it to the URL the preacher
// handed out.
void LivePageOptions::ensureLanToken(platform::Preferences& preferences) {
    if (isLoopbackAddress(address) || !token.empty())
        return;
    token = preferences.string("Quillon.screens.livePage.token");
    if (!token.empty())
        return;
    token = makePageToken();
    preferences.set("Quillon.screens.livePage.token", token);
}

} // namespace quillon::screens
