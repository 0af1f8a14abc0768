#include "cli/RelativeTime.h"

namespace quillon::cli {

std::string relativeTime(model::DateTime then, model::DateTime now) {
    const long long difference = (now - then).count();
    const long long seconds = difference < 0 ? -difference : difference;
    if (seconds < 1)
        return "just now";
    struct Unit {
        long long seconds;
        const char* name;
    };
    // Months and years are the usual 30 and 365 days: a relative time is a rough figure by nature.
    constexpr Unit units[] = {{365LL * 86400, "year"}, {30LL * 86400, "month"}, {7LL * 86400, "week"}, {86400, "day"},
                              {3600, "hour"},          {60, "minute"},          {1, "second"}};
    for (const Unit& unit : units) {
        if (seconds < unit.seconds)
            continue;
        const long long count = seconds / unit.seconds;
        std::string amount = std::to_string(count) + " " + unit.name + (count == 1 ? "" : "s");
        return difference < 0 ? "in " + amount : amount + " ago";
    }
    return "just now";
}

} // namespace quillon::cli
