#pragma once

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

/// The store's per-sermon file: pretty-printed, members in declaration order.
std::string encodeSermonFile(const SermonNote& sermon);
/// Parses and decodes a per-sermon file; throws DecodingError.
SermonNote decodeSermonFile(std::string_view bytes);

} // namespace quillon::model
