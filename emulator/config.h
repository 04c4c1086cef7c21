#pragma once

#include "emulator/options.h"

#include <string>

namespace emulator {

/// Reads `groups`, `users`, `lists`, `receiptsPerShift` and `faults` of a JSON file into `options`; what the
/// file does not name stays. Throws JsonError, also when the file cannot be read.
void readConfig(const std::string& file, Options& options);

/// Reads a file with an array of faults and adds them. Throws likewise.
void readFaults(const std::string& file, Options& options);

} // namespace emulator
