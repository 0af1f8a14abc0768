#pragma once

namespace quillon::app {

/// Where turning an audio recording into a draft sermon stands.
enum class RecordingTranscriptionStage { transcribing, review, failed, pickFile, authorizing };

} // namespace quillon::app
