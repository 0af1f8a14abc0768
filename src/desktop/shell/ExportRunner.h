#pragma once

#include "app/ExportFormat.h"
#include "model/SermonNote.h"

#include <QFutureWatcher>
#include <QObject>

#include <filesystem>
#include <optional>
#include <string>

namespace quillon::app {
class SermonNotesViewModel;
}

namespace quillon::desktop {

/// Writes exports off the interface thread (rendering a long sermon with its verses can take a
/// moment) and reports the outcome through the controller, as its own export would.
class ExportRunner : public QObject {
    Q_OBJECT
public:
    /// `verses` must be safe to read from another thread (the Bible library is).
    ExportRunner(app::SermonNotesViewModel& controller, const exports::VerseTextSource& verses,
                 QObject* parent = nullptr);

    /// Exports a copy of `sermon` as it is now; false while another export runs.
    bool start(const model::SermonNote& sermon, app::ExportFormat format, const std::filesystem::path& file);
    bool isRunning() const { return m_watcher.isRunning(); }

signals:
    void finished(bool succeeded, const QString& file);

private:
    /// Nothing on success, else the failure's sentence.
    using Outcome = std::optional<std::string>;
    void onFinished();

    app::SermonNotesViewModel& m_controller;
    const exports::VerseTextSource& m_verses;
    QFutureWatcher<Outcome> m_watcher;
    app::ExportFormat m_format = app::ExportFormat::word;
    std::filesystem::path m_file;
};

} // namespace quillon::desktop
