#pragma once

#include "emulator/values/json.h"

#include <span>
#include <string>
#include <string_view>

namespace emulator {

/// The error codes of the service itself. Those of registers and agents have no enumerators.
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

[[nodiscard]] constexpr int toNumber(ErrorCode code)
{
    return static_cast<int>(code);
}

/// Which keys an answer with an error has besides `error` and `timestamp`.
enum class Keys
{
    None,
    Failed, ///< `status` "fail"; in a status answer, `payload` as well
    Waiting ///< `status` "wait" and `uuid`
};

/// A row of the service's error table.
struct ServiceError
{
    ErrorCode code;
    int httpStatus;
    /// `system`, `driver`, `timeout`, `agent` or `unknown`.
    std::string_view type;
    /// The message, in Russian like those of the service.
    std::string_view text;
    Keys keys = Keys::Failed;
};

/// One row for each enumerator.
[[nodiscard]] std::span<const ServiceError> serviceErrors();

/// The row of `code`; throws std::out_of_range if there is none.
[[nodiscard]] const ServiceError& serviceError(ErrorCode code);

/// The texts of errors that name what they are about. `fields` are those of `describe`.
[[nodiscard]] std::string invalidReceiptText(const std::string& fields);
[[nodiscard]] std::string duplicateText(const std::string& externalId, const std::string& groupCode);

/// The error object of an answer, with a new `error_id`. `text`, if any, takes the place of the table's.
[[nodiscard]] Json errorObject(const ServiceError& error, const std::string& text = {});

} // namespace emulator
