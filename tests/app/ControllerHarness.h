#pragma once

#include "app/SermonNotesViewModel.h"
#include "model/SermonCoding.h"
#include "support/FakeClock.h"
#include "support/SermonFixtures.h"
#include "support/TemporaryFolder.h"

#include <memory>
#include <vector>

namespace quillon::testing {

/// Remembers everything a controller tells its listeners.
class RecordingListener final : public app::SermonNotesListener {
public:
    void selectionChanged() override { ++selectionChanges; }
    void sermonChanged(const model::Uuid& id) override { changedSermons.push_back(id); }
    void libraryChanged() override { ++libraryChanges; }
    void statusPosted(const app::StatusMessage& message) override { messages.push_back(message); }
    void sheetChanged(app::Sheet sheet, bool open) override { sheets.emplace_back(sheet, open); }

    int selectionChanges = 0;
    int libraryChanges = 0;
    std::vector<model::Uuid> changedSermons;
    std::vector<app::StatusMessage> messages;
    std::vector<std::pair<app::Sheet, bool>> sheets;
};

/// A library and preferences in a temporary folder, a fake clock and no Bible text. Each call of
/// open() starts the desk afresh over the same files, as a new launch would.
class ControllerHarness {
public:
    ControllerHarness() : storage(store::SermonStorage::atRoot(folder / "library")) {}

    /// Writes `sermon` into the library folder (before open()).
    void seed(const model::SermonNote& sermon) {
        folder.write("library/Sermons/" + sermon.id.text() + ".json", model::encodeSermonFile(sermon));
    }

    app::SermonNotesViewModel& open() {
        controller.reset();
        manager.reset();
        preferences = std::make_unique<platform::Preferences>(folder / "preferences.json");
        manager = std::make_unique<store::SermonNotesManager>(storage, *preferences, clock);
        manager->load();
        controller = std::make_unique<app::SermonNotesViewModel>(*manager, *preferences, verses, clock);
        controller->addListener(listener);
        return *controller;
    }

    /// Moves the clock past the undo coalescing interval, so the next edit is its own undo step.
    void pause() { clock.advance(std::chrono::seconds(2)); }

    TemporaryFolder folder;
    FakeClock clock;
    store::SermonStorage storage;
    exports::NoVerseText verses;
    std::unique_ptr<platform::Preferences> preferences;
    std::unique_ptr<store::SermonNotesManager> manager;
    std::unique_ptr<app::SermonNotesViewModel> controller;
    RecordingListener listener;
};

} // namespace quillon::testing
