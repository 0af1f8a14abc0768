#include "desktop/DeskServices.h"
#include "desktop/DesktopOptions.h"
#include "desktop/MainWindow.h"
#include "desktop/shell/DeskAppearance.h"
#include "desktop/shell/ScreenshotTour.h"
#include "desktop/shell/SingleInstance.h"
#include "platform/ApplicationIdentity.h"
#include "platform/Log.h"
#include "platform/Paths.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv) {
    using namespace quillon;
    if (!desktop::hasDisplay(argc, argv)) {
        std::fprintf(stderr, "%s\n", desktop::noDisplaySentence());
        return 2;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quillon-desktop"));
    QApplication::setApplicationDisplayName(QString::fromUtf8(platform::applicationName));
    QApplication::setApplicationVersion(QStringLiteral(QUILLON_VERSION));
    QApplication::setDesktopFileName(QString::fromUtf8(platform::applicationIdentifier));
    desktop::DesktopOptions options = desktop::DesktopOptions::parse(application);

    QString libraryKey = options.libraryRoot ? QString::fromStdString(options.libraryRoot->string()) : QString();
    desktop::SingleInstance instance(desktop::SingleInstance::socketName(libraryKey));
    if (instance.handToRunning(options.files))
        return 0;
    instance.listen();

    platform::setUpLogging(false);
    desktop::DeskServices services(platform::preferencesFile(), options.libraryRoot);
    services.load();
    desktop::applyAppearance(application, services.preferences());
    desktop::MainWindow window(services);
    QObject::connect(&instance, &desktop::SingleInstance::filesReceived, &window, &desktop::MainWindow::openFiles);
    window.show();
    // The screens come after the window: discovery and listeners never hold up the desk.
    QTimer::singleShot(0, &window, &desktop::MainWindow::startMesh);
    if (!options.files.isEmpty())
        window.openFiles(options.files);
    if (!options.screenshotFolder.isEmpty()) {
        auto* tour = new desktop::ScreenshotTour(window, options.screenshotFolder, options.screenshotViews,
                                                 options.screenshotPrefix);
        tour->start();
    }
    return application.exec();
}
