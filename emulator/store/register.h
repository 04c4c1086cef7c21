#pragma once

#include "emulator/values/moscowtime.h"

#include <cstdint>
#include <string>

namespace emulator {

/// One fiscal register with its storage, and how far its counters have come.
struct Register
{
    std::string groupCode{};
    int number = 1;
    /// 16 digits that begin with zeros, so that a client that reads them as a number is found out.
    std::string storageNumber{};
    /// 16 digits, likewise.
    std::string registrationNumber{};
    /// Documents in the storage so far, shift reports included.
    std::int64_t documents = 1;
    std::int64_t shift = 0;
    std::int64_t receiptsInShift = 0;
    bool shiftOpen = false;
    TimePoint shiftOpenedAt{};
    /// When the register has worked off its queue.
    TimePoint freeAt{};
};

/// A register fresh from the factory: its storage holds the registration report and nothing else. `serial`
/// tells storages apart.
[[nodiscard]] Register newRegister(const std::string& groupCode, int number, std::int64_t serial);

} // namespace emulator
