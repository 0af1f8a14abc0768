#include "desktop/shell/ExportRunner.h"

#include "app/SermonNotesViewModel.h"
#include "desktop/shell/BackgroundTask.h"
#include "platform/AtomicFile.h"

#include <QWidget>

#include <spdlog/spdlog.h>

#include <optional>
#include <string>

namespace quillon::desktop {

namespace {

/// How one export ended.
struct Outcome {
    bool cancelled = false;
    /// The failure's sentence; empty on success.
    std::string failure;
};

QString fileName(const std::filesystem::path& file) {
    return QString::fromStdString(file.filename().string());
}

} // namespace

ExportRunner::ExportRunner(app::SermonNotesViewModel& controller, const exports::VerseTextSource& verses,
                           QObject* parent)
    : QObject(parent), m_controller(controller), m_verses(verses) {}

bool ExportRunner::start(const model::SermonNote& sermon, app::ExportFormat format, const std::filesystem::path& file) {
    if (isRunning())
        return false;
    auto work = [verses = &m_verses, sermon, format, file](std::stop_token stop, const BackgroundTask::Progress&) {
        Outcome outcome;
        try {
            const std::string bytes = app::makeExporter(format, *verses)->render(sermon);
            // Checked before the write, which is atomic: a cancel never leaves a part of a file.
            if (stop.stop_requested()) {
                outcome.cancelled = true;
                return outcome;
            }
            platform::writeFileAtomically(file, bytes);
        } catch (const std::exception& error) {
            spdlog::error("Export of \"{}\" failed: {}", sermon.title, error.what());
            outcome.failure = app::exportFailureSentence(format);
        }
        return outcome;
    };
    auto finish = [this, format, file](Outcome outcome) -> std::optional<TaskNotice> {
        const QString name = QString::fromStdString(file.string());
        if (outcome.cancelled) {
            emit cancelled(name);
            return std::nullopt;
        }
        const bool failed = !outcome.failure.empty();
        app::StatusMessage message =
            failed ? app::StatusMessage{"Export Failed", outcome.failure, app::StatusMessage::Kind::alert}
                   : app::StatusMessage{std::string(app::exportedTitle(format)), file.filename().string(),
                                        app::StatusMessage::Kind::toast};
        m_controller.post(message);
        emit finished(!failed, name);
        return TaskNotice{QString::fromStdString(message.title), fileName(file)};
    };
    m_task = BackgroundTask::start<Outcome>(qobject_cast<QWidget*>(parent()),
                                            tr("Exporting “%1”…").arg(QString::fromStdString(sermon.title)),
                                            std::move(work), std::move(finish));
    return true;
}

bool ExportRunner::startArchive(const std::filesystem::path& file) {
    if (isRunning())
        return false;
    auto work = [job = m_controller.prepareLibraryArchive(file)](std::stop_token stop,
                                                                 const BackgroundTask::Progress&) {
        return app::SermonNotesViewModel::writeLibraryArchive(job, stop);
    };
    auto finish = [this, file](app::ArchiveOutcome outcome) -> std::optional<TaskNotice> {
        const QString name = QString::fromStdString(file.string());
        if (outcome.cancelled) {
            emit cancelled(name);
            return std::nullopt;
        }
        const bool written = m_controller.finishLibraryArchive(outcome).has_value();
        emit finished(written, name);
        const auto& message = m_controller.lastStatus();
        return TaskNotice{QString::fromStdString(message->title), fileName(outcome.written.value_or(file))};
    };
    m_task = BackgroundTask::start<app::ArchiveOutcome>(qobject_cast<QWidget*>(parent()), tr("Exporting the library…"),
                                                        std::move(work), std::move(finish));
    return true;
}

} // namespace quillon::desktop
