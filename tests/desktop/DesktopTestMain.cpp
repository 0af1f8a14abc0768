// Runs one suite of window tests, named by the first argument, on the offscreen platform.
#include <QApplication>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>

std::unique_ptr<QObject> makeSidebarTest();
std::unique_ptr<QObject> makeBiblePanelTest();
std::unique_ptr<QObject> makeWindowTest();
std::unique_ptr<QObject> makeInstanceTest();
std::unique_ptr<QObject> makeEditorTest();
std::unique_ptr<QObject> makeOutlineModelTest();
std::unique_ptr<QObject> makeEditingTest();
std::unique_ptr<QObject> makePreachPreviewTest();
std::unique_ptr<QObject> makeSettingsWindowTest();
std::unique_ptr<QObject> makeAssistantSheetTest();
std::unique_ptr<QObject> makeCompanionsTest();
std::unique_ptr<QObject> makeHelpDiagnosticsTest();
std::unique_ptr<QObject> makeNotificationTest();
std::unique_ptr<QObject> makeCommandsTest();
std::unique_ptr<QObject> makeKillTest();
std::unique_ptr<QObject> makeOutletIndicatorTest();
std::unique_ptr<QObject> makeBackgroundWorkTest();
int runTypist(const std::filesystem::path& root, const std::filesystem::path& preferences);

int main(int argc, char** argv) {
    const std::map<std::string, std::function<std::unique_ptr<QObject>()>> suites = {
        {"sidebar", makeSidebarTest},
        {"bible", makeBiblePanelTest},
        {"window", makeWindowTest},
        {"instance", makeInstanceTest},
        {"editor", makeEditorTest},
        {"outline", makeOutlineModelTest},
        {"editing", makeEditingTest},
        {"preach", makePreachPreviewTest},
        {"settings", makeSettingsWindowTest},
        {"assistant", makeAssistantSheetTest},
        {"companions", makeCompanionsTest},
        {"help", makeHelpDiagnosticsTest},
        {"notify", makeNotificationTest},
        {"commands", makeCommandsTest},
        {"kill", makeKillTest},
        {"outlets", makeOutletIndicatorTest},
        {"background", makeBackgroundWorkTest},
    };
    const bool typist = argc == 4 && std::string(argv[1]) == "typist";
    if (argc < 2 || (!suites.contains(argv[1]) && !typist)) {
        std::fprintf(stderr, "usage: desktop_tests <suite> [QTest options]; suites:");
        for (const auto& [name, make] : suites)
            std::fprintf(stderr, " %s", name.c_str());
        std::fprintf(stderr, "\n");
        return 2;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (typist) {
        // Killed by its parent test, which gave it the parent's own temporary home.
        QApplication application(argc, argv);
        return runTypist(argv[2], argv[3]);
    }
    // The application reads and writes nothing of the developer's own.
    QTemporaryDir home;
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"})
        qputenv(variable, (home.path() + u'/' + QString::fromLatin1(variable)).toUtf8());
    QApplication application(argc, argv);
    std::unique_ptr<QObject> suite = suites.at(argv[1])();
    return QTest::qExec(suite.get(), argc - 1, argv + 1);
}
