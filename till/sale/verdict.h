#pragma once

#include "till/sale/evidence.h"
#include "till/wire/serviceanswer.h"

#include <QString>

#include <chrono>
#include <functional>
#include <optional>

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
    /// The answer cannot be trusted: it is about another document or has an unknown status.
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
    /// Nothing was registered: the driver refused the receipt before sending it, or the service did, twice.
    Refused,
    /// The same, and the service would refuse every other receipt, too: the account is at fault.
    AccountRefused,
    /// It was not sent because a request was not answered. Nobody has refused it.
    NotSent,
    /// The service accepted the receipt and then could not register it; its id is used up.
    Failed,
    /// The id belongs to another receipt, which the service has registered.
    ForeignId,
    /// It may or may not be registered.
    Unknown,
    /// Not final: the service has refused the receipt once.
    RefusedOnce,
    /// Not final: the service knows this id from an earlier attempt and has not named its document.
    Existing,
    /// Not final: the service knows the receipt, and whether it is registered has to be asked.
    Unfinished,
    /// Not final: the service has said once that it could not register the receipt.
    FailedOnce,
};

/// What a status answer says about the document of the receipt `id` that the service named when the receipt
/// was sent.
[[nodiscard]] DocumentState judgeStatus(const WireRecord& seen, const QString& id);

/// Judges a finished attempt to register the receipt. `driverFailed` tells whether the driver threw.
[[nodiscard]] SaleVerdict judgeSale(const WireRecord& seen, const ReceiptFacts& receipt, bool driverFailed);

/// Judges a finished attempt to send the receipt `id` without waiting for its registration.
[[nodiscard]] SaleVerdict judgeSending(const WireRecord& seen, const QString& id, bool driverFailed);

/// What the end of waiting for a document, which the last status answer has brought about, says of its
/// receipt.
[[nodiscard]] SaleVerdict verdictOf(DocumentState state, const WireRecord& seen, const ReceiptFacts& receipt);

/// What a refusal is when the service repeats it.
[[nodiscard]] SaleVerdict confirmed(ServiceCode refusal);

/// Whether the service knew the receipt from an earlier attempt when it was sent last.
[[nodiscard]] bool existedBefore(const WireRecord& seen);

/// How long to go on asking about a document.
struct Patience
{
    /// After so many questions without news, and no answer in between that the document is waiting, nothing
    /// is known.
    int questionsWithoutNews = 3;
    /// So many further answers have to repeat that a document has failed.
    int repeatedFailures = 3;
    /// The pause before each of these questions, and before a refused receipt is sent again.
    std::chrono::milliseconds beforeRepetition = std::chrono::seconds(1);
    /// The pause before each other question; that of the register's configuration, where there is one.
    std::chrono::milliseconds beforeQuestion = std::chrono::seconds(1);
    /// So many further sendings have to be refused before a refused receipt is called refused.
    int repeatedRefusals = 2;
};

/// The course of asking about a document until it is finished. A single answer does not prove a failure: only
/// so many in a row do, with nothing else in between, not even silence, behind which anything may stand.
/// Gives up after too many questions without news; a waiting document is waited for without a limit.
class DocumentWait
{
public:
    /// Notes what an answer says. Returns the pause before the next question; none where this one was the
    /// last.
    [[nodiscard]] std::optional<std::chrono::milliseconds> after(
        DocumentState state, const Patience& patience);

private:
    int silent = 0;
    int failed = 0;
};

/// Asks about a document until it is finished: `ask` asks once, `pause` waits in between. Returns what the
/// last answer says.
[[nodiscard]] DocumentState awaitDocument(const std::function<DocumentState()>& ask,
    const std::function<void(std::chrono::milliseconds time)>& pause, const Patience& patience);

} // namespace till
