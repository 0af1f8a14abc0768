#pragma once

#include <chrono>

namespace quillon::platform {

/// The source of "now" for everything that stamps or compares times, so tests can move time by hand.
class Clock {
public:
    virtual ~Clock() = default;
    virtual std::chrono::system_clock::time_point now() const = 0;
};

class SystemClock final : public Clock {
public:
    std::chrono::system_clock::time_point now() const override;
    /// One shared instance for code that has no reason to own a clock.
    static const SystemClock& shared();
};

} // namespace quillon::platform
