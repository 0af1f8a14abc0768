#include "desktop/DeskFixture.h"

#include "desktop/shell/BackgroundTask.h"
#include "platform/Preferences.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"

#include <QApplication>
#include <QMessageBox>
#include <QThreadPool>
#include <QtConcurrent>

namespace quillon::desktop::testing {

DeskFixture::DeskFixture(std::vector<model::SermonNote> sermons, bool withSamples) {
    {
        platform::Preferences preferences(preferencesFile());
        preferences.set(store::SermonNotesManager::sampleSermonsHiddenKey, !withSamples);
        // The first-start welcome would open over every window under test.
        preferences.set("Quillon.onboardingShown", true);
    }
    auto storage = store::SermonStorage::atRoot(root());
    for (const auto& sermon : sermons)
        storage.saveSermon(sermon);
    reopen();
}

std::filesystem::path DeskFixture::root() const {
    return std::filesystem::path(m_folder.path().toStdString()) / "Library";
}

std::filesystem::path DeskFixture::preferencesFile() const {
    return std::filesystem::path(m_folder.path().toStdString()) / "preferences.json";
}

void DeskFixture::reopen() {
    m_services.reset();
    m_services = std::make_unique<DeskServices>(preferencesFile(), root());
    m_services->load();
}

PoolHold::PoolHold() : m_pool(BackgroundTask::pool()), m_threads(m_pool.maxThreadCount()) {
    for (int i = 0; i < m_threads; ++i)
        m_held << QtConcurrent::run(&m_pool, [this] {
            m_started.release();
            m_gate.acquire();
        });
    m_started.acquire(m_threads);
}

PoolHold::~PoolHold() {
    release();
}

void PoolHold::release() {
    if (m_released)
        return;
    m_released = true;
    m_gate.release(m_threads);
    for (QFuture<void>& held : m_held)
        held.waitForFinished();
}

model::SermonNote sermonTitled(const std::string& title, int minutesAgo, std::string series) {
    using namespace std::chrono;
    const model::DateTime base = sys_days{2025y / 3 / 9} + hours{12};
    model::SermonNote sermon;
    sermon.id = model::Uuid::random();
    sermon.title = title;
    sermon.speaker = "Ann Lee";
    sermon.date = sys_days{2025y / 3 / 16};
    sermon.createdAt = base - hours{48};
    sermon.modifiedAt = base - minutes{minutesAgo};
    if (!series.empty())
        sermon.series = std::move(series);
    return sermon;
}

QMessageBox* openBox(const char* name) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* box = qobject_cast<QMessageBox*>(widget);
            box && box->objectName() == QLatin1String(name) && box->isVisible())
            return box;
    }
    return nullptr;
}

} // namespace quillon::desktop::testing
