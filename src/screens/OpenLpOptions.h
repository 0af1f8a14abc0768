#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace quillon::platform {
class Preferences;
}

namespace quillon::screens {

/// Where OpenLP's remote API answers and how the desk logs in to it.
struct OpenLpOptions {
    /// "Quillon.screens.openlp": send each passage to OpenLP at all.
    bool enabled = false;
    /// From "Quillon.screens.openlp.address" (host:port; OpenLP's own default is port 4316).
    std::string host = "127.0.0.1";
    std::string port = "4316";
    /// "Quillon.screens.openlp.user": empty while OpenLP's login is off.
    std::string user;
    /// Kept in the Secret Service under `secretService()`, the user name as its account.
    std::string password;
    /// For each request to OpenLP, connecting included.
    std::chrono::milliseconds timeout{3000};

    static OpenLpOptions fromPreferences(const platform::Preferences& preferences);
    /// Reads "host", "host:port" or "[v6 address]:port"; false, leaving the options as they were,
    /// when the text is none of these.
    bool setAddress(const std::string& text);
    std::string address() const;

    /// The Secret Service name the password is kept under.
    static std::string secretService();
};

} // namespace quillon::screens
