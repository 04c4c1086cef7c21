#pragma once

#include "emulator/values/moscowtime.h"

#include <cstdint>
#include <string>

namespace emulator {

/// A fiscal register with its fiscal storage and its counters.
struct Register
{
    std::string groupCode{};
    int number = 1;
    /// 16 digits with leading zeros, which expose a client that reads them as a number.
    std::string storageNumber{};
    /// 16 digits with leading zeros.
    std::string registrationNumber{};
    /// Documents in the storage, including shift reports.
    std::int64_t documents = 1;
    std::int64_t shift = 0;
    std::int64_t receiptsInShift = 0;
    bool shiftOpen = false;
    TimePoint shiftOpenedAt{};
    /// When the register will have finished its queue.
    TimePoint freeAt{};
};

/// The service's name for the register, such as KKT000001.
[[nodiscard]] std::string deviceCodeOf(const Register& where);

/// A new register, whose storage contains only the registration report. Its numbers are derived from
/// `serial`, which must be unique.
[[nodiscard]] Register newRegister(const std::string& groupCode, int number, std::int64_t serial);

} // namespace emulator
