#include "emulator/values/moscowtime.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <string_view>

namespace emulator {

namespace {

struct Parts
{
    int year, month, day, hour, minute, second;
};

constexpr std::chrono::hours moscow(3);

Parts partsOf(TimePoint time, std::chrono::hours zone)
{
    using namespace std::chrono;
    const auto local = floor<seconds>(time) + zone;
    const auto midnight = floor<days>(local);
    const year_month_day date(midnight);
    const hh_mm_ss clock(local - midnight);
    return {int(date.year()), int(unsigned(date.month())), int(unsigned(date.day())),
        int(clock.hours().count()), int(clock.minutes().count()), int(clock.seconds().count())};
}

int number(const std::string& text, std::size_t from, std::size_t length)
{
    int value = 0;
    for (const char digit : text.substr(from, length))
        value = value * 10 + (digit - '0');
    return value;
}

// A zero in the shape is any digit.
bool hasShape(std::string_view text, std::string_view shape)
{
    return std::ranges::equal(text, shape, [](char is, char expected) {
        return expected == '0' ? std::isdigit(static_cast<unsigned char>(is)) != 0 : is == expected;
    });
}

bool isDateAndTime(const Parts& p)
{
    using namespace std::chrono;
    const year_month_day date(year(p.year), month(unsigned(p.month)), day(unsigned(p.day)));
    return date.ok() && p.hour < 24 && p.minute < 60 && p.second < 60;
}

} // namespace

TimePoint systemTime()
{
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

std::string moscowTime(TimePoint time)
{
    const Parts p = partsOf(time, moscow);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%02d.%02d.%04d %02d:%02d:%02d", p.day, p.month, p.year, p.hour,
        p.minute, p.second);
    return text.data();
}

std::string qrTime(TimePoint time)
{
    const Parts p = partsOf(time, moscow);
    std::array<char, 64> text{};
    std::snprintf(
        text.data(), text.size(), "%04d%02d%02dT%02d%02d", p.year, p.month, p.day, p.hour, p.minute);
    return text.data();
}

std::string isoTime(TimePoint time)
{
    const Parts p = partsOf(time, std::chrono::hours(0));
    const auto milliseconds = (time - std::chrono::floor<std::chrono::seconds>(time)).count();
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", p.year, p.month, p.day,
        p.hour, p.minute, p.second, static_cast<int>(milliseconds));
    return text.data();
}

bool isTimestamp(const std::string& text)
{
    return hasShape(text, "00.00.0000 00:00:00") &&
           isDateAndTime({number(text, 6, 4), number(text, 3, 2), number(text, 0, 2), number(text, 11, 2),
               number(text, 14, 2), number(text, 17, 2)});
}

bool isIsoTimestamp(const std::string& text)
{
    constexpr std::string_view shape = "0000-00-00T00:00:00";
    constexpr auto digits = "0123456789";
    if (!hasShape(text.substr(0, shape.size()), shape) ||
        !isDateAndTime({number(text, 0, 4), number(text, 5, 2), number(text, 8, 2), number(text, 11, 2),
            number(text, 14, 2), number(text, 17, 2)}))
        return false;
    std::string zone = text.substr(shape.size());
    if (zone.starts_with('.')) {
        const std::size_t end = zone.find_first_not_of(digits, 1);
        if (end == 1 || end == std::string::npos)
            return false;
        zone.erase(0, end);
    }
    if (zone == "Z")
        return true;
    return (zone.starts_with('+') || zone.starts_with('-')) && hasShape(zone.substr(1), "00:00") &&
           number(zone, 1, 2) < 24 && number(zone, 4, 2) < 60;
}

} // namespace emulator
