#pragma once

#include "model/SermonNote.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::model {

/// The single-sermon document's bytes: pretty-printed with members sorted by name.
std::string encodeSermonDocument(const SermonNote& sermon);

/// The title made safe as a file name: split at / \ ? % * | " < > :, joined with "-", trimmed.
std::string safeFileName(std::string_view title);

/// Writes "<safe title>.quillet" atomically into `folder` and returns its path.
/// Throws platform::FileError.
std::filesystem::path writeSermonDocument(const SermonNote& sermon, const std::filesystem::path& folder);

/// The library archive's bytes: a SermonNoteExport with version 1, pretty-printed, not sorted.
std::string encodeArchive(const std::vector<SermonNote>& sermons, DateTime exportDate);

/// Reads archive bytes: an export record's sermons, else a bare array of sermons, else empty.
/// Never throws.
std::vector<SermonNote> readArchive(std::string_view bytes);

/// Writes "Quillon.vrnsermons" into `folder` (overwriting) and returns its location, or nothing
/// when encoding or writing failed.
std::optional<std::filesystem::path> writeArchive(const std::vector<SermonNote>& sermons, DateTime exportDate,
                                                  const std::filesystem::path& folder);

/// A file chosen for import: ".quillet" is one sermon (throws DecodingError when unreadable), any
/// other file is read as a library archive (empty when it is none). Throws platform::FileError
/// when the file cannot be read.
std::vector<SermonNote> readSermonImportFile(const std::filesystem::path& file);

} // namespace quillon::model
