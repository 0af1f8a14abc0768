#pragma once

#include "app/SermonNotesViewModel.h"
#include "export/BibleVerseText.h"
#include "platform/Preferences.h"
#include "scripture/BibleLoader.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"
#include "store/SermonVersionHistory.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>

namespace quillon::intelligence {
class CommentaryLibrary;
}

namespace quillon::desktop {

/// The long-lived core objects one window works over: preferences, the sermon store with its
/// version history, the editing controller, the Bible library and the commentaries (opened on first use, because
/// reading the SWORD modules costs more than a window should wait for).
class DeskServices {
public:
    /// `libraryRoot` overrides the storage root chosen in preferences (the --library option).
    DeskServices(std::filesystem::path preferencesFile, std::optional<std::filesystem::path> libraryRoot);
    /// Waits for the background work still reading these services (see the .cpp).
    ~DeskServices();
    DeskServices(const DeskServices&) = delete;
    DeskServices& operator=(const DeskServices&) = delete;

    platform::Preferences& preferences() { return *m_preferences; }
    store::SermonStorage& storage() { return *m_storage; }
    store::SermonNotesManager& manager() { return *m_manager; }
    store::SermonVersionHistory& versions() { return *m_versions; }
    scripture::BibleLoader& bibles() { return m_bibles; }
    /// Verse text for exports and the scripture panel, read from the Bible library.
    const exports::VerseTextSource& verseText() const { return m_verseText; }
    /// The editing controller every change goes through.
    app::SermonNotesViewModel& controller() { return *m_controller; }
    /// Thread-safe; the first call reads the SWORD configuration.
    intelligence::CommentaryLibrary& commentaries();

    /// Reads the library, puts the sample sermons in on first start and restores the selection.
    void load();

private:
    std::unique_ptr<platform::Preferences> m_preferences;
    std::unique_ptr<store::SermonStorage> m_storage;
    std::unique_ptr<store::SermonNotesManager> m_manager;
    std::unique_ptr<store::SermonVersionHistory> m_versions;
    scripture::BibleLoader m_bibles;
    exports::BibleVerseText m_verseText{m_bibles};
    std::unique_ptr<app::SermonNotesViewModel> m_controller;
    std::unique_ptr<intelligence::CommentaryLibrary> m_commentaries;
    std::mutex m_commentariesMutex;
};

} // namespace quillon::desktop
