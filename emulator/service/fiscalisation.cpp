#include "emulator/service/fiscalisation.h"

#include "emulator/values/money.h"

namespace emulator {

namespace {

// Of an operator that does not exist.
constexpr auto ofdInn = "7700000099";

// The sign never fits into 31 bits, so that a client that stores it in an int is exposed.
std::int64_t fiscalSign(const std::string& storageNumber, std::int64_t document)
{
    std::uint64_t hash = 14695981039346656037u;
    for (const char c : storageNumber + ':' + std::to_string(document))
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
    hash ^= hash >> 32;
    return static_cast<std::int64_t>(0x8000'0000u + (hash & 0x7FFF'FFFFu));
}

void openShiftIfNeeded(Register& where, TimePoint time, std::int64_t receiptsPerShift)
{
    const bool old = time - where.shiftOpenedAt >= std::chrono::hours(24);
    const bool full = receiptsPerShift > 0 && where.receiptsInShift >= receiptsPerShift;
    if (where.shiftOpen && !old && !full)
        return;
    constexpr int openingReport = 1;
    where.documents += openingReport + (where.shiftOpen ? 1 : 0);
    ++where.shift;
    where.receiptsInShift = 0;
    where.shiftOpen = true;
    where.shiftOpenedAt = time;
}

} // namespace

Json registerReceipt(Register& where, TimePoint time, std::int64_t totalKopecks,
    std::int64_t receiptsPerShift, const std::string& fnsSite)
{
    openShiftIfNeeded(where, time, receiptsPerShift);
    ++where.documents;
    ++where.receiptsInShift;
    return {{"total", roubles(totalKopecks)}, {"ofd_inn", ofdInn}, {"fns_site", fnsSite},
        {"fn_number", where.storageNumber}, {"shift_number", where.shift},
        {"receipt_datetime", moscowTime(std::chrono::floor<std::chrono::minutes>(time))},
        {"fiscal_receipt_number", where.receiptsInShift}, {"fiscal_document_number", where.documents},
        {"ecr_registration_number", where.registrationNumber},
        {"fiscal_document_attribute", fiscalSign(where.storageNumber, where.documents)}};
}

} // namespace emulator
