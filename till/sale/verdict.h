#pragma once

#include "till/wire/serviceanswer.h"

#include <QString>

#include <functional>

namespace frhost {

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
    /// The answer cannot be trusted: it is about another receipt or has a status that nobody knows.
    Doubtful,
};

/// What to do after a receipt has been closed, whether the driver reported a failure or not.
enum class SaleVerdict
{
    Registered,
    /// Nothing was registered: the driver refused the receipt before sending it, or the service did.
    Refused,
    /// It was not sent, because a request was not answered. Nobody has refused it.
    NotSent,
    /// The service accepted the receipt and then could not register it; its id is used up.
    Failed,
    /// It may or may not be registered.
    Unknown,
    /// The service knows this id from an earlier try: what became of that has to be asked.
    TakeExisting,
    /// The service accepted the receipt, and nothing is known since: ask again.
    AskAgain,
};

/// Judges one answer about the document of the receipt `id`.
[[nodiscard]] DocumentState judgeStatus(const ServiceAnswer& answer, const QString& id);

/// Judges a finished try to register the receipt `id`. `driverFailed` tells whether the driver threw.
[[nodiscard]] SaleVerdict judgeSale(const Exchange& seen, const QString& id, bool driverFailed);

/// Judges a finished try to send the receipt without waiting: Registered stands for accepted.
[[nodiscard]] SaleVerdict judgeSending(const Exchange& seen, bool driverFailed);

/// Asks about a document until it is finished: `ask` asks once, `pause` waits in between. Gives up, with
/// NoNews, after three questions in a row without news; a document that waits is waited for without limit.
[[nodiscard]] DocumentState awaitDocument(
    const std::function<DocumentState()>& ask, const std::function<void()>& pause);

} // namespace frhost
