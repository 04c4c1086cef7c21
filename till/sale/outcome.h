#pragma once

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
};

/// A verdict that asks for a further step counts as Unknown: the step was not taken or led nowhere.
[[nodiscard]] Conclusion conclusionOf(SaleVerdict verdict);

} // namespace till
