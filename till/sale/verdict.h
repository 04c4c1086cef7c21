#pragma once

#include "till/wire/serviceanswer.h"

#include <QString>

#include <functional>

namespace till {

/// What an answer to a question about a document says.
enum class DocumentState
{
    /// The document is registered.
    Registered,
    /// It is finished and was not registered.
    Failed,
    /// It is not finished yet.
    Waiting,
    /// The answer, or its absence, says nothing about the document; asking again may help.
    NoNews,
    /// The answer cannot be trusted: it is about another receipt or has an unknown status.
    Doubtful,
};

/// What is known of a receipt after a step of its sale.
enum class SaleVerdict
{
    Registered,
    /// The service says that it is registered, and its answer does not prove it.
    Incomplete,
    /// The service has accepted the receipt, and its registration is not waited for.
    Accepted,
    /// Nothing was registered: the driver refused the receipt before sending it, or the service did.
    Refused,
    /// It was not sent because a request was not answered. Nobody has refused it.
    NotSent,
    /// The service accepted the receipt and then could not register it; its id is used up.
    Failed,
    /// The id belongs to another receipt, which the service has registered.
    ForeignId,
    /// It may or may not be registered.
    Unknown,
    /// Not final: the service knows this id from an earlier attempt, whose outcome has to be found out.
    Existing,
    /// Not final: the service accepted the receipt, and nothing has been heard of it since.
    Unfinished,
};

/// Judges one answer about the document of the receipt `id`.
[[nodiscard]] DocumentState judgeStatus(const ServiceAnswer& answer, const QString& id);

/// Judges a finished attempt to register the receipt `id`. `driverFailed` tells whether the driver threw.
[[nodiscard]] SaleVerdict judgeSale(const WireRecord& seen, const QString& id, bool driverFailed);

/// Judges a finished attempt to send a receipt without waiting for its registration.
[[nodiscard]] SaleVerdict judgeSending(const WireRecord& seen, bool driverFailed);

/// What the end of waiting for a document says of its receipt.
[[nodiscard]] SaleVerdict verdictOf(DocumentState state);

/// Asks about a document until it is finished: `ask` asks once, `pause` waits in between. Gives up, with
/// NoNews, after three questions in a row without news; a waiting document is waited for without a limit.
[[nodiscard]] DocumentState awaitDocument(
    const std::function<DocumentState()>& ask, const std::function<void()>& pause);

/// Registered stays so only when the total that the service has registered is the receipt's own. It does not
/// compare receipts that share an id; the total shows the commonest mix-up. An answer without a total proves
/// nothing either way. In roubles.
[[nodiscard]] SaleVerdict compareTotals(
    SaleVerdict verdict, std::optional<double> registered, double expected);

} // namespace till
