// SPDX-License-Identifier: MIT
#include "TimeText.h"

#include <cstdio>

namespace ovra::frontend {

std::string utcText(std::chrono::system_clock::time_point time)
{
    using namespace std::chrono;
    if (time == system_clock::time_point())
        return "";
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(floor<microseconds>(time - day));
    char text[64];
    const int length = std::snprintf(
        text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%06dZ", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
        static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
    return {text, static_cast<std::size_t>(length)};
}

} // namespace ovra::frontend
