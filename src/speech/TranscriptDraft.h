#pragma once

#include "intelligence/MessyDocumentOutliner.h"
#include "model/SermonNote.h"
#include "speech/Transcript.h"

#include <filesystem>
#include <string>
#include <vector>

namespace quillon::speech {

/// What a transcript becomes in the library: a draft sermon whose notes are the transcript and
/// whose outline holds the scriptures the speaker named.
namespace transcriptDraft {

/// The heading under which an unorganised draft keeps the scriptures it heard.
inline constexpr const char* referencesTopicTitle = "Scripture References";

/// The title a recording's file name gives: its name without the extension, with underscores
/// and runs of blanks as single spaces; "Recording" when nothing is left.
std::string titleFor(const std::filesystem::path& file);

/// A fresh draft dated `now`: notes the transcript, and one sub-topic for each distinct
/// reference said, in the order first said, under one topic.
model::SermonNote draft(const Transcript& transcript, std::string title, model::DateTime now);

/// The transcript's segments with the pause before each, as the outliner reads them.
std::vector<intelligence::SpokenPassage> passages(const Transcript& transcript);

/// Replaces the draft's outline with one topic per section: its title, its passages as details,
/// and a sub-topic for each distinct reference said within it. The notes stay the whole transcript.
void organise(model::SermonNote& draft, const Transcript& transcript,
              const std::vector<intelligence::OutlineSection>& sections);

} // namespace transcriptDraft

} // namespace quillon::speech
