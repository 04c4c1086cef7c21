#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace emulator {

using TimePoint = std::chrono::sys_time<std::chrono::milliseconds>;
/// Where the emulator takes the time from; tests put their own.
using Clock = std::function<TimePoint()>;

[[nodiscard]] TimePoint systemTime();

/// `dd.MM.yyyy HH:mm:ss` in Moscow time without a zone. Moscow is taken as UTC+3 the year round, which holds
/// since October 2014; the zone of the machine plays no part.
[[nodiscard]] std::string moscowTime(TimePoint time);

/// `yyyyMMddThhmm` in Moscow time, as the QR text of a receipt has it.
[[nodiscard]] std::string moscowTimeOfQr(TimePoint time);

/// `yyyy-MM-ddThh:mm:ss.sssZ`, in UTC.
[[nodiscard]] std::string isoTime(TimePoint time);

/// Whether `text` is an existing date and time written as `dd.MM.yyyy HH:mm:ss`.
[[nodiscard]] bool isTimestamp(const std::string& text);

} // namespace emulator
