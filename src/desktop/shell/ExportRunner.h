#pragma once

#include "app/ExportFormat.h"
#include "desktop/shell/BackgroundTask.h"
#include "model/SermonNote.h"

#include <QObject>
#include <QPointer>

#include <filesystem>

namespace quillon::app {
class SermonNotesViewModel;
}

namespace quillon::desktop {

/// Writes exports off the interface thread (rendering a long sermon with its verses can take a
/// moment), with a progress dialog and Cancel when it lasts, and reports the outcome through the
/// controller, as its own export would. A cancelled export writes nothing and says nothing.
class ExportRunner : public QObject {
    Q_OBJECT
public:
    /// `verses` must be safe to read from another thread (the Bible library is). A widget
    /// `parent` anchors the progress dialog.
    ExportRunner(app::SermonNotesViewModel& controller, const exports::VerseTextSource& verses,
                 QObject* parent = nullptr);

    /// Exports a copy of `sermon` as it is now; false while another export runs.
    bool start(const model::SermonNote& sermon, app::ExportFormat format, const std::filesystem::path& file);
    /// Writes the library archive to `file` the same way; false while another export runs.
    bool startArchive(const std::filesystem::path& file);
    bool isRunning() const { return !m_task.isNull(); }
    /// The export under way, for its Cancel; null when none runs.
    BackgroundTask* task() const { return m_task; }

signals:
    void finished(bool succeeded, const QString& file);
    /// The preacher cancelled the export: no file was written.
    void cancelled(const QString& file);

private:
    app::SermonNotesViewModel& m_controller;
    const exports::VerseTextSource& m_verses;
    QPointer<BackgroundTask> m_task;
};

} // namespace quillon::desktop
