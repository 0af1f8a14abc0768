#pragma once

// Every user-facing text that, on the platform Quillon was first designed for, named a vendor
// product or place ("iCloud", "This Mac", "System Settings", the vendor's model) says the same
// thing here in this platform's terms. Keep all such wordings in this one file.

namespace quillon::platform::wording {

/// The synced folder chosen in preferences stands where the cloud document container stood.
inline constexpr const char* loadedFromCloud = "Loaded from sync folder";
inline constexpr const char* savedToCloud = "Saved to sync folder";
inline constexpr const char* syncedLatestCloudChanges = "Synced latest sync folder changes";
inline constexpr const char* stillDownloadingFromCloud = " still downloading into the sync folder";

/// This computer, where the vendor's wording said "This Mac".
inline constexpr const char* thisComputer = "This Computer";
/// The local model server, where the vendor's wording named its on-device model.
inline constexpr const char* onDeviceModelName = "the local model server";
/// The desktop's settings, where the vendor's wording said "System Settings".
inline constexpr const char* systemSettings = "system settings";

/// The desktop's secret store (the Secret Service, or the private file standing in for it), where
/// the vendor's wording named its keychain.
inline constexpr const char* secretStore = "the keyring";

/// Reasons the local model cannot be used, where the vendor's wording named its computers and its model.
inline constexpr const char* modelOsTooOld =
    "This computer is running a version of the local model server that does not include the on-device model.";
inline constexpr const char* modelDeviceNotEligible = "This computer cannot run the local model server.";
inline constexpr const char* modelNotEnabled = "The local model server is switched off for this computer.";

/// Why speech cannot be turned into text, where the vendor's wording sent the user to its privacy
/// settings: here nothing asks for permission, but a recogniser must be installed or answering.
inline constexpr const char* speechRecognitionNotPermitted =
    "Speech Recognition is not installed for Quillon. Install it with the package pocketsphinx-en-us "
    "(sudo apt install pocketsphinx-en-us).";
inline constexpr const char* speechRecognitionNotGranted =
    "Speech Recognition did not answer for Quillon. Start the transcription server set in "
    "Quillon.transcription.endpoint, or install the package pocketsphinx-en-us.";

} // namespace quillon::platform::wording
