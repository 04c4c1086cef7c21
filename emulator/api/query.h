#pragma once

#include "emulator/http/http.h"

#include <optional>
#include <span>
#include <string>

namespace emulator {

/// A whole number that fits an int; nothing for any other text.
[[nodiscard]] std::optional<int> numberOf(const std::string& text);

/// A parameter of a query. Throws JsonError unless it is missing, which is `fallback`, or a positive whole
/// number.
[[nodiscard]] int positiveParameter(const Request& request, const char* key, int fallback);

/// The parameter `limit`, at most 1000: a list is made in memory as a whole. Throws JsonError.
[[nodiscard]] int limitIn(const Request& request, int fallback = 100);

/// Throws JsonError if the query has a parameter that is not among `known`.
void rejectUnknownParameters(const Request& request, std::span<const char* const> known);

/// The names separated by commas.
[[nodiscard]] std::string joined(std::span<const char* const> names);

} // namespace emulator
