#pragma once

#include "emulator/values/json.h"

#include <span>
#include <string>
#include <string_view>

namespace emulator {

/// The error codes that the service itself answers with. Registers and agents have codes of their own, which
/// have no name here.
enum class ErrorCode : int
{
    Unknown = 0,
    ReceiptNotProcessed = 1,
    UnknownToken = 10,
    ExpiredToken = 11,
    WrongPassword = 12,
    InvalidTokenRequest = 13,
    BlockedUser = 14,
    ForeignGroup = 20,
    UnsupportedProtocol = 21,
    UnknownDocument = 30,
    UnknownOperation = 31,
    InvalidReceipt = 32,
    DuplicateId = 33,
    NotReady = 34,
    InvalidRequest = 40,
    WrongContentType = 41,
    Internal = 50
};

/// The code as an answer has it.
[[nodiscard]] constexpr int toNumber(ErrorCode code)
{
    return static_cast<int>(code);
}

/// One row of the service's error table.
struct ServiceError
{
    ErrorCode code;
    int httpStatus;
    /// `system`, `driver`, `timeout`, `agent` or `unknown`.
    std::string_view type;
    /// What the answer says in words, in Russian as the service does.
    std::string_view text;
};

/// A row for every named code.
[[nodiscard]] std::span<const ServiceError> serviceErrors();

/// The row of `code`; throws std::out_of_range when there is none.
[[nodiscard]] const ServiceError& serviceError(ErrorCode code);

/// The error object of an answer, with a fresh `error_id`. `details`, when not empty, follows the text.
[[nodiscard]] Json errorObject(const ServiceError& error, const std::string& details = {});

} // namespace emulator
