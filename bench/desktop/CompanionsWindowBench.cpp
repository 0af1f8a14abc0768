// The companions as the preacher meets them, on the offscreen platform: opening an assistant sheet
// up to the moment it shows (before any model answers; target under 100 ms), the Preach Preview
// recount after an edit (under 5 ms), and a keystroke in the settings and help searches (under 10 ms).

#include "app/SermonNotesViewModel.h"
#include "desktop/DeskServices.h"
#include "desktop/assistant/AssistantSheet.h"
#include "desktop/assistant/SnapshotRouter.h"
#include "desktop/help/HelpWindow.h"
#include "desktop/preach/PreachPreviewPanel.h"
#include "desktop/settings/SettingsWindow.h"
#include "platform/Preferences.h"
#include "store/SermonNotesManager.h"

#include <QApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>

namespace {
using namespace quillon;

struct Desk {
    QTemporaryDir folder;
    std::unique_ptr<desktop::DeskServices> services;

    Desk() {
        const std::filesystem::path root(folder.path().toStdString());
        {
            platform::Preferences preferences(root / "preferences.json");
            preferences.set("Quillon.intelligence.endpoint", "http://127.0.0.1:1/v1");
            preferences.set("Quillon.onboardingShown", true);
        }
        services = std::make_unique<desktop::DeskServices>(root / "preferences.json", root / "Library");
        services->load();
    }
};

Desk& desk() {
    static Desk shared;
    return shared;
}

void openSheet(benchmark::State& state) {
    auto router = desktop::snapshotRouter(desk().services->preferences());
    for (auto _ : state) {
        desktop::AssistantSheet sheet(app::AssistantFeatureId::discussionQuestions, *desk().services, router);
        sheet.show();
        QApplication::processEvents();
        state.PauseTiming();
        sheet.cancel();
        state.ResumeTiming();
    }
}
BENCHMARK(openSheet)->Unit(benchmark::kMillisecond);

void preachPreviewRefresh(benchmark::State& state) {
    desktop::PreachPreviewPanel panel(*desk().services, desktop::snapshotRouter(desk().services->preferences()));
    panel.refreshNow();
    for (auto _ : state)
        panel.refreshNow();
}
BENCHMARK(preachPreviewRefresh)->Unit(benchmark::kMicrosecond);

void settingsKeystroke(benchmark::State& state) {
    desktop::SettingsWindow window(desk().services->preferences());
    const QString typed[] = {QStringLiteral("p"), QStringLiteral("pa"), QStringLiteral("pas"), QStringLiteral("pase")};
    for (auto _ : state)
        for (const QString& text : typed)
            window.filter(text);
    state.SetItemsProcessed(state.iterations() * 4);
}
BENCHMARK(settingsKeystroke)->Unit(benchmark::kMicrosecond);

void helpKeystroke(benchmark::State& state) {
    desktop::HelpWindow window(desktop::snapshotRouter(desk().services->preferences()));
    const QString typed[] = {QStringLiteral("s"), QStringLiteral("sy"), QStringLiteral("syn"),
                             QStringLiteral("sync foldr")};
    for (auto _ : state)
        for (const QString& text : typed)
            window.filter(text);
    state.SetItemsProcessed(state.iterations() * 4);
}
BENCHMARK(helpKeystroke)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir home;
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"})
        qputenv(variable, (home.path() + u'/' + QString::fromLatin1(variable)).toUtf8());
    QApplication application(argc, argv);
    // The sample sermons give Preach Preview a realistic sermon with scripture to count.
    if (!desk().services->manager().sermons().empty())
        desk().services->controller().selectSermon(desk().services->manager().sermons().front().id);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
