#pragma once

#include "intelligence/AskYourLibrary.h"
#include "model/SermonNote.h"

#include <span>
#include <string>
#include <vector>

namespace quillon::platform {
class Preferences;
}

namespace quillon::app {

/// The sermons and verses a question about the library is answered from: the sermons its subject
/// finds (by the model server's embeddings when the preacher turned them on and `preferences` is
/// given) and the verses it matches, as typed or by any of its meaningful words.
std::vector<intelligence::LibrarySource> librarySources(const std::string& question,
                                                        std::span<const model::SermonNote> sermons,
                                                        const platform::Preferences* preferences);

} // namespace quillon::app
