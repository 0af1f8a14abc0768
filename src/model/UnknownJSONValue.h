#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace quillon::model {

struct UnknownJSONValue;
struct UnknownJSONMember;

/// Members of an object in the order they were read, so they are written back in that order.
using UnknownJSONObject = std::vector<UnknownJSONMember>;
using UnknownJSONArray = std::vector<UnknownJSONValue>;

/// Any JSON value of a member this version does not model, kept so it can be written back
/// unchanged. Every number is held as a double (so 1 is written back as 1, never 1.0).
struct UnknownJSONValue {
    std::variant<std::nullptr_t, bool, double, std::string, UnknownJSONObject, UnknownJSONArray> value;

    bool operator==(const UnknownJSONValue& other) const;
};

/// One member of an unmodelled object. A struct rather than std::pair because a pair of an
/// incomplete type inside the variant above is rejected by clang with libstdc++; it keeps the
/// pair's `first` and `second` so members destructure the same way.
struct UnknownJSONMember {
    std::string first;
    UnknownJSONValue second;

    UnknownJSONMember() = default;
    UnknownJSONMember(std::string name, UnknownJSONValue value) : first(std::move(name)), second(std::move(value)) {}

    bool operator==(const UnknownJSONMember&) const = default;
};

/// A record's unmodelled members, in file order.
using UnknownFields = UnknownJSONObject;

} // namespace quillon::model
