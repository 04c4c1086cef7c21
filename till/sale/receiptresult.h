#pragma once

#include "host/records/fiscalinfo.h"

#include <QString>

#include <optional>

namespace frhost {

/// What became of a receipt.
enum class Outcome
{
    Registered,
    /// Nothing was registered.
    Refused,
    /// It may or may not be registered; also when it was not sent for want of a connection.
    Unknown,
};

/// Why a receipt is not known to be registered.
struct ErrorInfo
{
    /// The exception's class name; empty when none was thrown.
    QString type;
    /// The service's code; none when it gave none.
    std::optional<int> code;
    QString message;
};

/// The result of one receipt, ready to be reported.
struct ReceiptResult
{
    QString file;
    int line = 0;
    QString id;
    /// None when the receipt was accepted and its registration was not waited for.
    std::optional<Outcome> outcome;
    /// Empty when the service gave none.
    QString uuid;
    /// Whether the service knew the receipt from an earlier try.
    bool recovered = false;
    std::optional<FiscalInfo> fiscal;
    /// Link to the receipt at the fiscal data operator; empty when the service gave none.
    QString receiptUrl;
    std::optional<ErrorInfo> error;
    /// What the user can do now; empty when there is nothing to do.
    QString advice;
};

} // namespace frhost
