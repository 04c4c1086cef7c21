#pragma once

#include <algorithm>
#include <array>

namespace till {

/// Codes in the error object of an answer, as the service numbers them. The fiscal registers that
/// the service uses have codes of their own, so any other number may occur.
enum class ServiceCode : int
{
    UnknownError = 0,
    NotProcessed = 1,
    WrongInn = 2,
    UnknownToken = 10,
    ExpiredToken = 11,
    WrongCredentials = 12,
    InvalidTokenRequest = 13,
    BlockedUser = 14,
    WrongGroup = 20,
    WrongProtocol = 21,
    UnknownDocument = 30,
    UnsupportedOperation = 31,
    InvalidReceipt = 32,
    DocumentExists = 33,
    DocumentInProgress = 34,
    BadRequest = 40,
    WrongContentType = 41,
    ServerError = 50,
};

/// What follows from a code.
struct ServiceCodeMeaning
{
    ServiceCode code;
    /// As the answer to a receipt: it is not registered and will not be. The other codes leave that open; a
    /// rejected token only asks for another one.
    bool refusesReceipt;
    /// As the answer to a question about a document: it says nothing about the document.
    bool concernsRequest;
    /// As the answer to a login: the credentials or the account are at fault.
    bool concernsAccount;
};

inline constexpr std::array serviceCodes{
    // clang-format off
    //                                                      refuses receipt, concerns request, account
    ServiceCodeMeaning{ServiceCode::UnknownError,           false, true,  false},
    ServiceCodeMeaning{ServiceCode::NotProcessed,           true,  false, false},
    ServiceCodeMeaning{ServiceCode::WrongInn,               true,  false, false},
    ServiceCodeMeaning{ServiceCode::UnknownToken,           false, true,  false},
    ServiceCodeMeaning{ServiceCode::ExpiredToken,           false, true,  false},
    ServiceCodeMeaning{ServiceCode::WrongCredentials,       true,  true,  true},
    ServiceCodeMeaning{ServiceCode::InvalidTokenRequest,    true,  true,  true},
    ServiceCodeMeaning{ServiceCode::BlockedUser,            true,  true,  true},
    ServiceCodeMeaning{ServiceCode::WrongGroup,             true,  true,  true},
    ServiceCodeMeaning{ServiceCode::WrongProtocol,          true,  true,  true},
    ServiceCodeMeaning{ServiceCode::UnknownDocument,        true,  true,  false},
    ServiceCodeMeaning{ServiceCode::UnsupportedOperation,   true,  true,  false},
    ServiceCodeMeaning{ServiceCode::InvalidReceipt,         true,  false, false},
    ServiceCodeMeaning{ServiceCode::DocumentExists,         false, true,  false},
    ServiceCodeMeaning{ServiceCode::DocumentInProgress,     false, true,  false},
    ServiceCodeMeaning{ServiceCode::BadRequest,             true,  true,  false},
    ServiceCodeMeaning{ServiceCode::WrongContentType,       true,  true,  false},
    ServiceCodeMeaning{ServiceCode::ServerError,            false, true,  false},
    // clang-format on
};

/// The row of a code; for one that is not in the table, a row that says nothing.
[[nodiscard]] constexpr ServiceCodeMeaning meaningOf(ServiceCode code)
{
    const auto* found = std::ranges::find(serviceCodes, code, &ServiceCodeMeaning::code);
    return found == serviceCodes.end() ? ServiceCodeMeaning{code, false, false, false} : *found;
}

} // namespace till
