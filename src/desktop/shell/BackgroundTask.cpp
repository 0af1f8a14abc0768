#include "desktop/shell/BackgroundTask.h"

#include "desktop/notifications/DesktopNotifier.h"

#include <QCoreApplication>
#include <QProgressDialog>
#include <QThreadPool>
#include <QTimer>
#include <QWidget>
#include <QtConcurrent>

#include <spdlog/spdlog.h>

#include <algorithm>

namespace quillon::desktop {

namespace {

/// How often the dialog reads how far the work is: the work never waits on the interface.
constexpr int pollMs = 100;
/// Enough that an export need not wait for a transcription to end.
constexpr int longWorkThreads = 2;

} // namespace

BackgroundTask::BackgroundTask(QWidget* window, const QString& label) : QObject(window), m_window(window) {
    setObjectName(QStringLiteral("backgroundTask"));
    setProperty("label", label);
}

BackgroundTask* BackgroundTask::start(QWidget* window, const QString& label, Work work) {
    auto* task = new BackgroundTask(window, label);
    task->run(std::move(work));
    return task;
}

BackgroundTask::~BackgroundTask() {
    // The work reads what its owner lent it; it must be over before the owner goes.
    m_stop.request_stop();
    m_watcher.waitForFinished();
    delete m_dialog;
}

QThreadPool& BackgroundTask::pool() {
    static QThreadPool* threads = [] {
        auto* made = new QThreadPool(QCoreApplication::instance());
        made->setObjectName(QStringLiteral("longWork"));
        made->setMaxThreadCount(longWorkThreads);
        return made;
    }();
    return *threads;
}

QProgressDialog* BackgroundTask::dialog() const {
    return m_dialog;
}

void BackgroundTask::run(Work work) {
    connect(&m_watcher, &QFutureWatcher<Finish>::finished, this, &BackgroundTask::onFinished);
    // Short work ends before the dialog would appear, and then shows nothing at all.
    QTimer::singleShot(dialogDelayMs, this, &BackgroundTask::showDialog);
    m_watcher.setFuture(
        QtConcurrent::run(&pool(), [this, work = std::move(work), stop = m_stop.get_token()]() -> Finish {
            const Progress progress = [this](double done) {
                m_permille.store(static_cast<int>(std::clamp(done, 0.0, 1.0) * 1000));
            };
            try {
                return work(stop, progress);
            } catch (const std::exception& error) {
                spdlog::error("Background work failed: {}", error.what());
                return {};
            }
        }));
}

void BackgroundTask::showDialog() {
    if (m_watcher.isFinished() || isCancelled() || m_dialog)
        return;
    m_dialog = new QProgressDialog(property("label").toString(), tr("Cancel"), 0, 0, m_window);
    m_dialog->setObjectName(QStringLiteral("backgroundProgress"));
    m_dialog->setWindowTitle(m_window ? m_window->windowTitle() : QString());
    m_dialog->setAutoClose(false);
    m_dialog->setAutoReset(false);
    m_dialog->setMinimumWidth(360);
    connect(m_dialog, &QProgressDialog::canceled, this, &BackgroundTask::cancel);
    m_poll = new QTimer(this);
    connect(m_poll, &QTimer::timeout, this, &BackgroundTask::showProgress);
    m_poll->start(pollMs);
    showProgress();
    m_dialog->show();
}

void BackgroundTask::showProgress() {
    const int permille = m_permille.load();
    if (!m_dialog || permille < 0)
        return;
    m_dialog->setMaximum(1000);
    m_dialog->setValue(permille);
}

void BackgroundTask::setLabel(const QString& label) {
    setProperty("label", label);
    if (m_dialog)
        m_dialog->setLabelText(label);
}

void BackgroundTask::cancel() {
    m_stop.request_stop();
    if (m_dialog)
        m_dialog->hide();
}

void BackgroundTask::onFinished() {
    if (m_poll)
        m_poll->stop();
    if (m_dialog) {
        m_dialog->hide();
        m_dialog->deleteLater();
    }
    const Finish finish = m_watcher.result();
    const std::optional<TaskNotice> notice = finish ? finish() : std::nullopt;
    if (notice && m_window) {
        if (auto* notifier = m_window->findChild<DesktopNotifier*>())
            notifier->notify(notice->title, notice->detail);
    }
    emit finished();
    deleteLater();
}

} // namespace quillon::desktop
