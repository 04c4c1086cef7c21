#pragma once

#include "host/records/fiscalinfo.h"
#include "till/causes/causes.h"
#include "till/sale/outcome.h"

#include <QString>

#include <optional>

namespace till {

/// Why a receipt is not known to be registered.
struct ErrorInfo
{
    /// The exception's class name; empty when none was thrown.
    QString type;
    /// The service's code; none when it gave none.
    std::optional<ServiceCode> code;
    QString message;
    /// The service's own words, with all masked that a log does not show to anyone; empty when there are
    /// none.
    QString detail = {};
    /// The service's identifier of the error; empty when it gave none.
    QString errorId = {};
};

/// How a receipt that the service knew already was compared with the earlier one.
enum class Comparison
{
    None,
    /// Only its total.
    Total,
    /// All of its content, by the journal.
    Content,
};

/// On whose word an outcome rests.
enum class Witness
{
    /// The service's answers.
    Service,
    /// The driver of a register that is not a web service.
    Driver,
    /// The journal, which has recorded the driver's word.
    Journal,
};

/// The result of one receipt, ready to be reported.
struct ReceiptResult
{
    QString file;
    int line = 0;
    QString id;
    /// None when the receipt was accepted and its registration was not waited for.
    std::optional<Outcome> outcome;
    SaleVerdict verdict = SaleVerdict::Unknown;
    /// Empty when the service gave none.
    QString uuid;
    /// Whether the service knew the receipt from an earlier attempt.
    bool recovered = false;
    Comparison compared = Comparison::None;
    Witness witness = Witness::Service;
    std::optional<FiscalInfo> fiscal;
    /// Link to the receipt at the fiscal data operator; empty when the service gave none.
    QString receiptUrl;
    /// Whether any part of the receipt may have reached the service in this run.
    bool sent = false;
    NextStep next = NextStep::None;
    std::optional<ErrorInfo> error;
    /// What the user can do now; empty when there is nothing to do.
    QString advice;
    /// Whether no further receipt is to be sent in this run.
    bool endsRun = false;
};

} // namespace till
