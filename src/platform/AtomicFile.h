#pragma once

#include "platform/FileError.h"
#include "platform/WorkFileName.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace quillon::platform {

/// How many bytes the temporary file's name adds to the target's name; a name may be at most
/// 255 bytes less this long to be written atomically.
inline constexpr std::size_t temporaryNameExtraBytes = 1 + 1 + workFileName::maximumTagBytes + 4;

/// Test seam: called with the temporary file after its bytes are written and synced, before it
/// replaces the target. A hook that throws simulates a crash in the middle of a save.
using BeforeReplaceHook = std::function<void(const std::filesystem::path& temporaryFile)>;

/// Writes `bytes` to `target` so that readers see either the old file or the whole new one:
/// temporary file in the same folder, write, fsync, rename over the target, fsync the folder
/// (each step a platform::fileSteps call, which tests can make fail). Throws FileError and leaves
/// no temporary file behind; the target is untouched, except when only the folder's sync failed:
/// then the whole new file is in place but may not survive a power cut, so it is not counted saved.
void writeFileAtomically(const std::filesystem::path& target, std::string_view bytes,
                         const BeforeReplaceHook& beforeReplace = {});

/// Reads a whole regular file. Throws FileError when it is missing, unreadable or not a file.
std::string readFile(const std::filesystem::path& file);

} // namespace quillon::platform
