#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace quillon::desktop {

class MainWindow;

/// Walks the real window through its main views and saves a picture of the screen after each
/// (for docs/screenshots, under Xvfb; scripts/screenshots drives it). Quits the application when
/// done. The window's library should hold the sample sermons.
class ScreenshotTour : public QObject {
    Q_OBJECT
public:
    /// Pictures go to `folder` as `<prefix><view>.png`; `views` chooses some (all when empty).
    ScreenshotTour(MainWindow& window, QString folder, QStringList views = {}, QString prefix = {});

    /// Starts once the event loop runs.
    void start();

private:
    struct Step {
        QString name;
        std::function<void()> prepare;
    };
    std::vector<Step> steps();
    void next();
    void shoot(const QString& name);

    MainWindow& m_window;
    QString m_folder;
    QStringList m_views;
    QString m_prefix;
    std::vector<Step> m_steps;
    std::size_t m_next = 0;
};

} // namespace quillon::desktop
