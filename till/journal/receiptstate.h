#pragma once

#include <QString>

namespace till {

/// What the journal knows of a receipt.
enum class ReceiptState
{
    /// It went on the wire, or was about to; no outcome is recorded.
    Sent,
    /// An attempt ended without knowing the outcome.
    Unknown,
    /// Nothing was registered: the service or the driver refused it. Its id may be used again.
    Refused,
    /// The service has accepted it.
    Accepted,
    /// The service accepted it and could not register it.
    Failed,
    /// The service says that it is registered, without all of the evidence.
    Incomplete,
    /// It is registered.
    Registered,
};

/// As the journal stores it.
[[nodiscard]] QString nameOf(ReceiptState state);
/// The state of that name; Unknown for any other name.
[[nodiscard]] ReceiptState receiptStateOf(const QString& name);

/// Whether it rests on the service's word that it has the receipt.
[[nodiscard]] bool isProven(ReceiptState state);

/// Whether a recorded state gives way to another one. What the service has said about a receipt is never
/// replaced by knowing less.
[[nodiscard]] bool givesWay(ReceiptState recorded, ReceiptState to);

} // namespace till
