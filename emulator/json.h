#pragma once

#include <nlohmann/json.hpp>

namespace emulator {

/// Keeps keys in the order they were written, so that answers look like the service's.
using Json = nlohmann::ordered_json;

} // namespace emulator
