#include "emulator/values/moscowtime.h"

#include <array>
#include <cctype>
#include <cstdio>

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
    const std::string shape = "00.00.0000 00:00:00";
    if (text.size() != shape.size())
        return false;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const bool digit = std::isdigit(static_cast<unsigned char>(text[i])) != 0;
        if (shape[i] == '0' ? !digit : text[i] != shape[i])
            return false;
    }
    using namespace std::chrono;
    const year_month_day date(
        year(number(text, 6, 4)), month(unsigned(number(text, 3, 2))), day(unsigned(number(text, 0, 2))));
    return date.ok() && number(text, 11, 2) < 24 && number(text, 14, 2) < 60 && number(text, 17, 2) < 60;
}

} // namespace emulator
