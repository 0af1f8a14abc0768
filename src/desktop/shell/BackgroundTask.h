#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <QPointer>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

class QProgressDialog;
class QThreadPool;
class QTimer;
class QWidget;

namespace quillon::desktop {

/// What finished work tells the preacher when the window is behind other windows.
struct TaskNotice {
    QString title;
    QString detail;
};

/// One piece of long work (a backup, a restore, an export, a transcription) run away from the
/// interface thread. A progress dialog appears only when the work lasts, with a bar that is
/// busy until the work says how far it is, and a Cancel that asks the work to stop. The outcome
/// is applied back on the interface thread; a notice it returns is posted as a desktop
/// notification when the window is not in front. The task deletes itself when done.
class BackgroundTask : public QObject {
    Q_OBJECT
public:
    /// Called by the work, from its thread, with how far it is (0 to 1).
    using Progress = std::function<void(double)>;
    /// Runs on the interface thread once the work is over, also when it was cancelled.
    using Finish = std::function<std::optional<TaskNotice>()>;
    using Work = std::function<Finish(std::stop_token, const Progress&)>;

    /// How long work may take before its progress dialog appears.
    static constexpr int dialogDelayMs = 300;

    /// The threads long work runs on: its own, because the shared pool also paints (Qt's raster
    /// engine splits large fills over it) and must not wait behind a transcription.
    static QThreadPool& pool();

    /// Starts `work`; the dialog (over `window`, which may be null) says `label`.
    static BackgroundTask* start(QWidget* window, const QString& label, Work work);

    /// The same for work that returns a value, handed to `finish` on the interface thread.
    template <typename T>
    static BackgroundTask* start(QWidget* window, const QString& label,
                                 std::function<T(std::stop_token, const Progress&)> work,
                                 std::function<std::optional<TaskNotice>(T)> finish) {
        return start(window, label,
                     [work = std::move(work), finish = std::move(finish)](std::stop_token stop,
                                                                          const Progress& progress) -> Finish {
                         auto value = std::make_shared<T>(work(stop, progress));
                         return [finish, value] { return finish(std::move(*value)); };
                     });
    }

    ~BackgroundTask() override;

    void setLabel(const QString& label);
    /// Asks the work to stop; its outcome still comes back, saying it was cancelled.
    void cancel();
    bool isCancelled() const { return m_stop.stop_requested(); }
    /// The progress dialog once it has appeared; null before.
    QProgressDialog* dialog() const;

signals:
    /// The outcome was applied; the task is deleted next.
    void finished();

private:
    BackgroundTask(QWidget* window, const QString& label);
    void run(Work work);
    void showDialog();
    void showProgress();
    void onFinished();

    QPointer<QWidget> m_window;
    QPointer<QProgressDialog> m_dialog;
    QTimer* m_poll = nullptr;
    std::stop_source m_stop;
    /// Thousandths done, or -1 while the work has not said.
    std::atomic<int> m_permille{-1};
    QFutureWatcher<Finish> m_watcher;
};

} // namespace quillon::desktop
