#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace emulator {

using TimePoint = std::chrono::sys_time<std::chrono::milliseconds>;
/// The source of the current time; tests use one of their own.
using Clock = std::function<TimePoint()>;

[[nodiscard]] TimePoint systemTime();

/// `dd.MM.yyyy HH:mm:ss` in Moscow time without a zone. Moscow is UTC+3 all year round, as it has been since
/// October 2014; the time zone of the machine does not matter.
[[nodiscard]] std::string moscowTime(TimePoint time);

/// `yyyyMMddThhmm` in Moscow time, as in the QR code of a receipt.
[[nodiscard]] std::string qrTime(TimePoint time);

/// `yyyy-MM-ddThh:mm:ss.sssZ`, in UTC.
[[nodiscard]] std::string isoTime(TimePoint time);

/// Whether `text` is a valid date and time in the form `dd.MM.yyyy HH:mm:ss`.
[[nodiscard]] bool isTimestamp(const std::string& text);

/// Whether `text` is a valid date and time in the form `yyyy-MM-ddTHH:mm:ss` with a zone: `Z`, or hours and
/// minutes such as `+03:00`. The seconds may have a fraction.
[[nodiscard]] bool isIsoTimestamp(const std::string& text);

} // namespace emulator
