#pragma once

#include "export/OutlineParser.h"

namespace quillon::exports {

/// Recognises references with the Bible library's parser and book table; a reference to a whole
/// chapter becomes its first to last verse.
ReferenceRecognizer libraryReferenceRecognizer();

} // namespace quillon::exports
