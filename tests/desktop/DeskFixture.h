#pragma once

#include "desktop/DeskServices.h"
#include "model/SermonNote.h"

#include <QFuture>
#include <QList>
#include <QSemaphore>
#include <QTemporaryDir>

#include <memory>
#include <string>
#include <vector>

class QMessageBox;
class QThreadPool;
class QWidget;

namespace quillon::desktop::testing {

/// A library in a temporary folder with its own preferences, without the sample sermons unless
/// asked, opened like the application opens it.
class DeskFixture {
public:
    explicit DeskFixture(std::vector<model::SermonNote> sermons = {}, bool withSamples = false);

    DeskServices& services() { return *m_services; }
    std::filesystem::path root() const;
    std::filesystem::path preferencesFile() const;
    /// Opens the same library and preferences again, as a restart would.
    void reopen();

private:
    QTemporaryDir m_folder;
    std::unique_ptr<DeskServices> m_services;
};

/// Holds every thread of the desk's pool for long work, so that work started meanwhile waits for
/// release(): a test can then press Cancel before the work has begun, without racing it.
class PoolHold {
public:
    PoolHold();
    ~PoolHold();
    PoolHold(const PoolHold&) = delete;
    PoolHold& operator=(const PoolHold&) = delete;
    void release();

private:
    QThreadPool& m_pool;
    int m_threads;
    QSemaphore m_started;
    QSemaphore m_gate;
    QList<QFuture<void>> m_held;
    bool m_released = false;
};

/// A sermon titled `title` whose last change was `minutesAgo` before a fixed instant.
model::SermonNote sermonTitled(const std::string& title, int minutesAgo = 0, std::string series = {});

/// The visible message box named `name` (the controller's alerts and questions), if one is open.
QMessageBox* openBox(const char* name);

/// The child of `root` with `objectName` and type T; fails the running test when there is none.
template <typename T>
T* child(QWidget* root, const char* objectName);

} // namespace quillon::desktop::testing

#include <QTest>
#include <QWidget>

template <typename T>
T* quillon::desktop::testing::child(QWidget* root, const char* objectName) {
    T* found = root->findChild<T*>(QString::fromLatin1(objectName));
    if (!found)
        QTest::qFail((QByteArray("no widget named ") + objectName).constData(), __FILE__, __LINE__);
    return found;
}
