#pragma once

#include <chrono>
#include <filesystem>
#include <string>

namespace quillon::platform {
class Preferences;
}

namespace quillon::speech {

/// Where speech is turned into text: a transcription server on this computer when one is set,
/// else pocketsphinx with the installed US English model.
struct TranscriptionSettings {
    static constexpr const char* endpointKey = "Quillon.transcription.endpoint";
    static constexpr const char* modelKey = "Quillon.transcription.model";
    static constexpr const char* modelFolderKey = "Quillon.transcription.modelFolder";
    /// Debian's pocketsphinx-en-us installs the acoustic model, language model and dictionary here.
    static constexpr const char* defaultModelFolder = "/usr/share/pocketsphinx/model/en-us";

    /// An OpenAI-compatible server ("http://127.0.0.1:8080/v1"); empty: none.
    std::string endpoint;
    /// The model name sent to the server (whisper.cpp's server ignores it).
    std::string model = "whisper-1";
    std::filesystem::path modelFolder = defaultModelFolder;
    /// The model server's limits apply to the transcription server too.
    std::chrono::milliseconds connectTimeout{2000};
    std::chrono::milliseconds replyTimeout{120000};

    static TranscriptionSettings fromPreferences(const platform::Preferences& preferences);
};

} // namespace quillon::speech
