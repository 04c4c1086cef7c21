#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace emulator {

/// Keeps keys in the order they were written in, so that answers look like the service's.
using Json = nlohmann::ordered_json;

/// Whether arrays and objects are nested more than 64 levels deep. No valid input is, and parsing such a text
/// could exhaust the stack.
[[nodiscard]] bool isTooDeep(std::string_view json);

/// Returns a discarded value if the text is not JSON or is nested too deeply.
[[nodiscard]] Json parseShallow(std::string_view json);

/// The value as one line of text. Bytes that are not UTF-8, which a request may contain, become replacement
/// characters.
[[nodiscard]] inline std::string toLine(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace emulator
