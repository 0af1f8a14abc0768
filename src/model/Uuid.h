#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::model {

/// A 128-bit identifier, written as canonical upper-case hyphenated text (8-4-4-4-12).
struct Uuid {
    std::array<std::uint8_t, 16> bytes{};

    /// A new random (version 4) identifier.
    static Uuid random();
    /// Accepts the 36-character hyphenated form in either case; anything else is nothing.
    static std::optional<Uuid> parse(std::string_view text);
    /// "E621E1F8-C36C-495A-93FC-0C247A3E6E5F".
    std::string text() const;

    auto operator<=>(const Uuid&) const = default;
};

} // namespace quillon::model

template <>
struct std::hash<quillon::model::Uuid> {
    size_t operator()(const quillon::model::Uuid& id) const noexcept;
};
