#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace emulator {

/// Keeps keys in the order they were written, so that answers look like the service's.
using Json = nlohmann::ordered_json;

/// Whether arrays and objects are nested deeper than 64, as nothing that is taken here is. Working through
/// such a text could exhaust the stack.
[[nodiscard]] bool isTooDeep(std::string_view json);

/// Discarded when the text is no JSON or nested too deep.
[[nodiscard]] Json parseShallow(std::string_view json);

/// As text in one line. What is not UTF-8, as a request may hold, comes out as replacement characters.
[[nodiscard]] inline std::string toLine(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace emulator
