#include "desktop/DesktopOptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <cstdlib>
#include <string_view>

namespace quillon::desktop {

namespace {

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value;
}

} // namespace

DesktopOptions DesktopOptions::parse(const QCoreApplication& application) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate("main", "Quillon, the sermon-preparation desk."));
    parser.addHelpOption();
    parser.addVersionOption();
    QCommandLineOption library(QStringLiteral("library"),
                               QCoreApplication::translate("main", "Open the sermon library in DIR."),
                               QStringLiteral("DIR"));
    parser.addOption(library);
    QCommandLineOption screenshots(QStringLiteral("screenshots"), QStringLiteral("Save pictures of the views."),
                                   QStringLiteral("DIR"));
    QCommandLineOption views(QStringLiteral("screenshot-views"), QStringLiteral("Which views."),
                             QStringLiteral("LIST"));
    QCommandLineOption prefix(QStringLiteral("screenshot-prefix"), QStringLiteral("File name prefix."),
                              QStringLiteral("P"));
    for (QCommandLineOption* hidden : {&screenshots, &views, &prefix}) {
        hidden->setFlags(QCommandLineOption::HiddenFromHelp);
        parser.addOption(*hidden);
    }
    parser.addPositionalArgument(
        QStringLiteral("files"),
        QCoreApplication::translate("main", "Sermon (.quillet) or archive (.vrnsermons) files to open."),
        QStringLiteral("[files...]"));
    parser.process(application);

    DesktopOptions options;
    if (parser.isSet(library))
        options.libraryRoot = std::filesystem::absolute(parser.value(library).toStdString());
    options.screenshotFolder = parser.value(screenshots);
    if (parser.isSet(views))
        options.screenshotViews = parser.value(views).split(u',', Qt::SkipEmptyParts);
    options.screenshotPrefix = parser.value(prefix);
    for (const QString& file : parser.positionalArguments())
        options.files << QFileInfo(file).absoluteFilePath();
    return options;
}

bool hasDisplay(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        std::string_view argument(argv[i]);
        if (argument == "-platform" || argument == "--platform")
            return true;
    }
    return isSet("QT_QPA_PLATFORM") || isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
}

const char* noDisplaySentence() {
    return "Quillon's desktop needs a graphical display and none is available here; use the command line "
           "instead, for example `quillon list` or `quillon --help`.";
}

} // namespace quillon::desktop
