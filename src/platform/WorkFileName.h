#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace quillon::platform {

/// Names for the hidden files and folders a write works in before it renames its result into
/// place (".<name>.<tag>.tmp"). The tag carries this computer and process, so a later start can
/// tell the leftovers of a process that was killed mid-write from work still in progress:
/// another process's, or another computer's in a synced folder.
namespace workFileName {

/// The length of every tag, kept short so that long file names still fit beside it.
inline constexpr std::size_t maximumTagBytes = 16;

/// "<host hash>-<pid>-<random>" in hex, 16 characters: unique to this computer and process, and
/// random enough that writes in one process seldom collide (a collision is retried).
std::string tag();

/// "." + `name` + "." + tag() + `suffix`: hidden, beside the file it will become.
std::string beside(std::string_view name, std::string_view suffix);

/// True when `name` is a work file of a process on this computer that no longer runs.
bool isAbandoned(std::string_view name);

/// Removes the abandoned work files and folders directly inside `folder`; returns how many.
/// Never throws: what cannot be removed is left for the next start.
int removeAbandoned(const std::filesystem::path& folder);

} // namespace workFileName

} // namespace quillon::platform
