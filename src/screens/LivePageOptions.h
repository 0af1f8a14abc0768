#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace quillon::platform {
class Preferences;
}

namespace quillon::screens {

/// Where and how the live page is served.
struct LivePageOptions {
    /// "Quillon.screens.livePage": serve the page at all.
    bool enabled = false;
    /// "Quillon.screens.livePage.address": loopback unless the preacher names a LAN address.
    std::string address = "127.0.0.1";
    /// "Quillon.screens.livePage.port" (default 7316; 0 picks any free port).
    std::uint16_t port = 7316;
    /// "Quillon.screens.livePage.token": required in every URL's query ("?token=…") when not
    /// empty. Away from loopback a token is always required; one is made and kept when none is set.
    std::string token;
    /// The theme file, read again on every page load so edits show on the next reload.
    std::filesystem::path themeFile;
    /// Open connections beyond this are answered 503 and closed.
    std::size_t maximumConnections = 256;

    static LivePageOptions fromPreferences(const platform::Preferences& preferences);
    /// Away from loopback, makes sure a token is set: the stored one, else a fresh one that is
    /// stored so the URL saved in the streaming software keeps working.
    void ensureLanToken(platform::Preferences& preferences);
};

/// True when `address` is a loopback address ("127.0.0.1", "::1", "localhost").
bool isLoopbackAddress(const std::string& address);

/// A fresh URL token: 32 hex digits from the system's random source.
std::string makePageToken();

} // namespace quillon::screens
