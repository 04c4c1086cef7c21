#pragma once

#include <string>

namespace emulator {

/// The file of a database, which only its owner may read and only one process may use. The system takes the
/// lock back when the process ends, however it ends.
class StateFile
{
public:
    /// Creates the file if it is missing. Does nothing for `:memory:`. Throws std::runtime_error.
    explicit StateFile(const std::string& file);
    ~StateFile();
    StateFile(const StateFile&) = delete;
    StateFile& operator=(const StateFile&) = delete;

private:
    int handle = -1;
};

} // namespace emulator
