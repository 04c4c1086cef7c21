#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace emulator {

/// Keeps keys in the order they were written, so that answers look like the service's.
using Json = nlohmann::ordered_json;

/// As text in one line. What is not UTF-8, as a request may hold, comes out as replacement characters.
[[nodiscard]] inline std::string toLine(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace emulator
