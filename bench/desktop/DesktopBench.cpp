// The desk's window on generated libraries, driven as a preacher drives it (offscreen platform):
// switching sermons (target under 30 ms), one keystroke in the manuscript until its file is saved
// (under 10 ms plus the fsync), and filtering a 10,000-sermon sidebar (under 20 ms a keystroke).
// `desktop_bench --make-library DIR N` writes a library of N sermons for bench/desktop_compare,
// which measures start-up and memory against BibleTime and Xiphos.

#include "SermonWords.h"
#include "app/SermonNotesViewModel.h"
#include "desktop/DeskServices.h"
#include "desktop/MainWindow.h"
#include "desktop/editor/RichTextEditor.h"
#include "desktop/sermon/SermonView.h"
#include "desktop/sidebar/SermonListModel.h"
#include "desktop/sidebar/SermonSidebar.h"
#include "model/SermonCoding.h"

#include <QApplication>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>

namespace {
namespace fs = std::filesystem;
using namespace quillon;

/// Four topics of three sub-topics with a scripture each and a 1,500-word manuscript.
model::SermonNote generateSermon(std::mt19937_64& random, int index) {
    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = bench::sermonWords(random, 3) + " " + std::to_string(index);
    sermon.speaker = "Pastor Ann Lee";
    sermon.series = "Series " + std::to_string(index % 40);
    sermon.notes = bench::sermonWords(random, 1'500);
    for (int t = 0; t < 4; ++t) {
        model::SermonTopic topic;
        topic.id = model::Uuid::random();
        topic.title = bench::sermonWords(random, 4);
        topic.details = bench::sermonWords(random, 30);
        topic.sortOrder = t;
        for (int s = 0; s < 3; ++s) {
            model::SermonSubTopic subTopic;
            subTopic.id = model::Uuid::random();
            subTopic.title = bench::sermonWords(random, 4);
            subTopic.sortOrder = s;
            model::SermonScripture scripture;
            scripture.id = model::Uuid::random();
            scripture.bookName = "John";
            scripture.chapter = 3;
            scripture.startVerse = 16;
            scripture.endVerse = 18;
            subTopic.scriptures.push_back(scripture);
            topic.subTopics.push_back(std::move(subTopic));
        }
        sermon.topics.push_back(std::move(topic));
    }
    return sermon;
}

void writeLibrary(const fs::path& root, int count) {
    fs::create_directories(root / "Sermons");
    std::mt19937_64 random{20250309};
    for (int index = 0; index < count; ++index) {
        const auto sermon = generateSermon(random, index);
        std::ofstream(root / "Sermons" / (sermon.id.text() + ".json"), std::ios::binary)
            << model::encodeSermonFile(sermon);
    }
}

/// A window over a generated library of `count` sermons, made once per size.
struct BenchDesk {
    QTemporaryDir folder;
    std::unique_ptr<desktop::DeskServices> services;
    std::unique_ptr<desktop::MainWindow> window;

    explicit BenchDesk(int count) {
        const fs::path root = folder.filePath(QStringLiteral("Library")).toStdString();
        writeLibrary(root, count);
        services = std::make_unique<desktop::DeskServices>(
            folder.filePath(QStringLiteral("preferences.json")).toStdString(), root);
        services->load();
        window = std::make_unique<desktop::MainWindow>(*services);
        window->resize(1400, 880);
        window->show();
        QApplication::processEvents();
    }
};

/// The windows made so far; emptied before the application goes.
std::map<int, std::unique_ptr<BenchDesk>>& desks() {
    static std::map<int, std::unique_ptr<BenchDesk>> made;
    return made;
}

BenchDesk& desk(int count) {
    auto& made = desks()[count];
    if (!made)
        made = std::make_unique<BenchDesk>(count);
    return *made;
}

void switchSermons(benchmark::State& state) {
    BenchDesk& bench = desk(1'000);
    auto& controller = bench.services->controller();
    const auto& sermons = controller.store().sermons();
    const model::Uuid first = sermons[10].id;
    const model::Uuid second = sermons[500].id;
    bool toFirst = true;
    for (auto _ : state) {
        controller.selectSermon(toFirst ? first : second);
        QApplication::processEvents(); // the views repaint what changed
        toFirst = !toFirst;
    }
}
BENCHMARK(switchSermons)->Unit(benchmark::kMillisecond)->Iterations(100);

void keystrokeToSavedFile(benchmark::State& state) {
    BenchDesk& bench = desk(1'000);
    auto& controller = bench.services->controller();
    controller.selectSermon(controller.store().sermons()[20].id);
    desktop::RichTextEditor* notes = bench.window->sermonView()->notesEditor();
    notes->setFocus();
    notes->moveCursor(QTextCursor::End);
    for (auto _ : state)
        QTest::keyClick(notes, 'a'); // the controller's update writes the file before this returns
}
BENCHMARK(keystrokeToSavedFile)->Unit(benchmark::kMillisecond)->Iterations(100);

void filterTenThousand(benchmark::State& state) {
    BenchDesk& bench = desk(10'000);
    QLineEdit* filter = bench.window->sidebar()->filterField();
    const QString typed = QStringLiteral("grace kingdom");
    int length = 0;
    for (auto _ : state) {
        length = length % typed.size() + 1;
        filter->setText(typed.left(length));
    }
    state.counters["shown"] = bench.window->sermonModel().rowCount();
}
BENCHMARK(filterTenThousand)->Unit(benchmark::kMillisecond)->Iterations(100);

} // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::string(argv[1]) == "--make-library") {
        writeLibrary(argv[2], std::stoi(argv[3]));
        return 0;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir home;
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"})
        qputenv(variable, (home.path() + u'/' + QString::fromLatin1(variable)).toUtf8());
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    desks().clear();
    return 0;
}
