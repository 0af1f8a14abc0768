#include "screens/BibleSyncOptions.h"

#include "platform/Preferences.h"

#include <algorithm>
#include <cctype>

namespace quillon::screens {

namespace {

bool sameIgnoringCase(const std::string& a, const std::string& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](unsigned char x, unsigned char y) {
               return std::tolower(x) == std::tolower(y);
           });
}

} // namespace

BibleSyncOptions BibleSyncOptions::fromPreferences(const platform::Preferences& preferences) {
    BibleSyncOptions options;
    options.enabled = preferences.boolean("Quillon.screens.bibleSync", false);
    options.user = preferences.string("Quillon.screens.bibleSync.user", options.user);
    options.passphrase = preferences.string("Quillon.screens.bibleSync.passphrase", options.passphrase);
    options.trustedSpeakers = preferences.stringList("Quillon.screens.bibleSync.trustedSpeakers");
    return options;
}

bool BibleSyncOptions::trusts(const std::string& user, const std::string& address) const {
    return std::any_of(trustedSpeakers.begin(), trustedSpeakers.end(), [&](const std::string& entry) {
        return !entry.empty() && (sameIgnoringCase(entry, user) || entry == address);
    });
}

} // namespace quillon::screens
