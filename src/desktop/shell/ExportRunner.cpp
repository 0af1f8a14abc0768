#include "desktop/shell/ExportRunner.h"

#include "app/SermonNotesViewModel.h"

#include <QtConcurrent>

#include <spdlog/spdlog.h>

namespace quillon::desktop {

ExportRunner::ExportRunner(app::SermonNotesViewModel& controller, const exports::VerseTextSource& verses,
                           QObject* parent)
    : QObject(parent), m_controller(controller), m_verses(verses) {
    connect(&m_watcher, &QFutureWatcher<Outcome>::finished, this, &ExportRunner::onFinished);
}

bool ExportRunner::start(const model::SermonNote& sermon, app::ExportFormat format, const std::filesystem::path& file) {
    if (m_watcher.isRunning())
        return false;
    m_format = format;
    m_file = file;
    m_watcher.setFuture(QtConcurrent::run([verses = &m_verses, sermon, format, file]() -> Outcome {
        try {
            app::makeExporter(format, *verses)->exportSermonTo(sermon, file);
            return std::nullopt;
        } catch (const std::exception& error) {
            spdlog::error("Export of \"{}\" failed: {}", sermon.title, error.what());
            return std::string(app::exportFailureSentence(format));
        }
    }));
    return true;
}

void ExportRunner::onFinished() {
    Outcome outcome = m_watcher.result();
    app::StatusMessage message;
    if (outcome) {
        message = {"Export Failed", *outcome, app::StatusMessage::Kind::alert};
    } else {
        message = {std::string(app::exportedTitle(m_format)), m_file.filename().string(),
                   app::StatusMessage::Kind::toast};
    }
    m_controller.post(message);
    emit finished(!outcome, QString::fromStdString(m_file.string()));
}

} // namespace quillon::desktop
