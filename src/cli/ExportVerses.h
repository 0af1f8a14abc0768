#pragma once

#include "export/VerseTextSource.h"

#include <memory>

namespace quillon::cli {

/// The verse text the command-line exports and the self-test quote from: the Bible library.
std::unique_ptr<exports::VerseTextSource> exportVerseSource();

} // namespace quillon::cli
