#include "platform/Clock.h"

namespace quillon::platform {

std::chrono::system_clock::time_point SystemClock::now() const {
    return std::chrono::system_clock::now();
}

const SystemClock& SystemClock::shared() {
    static const SystemClock clock;
    return clock;
}

} // namespace quillon::platform
