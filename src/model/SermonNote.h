#pragma once

#include "model/DateTime.h"
#include "model/SermonTopic.h"

namespace quillon::model {

/// One sermon: metadata, the outline of topics and the manuscript. Copying copies the whole tree.
struct SermonNote {
    Uuid id;
    std::string title;
    DateTime date{};
    std::string speaker;
    std::optional<std::string> series;
    std::optional<std::string> venue;
    std::vector<SermonTopic> topics;
    std::string notes;
    /// RTF bytes, the rich twin of `notes`.
    std::optional<std::string> notesRTFData;
    std::optional<std::string> textColorHex;
    DateTime createdAt{};
    DateTime modifiedAt{};
    /// File name inside the library's "Media" folder.
    std::optional<std::string> coverImageFileName;
    std::vector<std::string> tags;
    UnknownFields unknownFields;

    bool operator==(const SermonNote&) const = default;
};

/// The whole-library archive record (".vrnsermons", backups).
struct SermonNoteExport {
    int version = 1;
    std::string appIdentifier;
    DateTime exportDate{};
    std::vector<SermonNote> sermons;

    bool operator==(const SermonNoteExport&) const = default;
};

/// What an import does with an incoming sermon whose `id` is already in the library.
enum class SermonImportMode { skipDuplicates, replaceDuplicates, importCopies };

} // namespace quillon::model
