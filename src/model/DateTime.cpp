#include "model/DateTime.h"

#include <cstdio>

namespace quillon::model {

using namespace std::chrono;

DateTime toDateTime(system_clock::time_point time) {
    return floor<seconds>(time);
}

std::string formatDateTime(DateTime time) {
    const sys_days day = floor<days>(time);
    const year_month_day date{day};
    const hh_mm_ss clock{time - day};
    char text[96]; // room for any year the type can hold, so the text is never cut
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02ld:%02ld:%02lldZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<long>(clock.hours().count()), static_cast<long>(clock.minutes().count()),
                  static_cast<long long>(clock.seconds().count()));
    return text;
}

namespace {

bool readDigits(std::string_view text, size_t offset, size_t count, int& value) {
    value = 0;
    for (size_t i = offset; i < offset + count; ++i) {
        char c = text[i];
        if (c < '0' || c > '9')
            return false;
        value = value * 10 + (c - '0');
    }
    return true;
}

} // namespace

std::optional<DateTime> parseDateTime(std::string_view text) {
    // Exactly YYYY-MM-DDTHH:MM:SSZ: 20 characters.
    if (text.size() != 20 || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':' ||
        text[16] != ':' || text[19] != 'Z')
        return std::nullopt;
    int y, mo, d, h, mi, s;
    if (!readDigits(text, 0, 4, y) || !readDigits(text, 5, 2, mo) || !readDigits(text, 8, 2, d) ||
        !readDigits(text, 11, 2, h) || !readDigits(text, 14, 2, mi) || !readDigits(text, 17, 2, s))
        return std::nullopt;
    const year_month_day date{year{y}, month{static_cast<unsigned>(mo)}, day{static_cast<unsigned>(d)}};
    if (!date.ok() || h > 23 || mi > 59 || s > 59)
        return std::nullopt;
    return sys_days{date} + hours{h} + minutes{mi} + seconds{s};
}

} // namespace quillon::model
