#include "cli/TranscribeCommand.h"

#include "app/RecordingToDraft.h"
#include "intelligence/SharedRouter.h"
#include "speech/TranscriptionSettings.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <iostream>

namespace quillon::cli {

namespace {

std::string_view stageName(app::RecordingTranscriptionStage stage) {
    switch (stage) {
    case app::RecordingTranscriptionStage::transcribing:
        return "transcribing";
    case app::RecordingTranscriptionStage::review:
        return "review";
    case app::RecordingTranscriptionStage::failed:
        return "failed";
    case app::RecordingTranscriptionStage::pickFile:
        return "pickFile";
    case app::RecordingTranscriptionStage::authorizing:
        return "authorizing";
    } // no default case, so the compiler can warn about missing cases
    return "";
}

/// Everything the desk publishes during the run, in order.
class MessageLog final : public app::SermonNotesListener {
public:
    explicit MessageLog(app::SermonNotesViewModel& controller) : m_controller(controller) {
        m_controller.addListener(*this);
    }
    ~MessageLog() override { m_controller.removeListener(*this); }
    void statusPosted(const app::StatusMessage& message) override { messages.push_back(message); }

    std::vector<app::StatusMessage> messages;

private:
    app::SermonNotesViewModel& m_controller;
};

/// Progress on a terminal only: a log or a pipe gets the stages and messages
/// alone.
speech::TranscriptionProgress terminalProgress(CommandContext& context) {
    if (context.json || &context.err != &std::cerr || !isatty(STDERR_FILENO))
        return {};
    return [&context, shown = -1](double heard, double total) mutable {
        if (total <= 0)
            return;
        const int percent = std::min(100, static_cast<int>(heard * 100 / total));
        if (percent / 10 == shown / 10)
            return;
        shown = percent;
        context.err << "\r" << percent << "%" << (percent == 100 ? "\n" : "") << std::flush;
    };
}

} // namespace

void TranscribeCommand::configure(CLI::App& command) {
    command.add_option("audio", m_audio, "The recording (WAV, FLAC, Ogg, MP3, M4A)")->required();
    command.add_flag("--organize", m_organize, "Group the transcript into topics where the speaker moves on");
}

int TranscribeCommand::runOnDesk(CommandContext& context, Desk& desk) {
    app::SermonNotesViewModel& controller = desk.controller();
    MessageLog log(controller);
    platform::Preferences& preferences = desk.library().preferences();
    speech::Transcriber transcriber(speech::TranscriptionSettings::fromPreferences(preferences));
    std::shared_ptr<const orvane::ModelRouter> router;
    if (m_organize)
        router = intelligence::makeSharedRouter(preferences);
    app::RecordingToDraft flow(controller, transcriber, router);

    nlohmann::ordered_json stages = nlohmann::ordered_json::array();
    auto enter = [&](app::RecordingTranscriptionStage stage, const std::string& detail) {
        stages.push_back({{"stage", stageName(stage)}, {"detail", detail}});
        if (!context.json)
            context.out << "[" << stageName(stage) << "] " << detail << "\n";
    };
    using Stage = app::RecordingTranscriptionStage;

    enter(Stage::authorizing, transcriber.settings().endpoint.empty()
                                  ? "Checking for pocketsphinx and its US English model."
                                  : "Checking " + transcriber.settings().endpoint + " and pocketsphinx.");
    bool ready = flow.begin();
    std::optional<app::RecordingToDraft::Draft> draft;
    if (!ready)
        enter(Stage::failed, "No speech recogniser can be used.");
    if (ready) {
        enter(Stage::pickFile, m_audio);
        flow.startTranscribing(m_audio);
        enter(Stage::transcribing, transcriber.settings().endpoint.empty()
                                       ? "On this computer with pocketsphinx."
                                       : "With " + transcriber.settings().endpoint + " first.");
        ready = flow.finish(
            app::RecordingToDraft::transcribeRecording(transcriber, m_audio, {}, terminalProgress(context)));
        if (ready) {
            const speech::Transcript& transcript = *flow.transcript();
            enter(Stage::review, transcript.text());
            if (context.json)
                stages.back()["recognizer"] = transcript.recognizer;
            draft = flow.accept(m_organize);
        } else {
            enter(Stage::failed, "Nothing usable came back.");
        }
    }

    bool failed = !draft;
    nlohmann::ordered_json messages = nlohmann::ordered_json::array();
    for (const app::StatusMessage& message : log.messages) {
        const bool alert = message.kind == app::StatusMessage::Kind::alert;
        failed = failed || alert;
        messages.push_back({{"title", message.title}, {"detail", message.detail}, {"kind", alert ? "alert" : "toast"}});
        if (context.json)
            continue;
        std::ostream& stream = alert ? context.err : context.out;
        stream << message.title << "\n" << message.detail << "\n";
    }
    // The draft's id on its own line, as `new` prints it, so the next command can edit the draft.
    if (draft && !context.json)
        context.out << draft->id.text() << "\n";
    if (context.json) {
        nlohmann::ordered_json object{{"stages", stages}, {"messages", messages}};
        if (draft)
            object["draft"] = {{"id", draft->id.text()},
                               {"title", draft->title},
                               {"topics", draft->topics},
                               {"scriptures", draft->scriptures},
                               {"generated", draft->generated}};
        context.out << object.dump(2) << "\n";
    }
    return failed ? 1 : 0;
}

} // namespace quillon::cli
