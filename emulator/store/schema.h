#pragma once

#include "emulator/store/sqlite.h"

namespace emulator {

/// Creates the tables of a new database and changes those of an older emulator. Adds the function
/// `matches(text, pattern)`. Throws sqlite::Error, also for a database of a newer emulator.
void prepare(sqlite::Database& database);

} // namespace emulator
