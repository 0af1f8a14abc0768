#pragma once

#include "app/RecordingTranscriptionStage.h"
#include "app/StatusMessage.h"
#include "model/Uuid.h"
#include "platform/Clock.h"
#include "speech/Transcriber.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace orvane {
class ModelRouter;
}

namespace quillon::app {

class SermonNotesViewModel;

/// Turns a recording into a draft sermon through the controller: check that a
/// recogniser can be used (`authorizing`), take the file (`pickFile`),
/// transcribe it (`transcribing`), let the preacher look (`review`), then add
/// the draft, organised into topics when asked. The stage lives in the
/// controller and every text is published through it. Lives on the main thread;
/// only `transcribeRecording` may run elsewhere.
class RecordingToDraft {
public:
    /// What one transcription came to, ready to be applied on the main thread.
    struct Outcome {
        std::filesystem::path file;
        std::optional<speech::Transcript> transcript;
        /// Why nothing usable came back: the recogniser's or the decoder's
        /// sentence.
        std::string failure;
        bool cancelled = false;
    };

    /// What accepting the transcript made.
    struct Draft {
        model::Uuid id;
        std::string title;
        std::size_t topics = 0;
        std::size_t scriptures = 0;
        /// True when a model placed the topics (the draft must then carry the
        /// generated label).
        bool generated = false;
    };

    /// The description given when the recogniser heard no words at all.
    static constexpr const char* nothingHeard = "no words were recognised in it.";
    static constexpr const char* unavailableTitle = "Speech Recognition Unavailable";

    /// `controller`, `transcriber` and `clock` must outlive the flow; without
    /// `router` drafts are organised by the model-free rule.
    RecordingToDraft(SermonNotesViewModel& controller, speech::Transcriber& transcriber,
                     std::shared_ptr<const orvane::ModelRouter> router = nullptr,
                     const platform::Clock& clock = platform::SystemClock::shared());

    /// Opens the recording sheet at `authorizing`: true (and `pickFile`) when a
    /// recogniser can be used; else `failed` with an alert saying what to install
    /// or start.
    bool begin();
    /// begin() in two steps, for a caller that asks the transcriber
    /// (unavailableReason(), which may wait on the server) off the main thread:
    /// the sheet opens at `authorizing`, then the answer is applied.
    void openAuthorizing();
    bool authorize(const std::optional<std::string>& unavailable);

    /// `transcribing`, then the outcome applied: both steps of the asynchronous
    /// path in one call.
    bool transcribe(const std::filesystem::path& file, std::stop_token stop = {},
                    const speech::TranscriptionProgress& progress = {});
    /// Marks the flow `transcribing` before the work starts elsewhere.
    void startTranscribing(const std::filesystem::path& file);
    /// The work itself, safe on a worker thread: never throws.
    static Outcome transcribeRecording(speech::Transcriber& transcriber, const std::filesystem::path& file,
                                       std::stop_token stop = {}, const speech::TranscriptionProgress& progress = {});
    /// Applies an outcome: `review` with "Transcription Ready", `failed` with
    /// "Transcription Failed", or back to `pickFile` when cancelled. True for
    /// `review`.
    bool finish(Outcome outcome);

    /// In `review`: adds the draft (the controller publishes "Draft Created"),
    /// organised into topics with "Draft Organized" when `organize`; the flow
    /// then closes. Nothing when not in review or the store refused the draft.
    std::optional<Draft> accept(bool organize);
    /// Closes the flow and its sheet without a draft.
    void dismiss();

    const std::optional<speech::Transcript>& transcript() const { return m_transcript; }
    const std::filesystem::path& file() const { return m_file; }

    static StatusMessage transcriptionReady(const std::string& title);
    static StatusMessage transcriptionFailed(const std::string& fileName, const std::string& description);
    static StatusMessage draftOrganized(const std::string& title, std::size_t topics);

private:
    SermonNotesViewModel& m_controller;
    speech::Transcriber& m_transcriber;
    std::shared_ptr<const orvane::ModelRouter> m_router;
    const platform::Clock& m_clock;
    std::filesystem::path m_file;
    std::optional<speech::Transcript> m_transcript;
};

} // namespace quillon::app
