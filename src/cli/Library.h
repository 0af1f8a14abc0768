#pragma once

#include "cli/Command.h"
#include "model/SermonNote.h"
#include "platform/Preferences.h"
#include "store/SermonNotesManager.h"
#include "store/SermonStorage.h"
#include "store/SermonVersionHistory.h"

#include <memory>
#include <string_view>

namespace quillon::cli {

/// The sermon library as one command-line run sees it: the user's preferences, the storage (the
/// --library root when given, else the preferences' choice) and the loaded store.
class Library {
public:
    /// Opens and loads the library for `context`.
    explicit Library(const CommandContext& context);
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    platform::Preferences& preferences() { return *m_preferences; }
    store::SermonStorage& storage() { return *m_storage; }
    store::SermonNotesManager& manager() { return *m_manager; }
    /// The version history, told of every update the manager makes.
    store::SermonVersionHistory& versions() { return *m_versions; }

    /// The sermon named by `idText`: its full id in either case, or an unambiguous prefix of at
    /// least four characters. Throws UserError when there is none or more than one.
    const model::SermonNote& find(std::string_view idText) const;

private:
    std::unique_ptr<platform::Preferences> m_preferences;
    std::unique_ptr<store::SermonStorage> m_storage;
    std::unique_ptr<store::SermonNotesManager> m_manager;
    std::unique_ptr<store::SermonVersionHistory> m_versions;
};

} // namespace quillon::cli
