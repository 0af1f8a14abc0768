#pragma once

#include "mesh/ScriptureBridge.h"
#include "screens/LivePageTheme.h"

#include <optional>
#include <string>

namespace quillon::screens {

/// The two faces of the live page: a lower third for streaming software, and a confidence
/// monitor the preacher reads from the platform.
enum class LivePageLayout { lowerThird, confidence };

/// The whole page: the passage live now is written in, and the page's script follows the event
/// stream at "events" (with the page's own query, so a token travels along).
std::string renderLivePage(const LivePageTheme& theme, LivePageLayout layout,
                           const std::optional<mesh::LiveScripture>& live);

/// One event-stream message carrying the passage, or the clear when `live` is empty.
std::string passageEvent(const std::optional<mesh::LiveScripture>& live);

/// Text made safe inside HTML elements and attribute values.
std::string escapeHtml(std::string_view text);

} // namespace quillon::screens
