#pragma once

#include "model/SermonNote.h"
#include "platform/Clock.h"
#include "platform/Preferences.h"
#include "store/VersionHistoryHook.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace quillon::store {

/// One earlier state of a sermon: the state an edit replaced, and when it was kept.
struct VersionSnapshot {
    model::Uuid id;
    model::SermonNote sermon;
    model::DateTime savedAt{};
};

/// Keeps earlier states of each sermon on disk: "Versions/<sermon UUID>/<snapshot UUID>.json"
/// under the storage root, dated by the files' modification times. At most one snapshot per
/// sermon is taken within the snapshot interval, and only the newest `maxVersionsPerSermon` are
/// kept. Failures are silent: a snapshot that cannot be written never stops the edit.
class SermonVersionHistory final : public VersionHistoryHook {
public:
    static constexpr const char* snapshotIntervalKey = "Quillon.timing.versionSnapshotInterval";
    static constexpr const char* maxVersionsKey = "Quillon.timing.maxVersionsPerSermon";
    static constexpr double defaultSnapshotInterval = 300;
    static constexpr int defaultMaxVersions = 50;

    /// Worked out on every access, like the sermon folder, so the history follows the library root.
    using RootProvider = std::function<std::filesystem::path()>;

    /// `preferences` and `clock` must outlive the history.
    SermonVersionHistory(RootProvider root, const platform::Preferences& preferences,
                         const platform::Clock& clock = platform::SystemClock::shared());
    SermonVersionHistory(std::filesystem::path root, const platform::Preferences& preferences,
                         const platform::Clock& clock = platform::SystemClock::shared());

    void recordSnapshot(const model::SermonNote& previous) override;
    /// Keeps `previous` whatever the interval says: used before a snapshot is restored, so the
    /// state being replaced is never lost.
    void recordSnapshotNow(const model::SermonNote& previous);

    /// Every readable snapshot of the sermon, newest first.
    std::vector<VersionSnapshot> snapshots(const model::Uuid& sermonId) const;
    std::optional<VersionSnapshot> snapshot(const model::Uuid& sermonId, const model::Uuid& snapshotId) const;

    std::filesystem::path folderFor(const model::Uuid& sermonId) const;
    double snapshotInterval() const;
    int maxVersionsPerSermon() const;

private:
    void write(const model::SermonNote& previous);
    void prune(const std::filesystem::path& folder) const;

    RootProvider m_root;
    const platform::Preferences& m_preferences;
    const platform::Clock& m_clock;
};

} // namespace quillon::store
