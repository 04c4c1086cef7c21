#pragma once

#include "till/error.h"
#include "till/sale/result.h"

namespace till {

/// Why a run, or the rest of it, did not take place.
struct RunFailure
{
    ErrorInfo error;
    /// Whether any receipt of the run may have reached the service.
    bool sent = false;
    NextStep next = NextStep::Rerun;
};

/// The failure that an error tells of, with the service's own words where it has some.
[[nodiscard]] RunFailure failureOf(const Error& error, bool sent);

} // namespace till
