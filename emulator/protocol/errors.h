#pragma once

#include "emulator/values/json.h"

#include <span>
#include <string>
#include <string_view>

namespace emulator {

/// One row of the service's error table.
struct ServiceError
{
    int code;
    int httpStatus;
    /// `system`, `driver`, `timeout`, `agent` or `unknown`.
    std::string_view type;
    /// What the answer says in words, in Russian as the service does.
    std::string_view text;
};

/// The errors that the service itself answers with; those of registers and agents are not among them.
[[nodiscard]] std::span<const ServiceError> serviceErrors();

/// The row of `code`; throws std::out_of_range when there is none.
[[nodiscard]] const ServiceError& serviceError(int code);

/// The error object of an answer, with a fresh `error_id`. `details`, when not empty, follows the text.
[[nodiscard]] Json errorObject(const ServiceError& error, const std::string& details = {});

} // namespace emulator
