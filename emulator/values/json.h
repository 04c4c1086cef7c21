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

/// The value at a key; null if `object` is not an object or lacks the key.
[[nodiscard]] const Json& valueOf(const Json& object, const char* key);

/// The object at a key; an empty one if there is none.
[[nodiscard]] const Json& objectOf(const Json& parent, const char* key);

/// The text at a key; empty if there is none.
[[nodiscard]] std::string textOf(const Json& object, const char* key);

/// The value as one line of text. Bytes that are not UTF-8, which a request may contain, become replacement
/// characters.
[[nodiscard]] inline std::string toLine(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace emulator
