#include "app/RecordingToDraft.h"

#include "app/SermonNotesViewModel.h"
#include "app/TextRules.h"
#include "intelligence/MessyDocumentOutliner.h"
#include "orvane/ModelRouter.h"
#include "speech/TranscriptDraft.h"
#include "speech/TranscriptionError.h"

namespace quillon::app {

namespace {

std::size_t scripturesIn(const model::SermonNote& sermon) {
    std::size_t count = 0;
    for (const model::SermonTopic& topic : sermon.topics)
        for (const model::SermonSubTopic& subTopic : topic.subTopics)
            count += subTopic.scriptures.size();
    return count;
}

} // namespace

RecordingToDraft::RecordingToDraft(SermonNotesViewModel& controller, speech::Transcriber& transcriber,
                                   std::shared_ptr<const orvane::ModelRouter> router, const platform::Clock& clock)
    : m_controller(controller), m_transcriber(transcriber), m_router(std::move(router)), m_clock(clock) {}

StatusMessage RecordingToDraft::transcriptionReady(const std::string& title) {
    return {"Transcription Ready", title + " is ready to review in Quillon.", StatusMessage::Kind::toast};
}

StatusMessage RecordingToDraft::transcriptionFailed(const std::string& fileName, const std::string& description) {
    return {"Transcription Failed",
            "Quillon couldn't transcribe " + fileName +
                ". Nothing usable came back from that file. Confirm it actually "
                "contains speech, and try again — " +
                description,
            StatusMessage::Kind::alert};
}

StatusMessage RecordingToDraft::draftOrganized(const std::string& title, std::size_t topics) {
    return {"Draft Organized",
            "Quillon grouped " + curlyQuoted(title) + " into " + std::to_string(topics) +
                (topics == 1 ? " topic" : " topics"),
            StatusMessage::Kind::toast};
}

bool RecordingToDraft::begin() {
    openAuthorizing();
    return authorize(m_transcriber.unavailableReason());
}

void RecordingToDraft::openAuthorizing() {
    m_transcript.reset();
    m_file.clear();
    m_controller.open(Sheet::recordingToDraft);
    m_controller.setRecordingStage(RecordingTranscriptionStage::authorizing);
}

bool RecordingToDraft::authorize(const std::optional<std::string>& unavailable) {
    if (unavailable) {
        m_controller.setRecordingStage(RecordingTranscriptionStage::failed);
        m_controller.post({unavailableTitle, *unavailable, StatusMessage::Kind::alert});
        return false;
    }
    m_controller.setRecordingStage(RecordingTranscriptionStage::pickFile);
    return true;
}

void RecordingToDraft::startTranscribing(const std::filesystem::path& file) {
    m_file = file;
    m_transcript.reset();
    m_controller.setRecordingStage(RecordingTranscriptionStage::transcribing);
}

RecordingToDraft::Outcome RecordingToDraft::transcribeRecording(speech::Transcriber& transcriber,
                                                                const std::filesystem::path& file, std::stop_token stop,
                                                                const speech::TranscriptionProgress& progress) {
    Outcome outcome;
    outcome.file = file;
    try {
        outcome.transcript = transcriber.transcribe(file, stop, progress);
        outcome.cancelled = !outcome.transcript;
        if (outcome.transcript && outcome.transcript->isEmpty()) {
            outcome.transcript.reset();
            outcome.failure = nothingHeard;
        }
    } catch (const std::exception& error) {
        outcome.failure = error.what();
    }
    return outcome;
}

bool RecordingToDraft::transcribe(const std::filesystem::path& file, std::stop_token stop,
                                  const speech::TranscriptionProgress& progress) {
    startTranscribing(file);
    return finish(transcribeRecording(m_transcriber, file, stop, progress));
}

bool RecordingToDraft::finish(Outcome outcome) {
    m_file = outcome.file;
    if (outcome.cancelled) {
        m_controller.setRecordingStage(RecordingTranscriptionStage::pickFile);
        return false;
    }
    if (!outcome.transcript) {
        m_controller.setRecordingStage(RecordingTranscriptionStage::failed);
        m_controller.post(transcriptionFailed(outcome.file.filename().string(), outcome.failure));
        return false;
    }
    m_transcript = std::move(outcome.transcript);
    m_controller.setRecordingStage(RecordingTranscriptionStage::review);
    m_controller.post(transcriptionReady(speech::transcriptDraft::titleFor(m_file)));
    return true;
}

std::optional<RecordingToDraft::Draft> RecordingToDraft::accept(bool organize) {
    if (!m_transcript || m_controller.recordingStage() != RecordingTranscriptionStage::review)
        return std::nullopt;
    model::SermonNote sermon = speech::transcriptDraft::draft(*m_transcript, speech::transcriptDraft::titleFor(m_file),
                                                              model::toDateTime(m_clock.now()));
    Draft made{sermon.id, sermon.title};
    if (organize) {
        intelligence::MessyDocumentOutliner outliner;
        const auto passages = speech::transcriptDraft::passages(*m_transcript);
        std::vector<intelligence::OutlineSection> sections;
        if (m_router) {
            auto outcome = orvane::run(outliner, passages, *m_router);
            sections = std::move(outcome.value);
            made.generated = outcome.needsGeneratedLabel;
        } else {
            sections = outliner.fallback(passages);
        }
        speech::transcriptDraft::organise(sermon, *m_transcript, sections);
    }
    made.topics = sermon.topics.size();
    made.scriptures = scripturesIn(sermon);
    if (!m_controller.createDraft(sermon))
        return std::nullopt;
    if (organize)
        m_controller.post(draftOrganized(sermon.title, made.topics));
    dismiss();
    return made;
}

void RecordingToDraft::dismiss() {
    m_transcript.reset();
    m_controller.setRecordingStage(std::nullopt);
    m_controller.close(Sheet::recordingToDraft);
}

} // namespace quillon::app
