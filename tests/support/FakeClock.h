#pragma once

#include "platform/Clock.h"

namespace quillon::testing {

/// A clock that stands still until a test moves it.
class FakeClock final : public platform::Clock {
public:
    explicit FakeClock(std::chrono::system_clock::time_point start = std::chrono::sys_days{std::chrono::year{2025} / 3 /
                                                                                           9} +
                                                                     std::chrono::hours{14})
        : m_now(start) {}

    std::chrono::system_clock::time_point now() const override { return m_now; }
    void set(std::chrono::system_clock::time_point time) { m_now = time; }
    template <class Rep, class Period>
    void advance(std::chrono::duration<Rep, Period> step) {
        m_now += std::chrono::duration_cast<std::chrono::system_clock::duration>(step);
    }

private:
    std::chrono::system_clock::time_point m_now;
};

} // namespace quillon::testing
