#pragma once

#include "model/JsonTree.h"
#include "model/SermonNote.h"

#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>
#include <string_view>

namespace quillon::model {

/// A record could not be read: a required member is missing, a value has the wrong type, a date
/// or identifier is malformed, or the bytes are not JSON. what() describes the first problem.
class DecodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Members in the order of the record's table, then the unknown members in file order.
using OrderedJSON = nlohmann::ordered_json;

OrderedJSON encodeUnknownJSONValue(const UnknownJSONValue& value);
UnknownJSONValue decodeUnknownJSONValue(const OrderedJSON& json);

OrderedJSON encodeSermonScripture(const SermonScripture& scripture);
OrderedJSON encodeSermonSubTopic(const SermonSubTopic& subTopic);
OrderedJSON encodeSermonTopic(const SermonTopic& topic);
OrderedJSON encodeSermonNote(const SermonNote& sermon);
OrderedJSON encodeSermonNoteExport(const SermonNoteExport& archive);

/// Each throws DecodingError.
SermonScripture decodeSermonScripture(const OrderedJSON& json);
SermonSubTopic decodeSermonSubTopic(const OrderedJSON& json);
SermonTopic decodeSermonTopic(const OrderedJSON& json);
SermonNote decodeSermonNote(const OrderedJSON& json);
SermonNoteExport decodeSermonNoteExport(const OrderedJSON& json);
/// The same readers over a parsed file; each throws DecodingError.
SermonNote decodeSermonNote(const JsonTree::Value& json);
SermonNoteExport decodeSermonNoteExport(const JsonTree::Value& json);
/// A JSON array of sermons, decoded on several threads; the first failing element's error is thrown.
std::vector<SermonNote> decodeSermonList(const JsonTree::Value& json);

/// The store's per-sermon file: pretty-printed, members in declaration order.
std::string encodeSermonFile(const SermonNote& sermon);
/// The library archive (a SermonNoteExport with version 1), pretty-printed, members not sorted,
/// written without copying the sermons into an export record.
std::string encodeSermonArchive(const std::vector<SermonNote>& sermons, std::string_view appIdentifier,
                                DateTime exportDate);
/// Parses and decodes a per-sermon file; throws DecodingError.
SermonNote decodeSermonFile(std::string_view bytes);

} // namespace quillon::model
