#pragma once

#include "till/causes/causes.h"
#include "till/sale/verdict.h"

#include <QString>

#include <optional>

namespace till {

/// What became of a receipt.
enum class Outcome
{
    Registered,
    /// The service says that it is registered, and its answer does not prove it: a part is missing, is not of
    /// its type or contradicts the receipt.
    Incomplete,
    /// Nothing was registered.
    Refused,
    /// It may or may not be registered; also when it was not sent for want of a connection.
    Unknown,
};

/// What a final verdict means for the user.
struct Conclusion
{
    /// None when the receipt was accepted and its registration was not waited for.
    std::optional<Outcome> outcome;
    /// What happened, for want of the driver's or the service's own words; may be empty.
    QString message;
    /// What the user can do now; empty when there is nothing to do.
    QString advice;
    /// Whether the next receipt would fare no better, or must wait until this one is cleared up.
    bool endsRun = false;
};

/// A verdict that asks for a further step counts as Unknown: the step was not taken or led nowhere.
[[nodiscard]] Conclusion conclusionOf(SaleVerdict verdict);

/// What a verdict leads to; `refusal` is the service's code where it refused the receipt.
[[nodiscard]] NextStep nextStepOf(SaleVerdict verdict, std::optional<ServiceCode> refusal);

/// The row of a code in the table of causes; null for a code that is not the service's.
[[nodiscard]] const Cause* causeOf(ServiceCode code);

/// What to do about a receipt that the service has refused with this code.
[[nodiscard]] QString refusalAdvice(ServiceCode code);

/// What to correct when the service refuses receipts because of the account.
[[nodiscard]] QString accountAdvice(ServiceCode code);

} // namespace till
