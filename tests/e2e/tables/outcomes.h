#pragma once

#include <span>

/// How the service answers the receipt r1 and then every question about its document u-1, and what frhost
/// reports.
struct OutcomeRow
{
    const char* name;
    int status;
    const char* registration;
    const char* report;
    const char* outcome;
    int exitCode;
    const char* advice;
};

[[nodiscard]] std::span<const OutcomeRow> outcomeRows();
