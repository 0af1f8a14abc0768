#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace quillon::model {

struct UnknownJSONValue;

/// Members of an object in the order they were read, so they are written back in that order.
using UnknownJSONObject = std::vector<std::pair<std::string, UnknownJSONValue>>;
using UnknownJSONArray = std::vector<UnknownJSONValue>;

/// Any JSON value of a member this version does not model, kept so it can be written back
/// unchanged. Every number is held as a double (so 1 is written back as 1, never 1.0).
struct UnknownJSONValue {
    std::variant<std::nullptr_t, bool, double, std::string, UnknownJSONObject, UnknownJSONArray> value;

    bool operator==(const UnknownJSONValue& other) const;
};

/// A record's unmodelled members, in file order.
using UnknownFields = UnknownJSONObject;

} // namespace quillon::model
