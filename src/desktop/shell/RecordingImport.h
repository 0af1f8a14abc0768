#pragma once

#include "desktop/shell/BackgroundTask.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

class QWidget;

namespace quillon::app {
class RecordingToDraft;
}

namespace quillon::speech {
class Transcriber;
}

namespace quillon::desktop {

class DeskServices;

/// "New Sermon from Recording…": checks that speech can be recognised, asks for the recording,
/// transcribes it in the background with the controller's stages as its progress, and adds the
/// draft through the controller, which selects it. Every message is the controller's.
class RecordingImport : public QObject {
    Q_OBJECT
public:
    /// `services` must outlive the import.
    RecordingImport(QWidget& window, DeskServices& services);
    ~RecordingImport() override;

    /// Starts over with the check; a `file` given is transcribed without asking for one.
    void start(const QString& file = {});
    /// The check or the transcription under way; null when neither runs.
    BackgroundTask* task() const { return m_task; }

signals:
    /// The flow ended: with a new draft, a failure, or a cancel.
    void ended();

private:
    void pick(const QString& file);
    void transcribe(const QString& file);
    void end();

    QWidget& m_window;
    DeskServices& m_services;
    std::shared_ptr<speech::Transcriber> m_transcriber;
    std::unique_ptr<app::RecordingToDraft> m_flow;
    QPointer<BackgroundTask> m_task;
};

} // namespace quillon::desktop
