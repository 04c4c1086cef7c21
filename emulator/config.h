#pragma once

#include "emulator/options.h"

#include <string>

namespace emulator {

/// Reads `groups`, `users`, `lists`, `receiptsPerShift` and `faults` from a JSON file into `options`. What
/// the file does not mention stays as it is. Throws JsonError, also if the file cannot be read.
void readConfig(const std::string& file, Options& options);

/// Adds the faults of a JSON file with an array of them. Throws likewise.
void readFaults(const std::string& file, Options& options);

} // namespace emulator
