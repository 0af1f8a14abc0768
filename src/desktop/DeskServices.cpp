#include "desktop/DeskServices.h"

#include "intelligence/CommentaryLibrary.h"

#include <QThreadPool>

namespace quillon::desktop {

DeskServices::DeskServices(std::filesystem::path preferencesFile, std::optional<std::filesystem::path> libraryRoot)
    : m_preferences(std::make_unique<platform::Preferences>(std::move(preferencesFile))) {
    // The window stores its selection and layout on every click; the disk must not hold it up.
    m_preferences->writeInBackground();
    m_storage = libraryRoot ? std::make_unique<store::SermonStorage>(store::SermonStorage::atRoot(*libraryRoot))
                            : std::make_unique<store::SermonStorage>(*m_preferences);
    m_manager = std::make_unique<store::SermonNotesManager>(*m_storage, *m_preferences);
    m_versions = std::make_unique<store::SermonVersionHistory>([storage = m_storage.get()] { return storage->root(); },
                                                               *m_preferences);
    m_manager->setVersionHistoryHook(m_versions.get());
    m_controller = std::make_unique<app::SermonNotesViewModel>(*m_manager, *m_preferences, m_verseText);
}

DeskServices::~DeskServices() {
    // Work on the thread pool (a quotation check, the illustration finder, a search, an export)
    // reads the Bible library, the commentaries and the preferences through references to these
    // members and may still run after its window closed: it ends before they do.
    QThreadPool::globalInstance()->waitForDone();
}

void DeskServices::load() {
    m_controller->start();
}

intelligence::CommentaryLibrary& DeskServices::commentaries() {
    std::lock_guard lock(m_commentariesMutex);
    if (!m_commentaries)
        m_commentaries = std::make_unique<intelligence::CommentaryLibrary>();
    return *m_commentaries;
}

} // namespace quillon::desktop
