#pragma once

#include <span>

/// How the emulator misbehaves, and what frhost reports of a sale meanwhile and, from the same file,
/// afterwards: its exit status, the outcome and whether it was recovered; or the exit status alone, where
/// there is no service to send anything to.
struct FaultRow
{
    const char* name;
    const char* fault;
    const char* meanwhile;
    /// What frhost advises meanwhile.
    const char* advice;
    const char* afterwards;
    /// What the emulator must have then, as a query of its `expect`.
    const char* document = "total=160.00&status=done";
};

[[nodiscard]] std::span<const FaultRow> faultRows();
