#include "speech/Transcriber.h"

#include "platform/PlatformWording.h"
#include "speech/AudioDecoder.h"
#include "speech/PocketSphinxRecognizer.h"
#include "speech/TranscriptionEndpoint.h"
#include "speech/TranscriptionError.h"

#include <spdlog/spdlog.h>

namespace quillon::speech {

Transcriber::Transcriber(TranscriptionSettings settings) : m_settings(std::move(settings)) {}

Transcriber::~Transcriber() = default;

std::optional<std::string> Transcriber::unavailableReason() const {
    if (PocketSphinxRecognizer::isInstalled(m_settings.modelFolder))
        return std::nullopt;
    if (m_settings.endpoint.empty())
        return std::string(platform::wording::speechRecognitionNotPermitted);
    if (TranscriptionEndpoint(m_settings).answers())
        return std::nullopt;
    return std::string(platform::wording::speechRecognitionNotGranted);
}

std::optional<Transcript> Transcriber::transcribe(const std::filesystem::path& file, std::stop_token stop,
                                                  const TranscriptionProgress& progress) {
    if (!m_settings.endpoint.empty()) {
        // A file that is not audio fails here, before the server is asked and with no fallback.
        AudioDecoder audio(file);
        try {
            return TranscriptionEndpoint(m_settings).transcribe(audio, stop, progress);
        } catch (const TranscriptionError& error) {
            spdlog::warn("Transcribing {} on this computer instead: {}", file.filename().string(), error.what());
        }
    }
    return transcribeOnDevice(file, stop, progress);
}

std::optional<Transcript> Transcriber::transcribeOnDevice(const std::filesystem::path& file, std::stop_token stop,
                                                          const TranscriptionProgress& progress) {
    AudioDecoder audio(file);
    if (!PocketSphinxRecognizer::isInstalled(m_settings.modelFolder))
        throw TranscriptionError(platform::wording::speechRecognitionNotPermitted);
    if (!m_onDevice)
        m_onDevice = std::make_unique<PocketSphinxRecognizer>(m_settings.modelFolder);
    return m_onDevice->transcribe(audio, stop, progress);
}

} // namespace quillon::speech
