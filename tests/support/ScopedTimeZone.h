#pragma once

#include "support/ScopedEnvironment.h"

#include <ctime>
#include <optional>

namespace quillon::testing {

/// Runs a test in another time zone (TZ) and puts the previous zone back, so day boundaries and
/// daylight-saving changes can be tested wherever the tests run.
class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const char* zone) {
        m_zone.emplace("TZ", zone);
        ::tzset();
    }
    ~ScopedTimeZone() {
        m_zone.reset(); // restores TZ before the C library reads it again
        ::tzset();
    }
    ScopedTimeZone(const ScopedTimeZone&) = delete;
    ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

private:
    std::optional<ScopedEnvironment> m_zone;
};

} // namespace quillon::testing
