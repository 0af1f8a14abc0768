#pragma once

#include "export/VerseTextSource.h"

#include <memory>

namespace quillon::cli {

/// The verse text the command-line exports and the self-test quote from.
std::unique_ptr<exports::VerseTextSource> exportVerseSource();

} // namespace quillon::cli
