#pragma once

#include <QStringList>

#include <filesystem>
#include <optional>

class QCoreApplication;

namespace quillon::desktop {

/// What `quillon-desktop` was asked to do: the library to open and the files to hand to the window.
struct DesktopOptions {
    /// --library DIR: the storage root for this run instead of the preferences' choice.
    std::optional<std::filesystem::path> libraryRoot;
    /// Files named on the command line, made absolute (a running window resolves no relative paths).
    QStringList files;
    /// --screenshots DIR (hidden, for the documentation): walk the views, save pictures, quit.
    QString screenshotFolder;
    /// --screenshot-views a,b and --screenshot-prefix P: which views, and a prefix for their files.
    QStringList screenshotViews;
    QString screenshotPrefix;

    /// Reads the application's arguments; --help and --version print and exit.
    static DesktopOptions parse(const QCoreApplication& application);
};

/// True when Qt can open a window: a platform chosen explicitly, an X display or a Wayland socket.
bool hasDisplay(int argc, char** argv);

/// The sentence printed when there is no display.
const char* noDisplaySentence();

} // namespace quillon::desktop
