#include "emulator/store/rows.h"

namespace emulator {

Exchange readExchange(const sqlite::Rows& rows)
{
    const auto code = static_cast<int>(rows.integer(10));
    return {.sequence = rows.integer(0),
        .at = TimePoint(std::chrono::milliseconds(rows.integer(1))),
        .endpoint = endpointNamed(rows.text(2)),
        .groupCode = rows.text(3),
        .externalId = rows.text(4),
        .uuid = rows.text(5),
        .login = rows.text(6),
        .request = rows.text(7),
        .answer = rows.text(8),
        .status = static_cast<int>(rows.integer(9)),
        .code = code == noCode ? std::nullopt : std::optional(code),
        .fault = rows.text(11)};
}

std::string patternOf(const std::string& pattern)
{
    return pattern.empty() ? "*" : pattern;
}

} // namespace emulator
