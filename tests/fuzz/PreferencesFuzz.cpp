// The preferences file may be edited by hand or written by another version. Whatever it holds,
// every area reads its settings (a bad value means the default), and the next change is saved.
#include "FuzzInput.h"

#include "intelligence/LocalModelSettings.h"
#include "mesh/MeshSettings.h"
#include "platform/Preferences.h"
#include "preach/PreachPace.h"
#include "preach/PreachPaceLearner.h"
#include "preach/SpeakerProfile.h"

#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using namespace quillon;

const fs::path& folder() {
    static const fuzz::ScratchFolder shared("quillon-fuzz-preferences");
    return shared.path();
}

/// Every typed reader over every key the file names.
void readEveryKey(const platform::Preferences& preferences, std::string_view bytes) {
    const auto json = nlohmann::json::parse(bytes, nullptr, false);
    if (!json.is_object())
        return;
    for (const auto& [key, value] : json.items()) {
        preferences.positiveNumber(key, 1.0);
        preferences.boolean(key, false);
        preferences.string(key);
        preferences.stringList(key);
    }
}

/// What each area reads at start.
void readEveryArea(const platform::Preferences& preferences) {
    mesh::MeshSettings::fromPreferences(preferences);
    intelligence::LocalModelSettings::fromPreferences(preferences);
    preach::PreachPace::fromPreferences(preferences);
    preach::PreachPaceLearner::storedObservations(preferences);
    for (const auto& profile : preach::SpeakerProfile::all(preferences))
        preach::PreachPace::forSpeaker(preferences, profile.name);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fs::path file = folder() / "preferences.json";
    {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    {
        platform::Preferences preferences(file);
        readEveryKey(preferences, fuzz::text(data, size));
        readEveryArea(preferences);
        preferences.set("Quillon.fuzz.written", true);
        platform::Preferences reread(file);
        fuzz::require(reread.boolean("Quillon.fuzz.written", false));
    }
    // An unreadable file was moved aside; only this run's files are kept from piling up.
    for (const auto& entry : fs::directory_iterator(folder()))
        fs::remove(entry.path());
    return 0;
}
