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

/// "<host hash>-<pid>-<random>": unique to this call, this process and this computer.
std::string tag();
/// The longest tag: 8 hex digits, a process id of up to 7 digits, 16 hex digits, two dashes.
inline constexpr std::size_t maximumTagBytes = 8 + 1 + 7 + 1 + 16;

/// "." + `name` + "." + tag() + `suffix`: hidden, beside the file it will become.
std::string beside(std::string_view name, std::string_view suffix);

/// True when `name` is a work file of a process on this computer that no longer runs.
bool isAbandoned(std::string_view name);

/// Removes the abandoned work files and folders directly inside `folder`; returns how many.
/// Never throws: what cannot be removed is left for the next start.
int removeAbandoned(const std::filesystem::path& folder);

} // namespace workFileName

} // namespace quillon::platform
