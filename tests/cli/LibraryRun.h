#pragma once

#include "cli/Cli.h"
#include "model/SermonCoding.h"
#include "support/ScopedEnvironment.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace quillon::testing {

/// Runs `quillon` against a library, preferences and data folder inside one temporary folder.
/// The sample sermons start hidden so each test sees only the sermons it puts there.
class LibraryRun : public ::testing::Test {
protected:
    struct Result {
        int status;
        std::string out;
        std::string err;
    };

    explicit LibraryRun(bool samplesHidden = true) {
        if (samplesHidden)
            folder.write("config/Quillon/preferences.json", R"({"Quillon.sampleSermonsHidden": true})");
    }

    Result run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--library", library().string()});
        std::ostringstream out, err;
        const int status = cli::runCli(arguments, out, err);
        return {status, out.str(), err.str()};
    }
    std::filesystem::path library() const { return folder / "library"; }
    model::SermonNote seed(const std::string& title) {
        model::SermonNote sermon;
        sermon.id = model::Uuid::random();
        sermon.title = title;
        return put(sermon);
    }
    /// Writes `sermon` into the library as the desk would store it.
    model::SermonNote put(const model::SermonNote& sermon) {
        folder.write("library/Sermons/" + sermon.id.text() + ".json", model::encodeSermonFile(sermon));
        return sermon;
    }
    bool inLibrary(const model::Uuid& id) const {
        return std::filesystem::exists(library() / "Sermons" / (id.text() + ".json"));
    }

    TemporaryFolder folder;
    ScopedEnvironment config{"XDG_CONFIG_HOME", (folder / "config").string()};
    ScopedEnvironment data{"XDG_DATA_HOME", (folder / "data").string()};
};

} // namespace quillon::testing
