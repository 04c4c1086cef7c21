#pragma once

#include "emulator/options.h"

#include <string>

namespace emulator {

/// Reads `groups`, `users`, `lists`, `receiptsPerShift`, `fnsSite` and `faults` from a JSON file into
/// `options`. What the file does not mention stays as it is. Throws JsonError, also if the file cannot be
/// read.
void readConfig(const std::string& file, Options& options);

/// The password on the first line of a file. Throws likewise, also if that line is empty.
[[nodiscard]] std::string readPassword(const std::string& file);

/// Whether others than its owner may read the file.
[[nodiscard]] bool othersMayRead(const std::string& file);

/// Adds the faults of a JSON file with an array of them. Throws likewise.
void readFaults(const std::string& file, Options& options);

} // namespace emulator
