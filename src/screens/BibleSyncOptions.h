#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace quillon::platform {
class Preferences;
}

namespace quillon::screens {

/// How the desk takes part in BibleSync, the local multicast protocol of Xiphos and BibleTime.
struct BibleSyncOptions {
    /// "Quillon.screens.bibleSync": announce each passage to the Bible programs listening.
    bool enabled = false;
    /// "Quillon.screens.bibleSync.user": the name the other programs list the desk under.
    std::string user = "Quillon";
    /// "Quillon.screens.bibleSync.passphrase": programs with another passphrase are not heard.
    std::string passphrase = "BibleSync";
    /// "Quillon.screens.bibleSync.trustedSpeakers": user names or addresses whose navigation
    /// focuses the passage on the desk; empty, the desk only speaks and follows nobody.
    std::vector<std::string> trustedSpeakers;
    /// How often arriving packets are read; the protocol expects about once a second.
    std::chrono::milliseconds pollInterval{1000};

    static BibleSyncOptions fromPreferences(const platform::Preferences& preferences);
    /// True when a speaker with this user name and address may drive the desk.
    bool trusts(const std::string& user, const std::string& address) const;
};

} // namespace quillon::screens
