#pragma once

#include <cstdint>

namespace orvane {

/// What a paired peer may do, as a set of bits: a challenge requests a set and a pairing grants one.
struct SuiteCapability {
    std::uint64_t rawValue = 0;

    /// Receive the passage on screen and have it announced.
    static constexpr std::uint64_t receiveScriptureBit = 1u << 0;
    /// Move the desk to the next or previous verse, or push a passage to it.
    static constexpr std::uint64_t driveScriptureBit = 1u << 1;
    /// Ask the desk's tools (current sermon, live scripture, sermon search).
    static constexpr std::uint64_t toolRequestsBit = 1u << 2;

    static constexpr SuiteCapability receiveScripture() { return {receiveScriptureBit}; }
    static constexpr SuiteCapability driveScripture() { return {driveScriptureBit}; }
    static constexpr SuiteCapability toolRequests() { return {toolRequestsBit}; }
    /// What a completed pairing grants.
    static constexpr SuiteCapability grantedAtPairing() {
        return {receiveScriptureBit | driveScriptureBit | toolRequestsBit};
    }

    /// True when every bit of `other` is in this set.
    constexpr bool contains(SuiteCapability other) const { return (rawValue & other.rawValue) == other.rawValue; }
    constexpr SuiteCapability operator|(SuiteCapability other) const { return {rawValue | other.rawValue}; }
    constexpr bool operator==(const SuiteCapability&) const = default;
};

} // namespace orvane
