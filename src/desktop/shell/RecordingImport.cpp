#include "desktop/shell/RecordingImport.h"

#include "app/RecordingToDraft.h"
#include "app/SermonNotesViewModel.h"
#include "desktop/DeskServices.h"
#include "desktop/shell/BackgroundTask.h"
#include "speech/TranscriptionSettings.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QProgressDialog>
#include <QTimer>
#include <QWidget>

#include <optional>
#include <string>

namespace quillon::desktop {

namespace {

std::optional<TaskNotice> noticeOf(const app::SermonNotesViewModel& controller) {
    const auto& message = controller.lastStatus();
    if (!message)
        return std::nullopt;
    return TaskNotice{QString::fromStdString(message->title), QString::fromStdString(message->detail)};
}

} // namespace

RecordingImport::RecordingImport(QWidget& window, DeskServices& services)
    : QObject(&window), m_window(window), m_services(services) {
    setObjectName(QStringLiteral("recordingImport"));
}

RecordingImport::~RecordingImport() {
    // The work borrows the transcriber and reports to the flow: it ends before they go.
    delete m_task;
}

void RecordingImport::start(const QString& file) {
    if (m_task) {
        if (QProgressDialog* dialog = m_task->dialog())
            dialog->raise();
        return;
    }
    // The settings as they are now, however the settings window changed them.
    m_transcriber =
        std::make_shared<speech::Transcriber>(speech::TranscriptionSettings::fromPreferences(m_services.preferences()));
    m_flow = std::make_unique<app::RecordingToDraft>(m_services.controller(), *m_transcriber);
    m_flow->openAuthorizing();
    // Asking a transcription server whether it answers may take seconds.
    m_task = BackgroundTask::start<std::optional<std::string>>(
        &m_window, tr("Checking for speech recognition…"),
        [transcriber = m_transcriber](std::stop_token, const BackgroundTask::Progress&) {
            return transcriber->unavailableReason();
        },
        [this, file](std::optional<std::string> unavailable) -> std::optional<TaskNotice> {
            if (!m_flow->authorize(unavailable)) {
                end();
                return std::nullopt;
            }
            // The file dialog waits for the preacher: not from inside the finishing task.
            QTimer::singleShot(0, this, [this, file] { pick(file); });
            return std::nullopt;
        });
}

void RecordingImport::pick(const QString& file) {
    const QString chosen = !file.isEmpty()
                               ? file
                               : QFileDialog::getOpenFileName(&m_window, tr("New Sermon from Recording"), {},
                                                              tr("Recordings (*.wav *.flac *.ogg *.mp3 *.m4a *.opus)"));
    if (chosen.isEmpty())
        return end();
    transcribe(chosen);
}

void RecordingImport::transcribe(const QString& file) {
    const std::filesystem::path path = file.toStdString();
    m_flow->startTranscribing(path);
    auto work = [transcriber = m_transcriber, path](std::stop_token stop, const BackgroundTask::Progress& progress) {
        return app::RecordingToDraft::transcribeRecording(*transcriber, path, stop,
                                                          [&progress](double heard, double total) {
                                                              if (total > 0)
                                                                  progress(heard / total);
                                                          });
    };
    auto finish = [this](app::RecordingToDraft::Outcome outcome) -> std::optional<TaskNotice> {
        const bool cancelled = outcome.cancelled;
        app::SermonNotesViewModel& controller = m_services.controller();
        if (!m_flow->finish(std::move(outcome))) {
            end();
            return cancelled ? std::nullopt : noticeOf(controller);
        }
        // "Transcription Ready" is what the preacher behind other windows wants to hear.
        std::optional<TaskNotice> ready = noticeOf(controller);
        m_flow->accept(false);
        end();
        return ready;
    };
    m_task = BackgroundTask::start<app::RecordingToDraft::Outcome>(
        &m_window, tr("Transcribing “%1”…").arg(QFileInfo(file).fileName()), std::move(work), std::move(finish));
}

void RecordingImport::end() {
    if (m_services.controller().recordingStage())
        m_flow->dismiss();
    emit ended();
}

} // namespace quillon::desktop
