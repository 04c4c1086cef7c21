#pragma once

#include "emulator/values/json.h"
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

/// Registers a receipt at `time` and gives the payload of its status answer. Opens a shift when there is none
/// and, as the law has it, a new one after 24 hours or after `receiptsPerShift` receipts (0: no such limit);
/// each shift report is a document of the storage as well.
[[nodiscard]] Json registerReceipt(
    Register& where, TimePoint time, std::int64_t totalKopecks, std::int64_t receiptsPerShift);

/// Text of the QR code on the receipt; `settlement` is 1 for a sale, 2 its refund, 3 a purchase, 4 its
/// refund.
[[nodiscard]] std::string qrText(const Json& payload, TimePoint time, int settlement);

} // namespace emulator
