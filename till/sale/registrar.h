#pragma once

#include "till/receipts/receiptqueue.h"
#include "till/sale/result.h"
#include "till/wire/observingtransport.h"

#include <variant>

class AbstractFrDriver;

namespace till {

class LoadedRegister;

/// Hands the receipt to the driver, from checkOpen() to the last payment; closing it is left to the caller.
void handOver(AbstractFrDriver& driver, const Receipt& receipt);

/// What the service's answers about this receipt have to repeat.
[[nodiscard]] ReceiptFacts factsOf(const Receipt& receipt);

/// A receipt that the service has, and whose registration is not known yet.
struct AwaitedReceipt
{
    QueuedReceipt queued;
    ObservingTransport::Memory memory;
    /// What the driver threw last; none when it threw nothing.
    std::optional<ErrorInfo> error;
    DocumentWait wait;
    /// Before the next question.
    std::chrono::milliseconds pause{0};
    /// Questions in a row that the service would not answer, as it does where they come too often.
    int refusedQuestions = 0;
};

/// Registers receipts and finds out what became of each. Blocks while the service works on a receipt.
///
/// Outcomes are judged by what went over the wire, never by the class of an exception: an error in a status
/// answer says nothing about the receipt. An id that the service already knows is never an error by itself:
/// the earlier document is looked up and its total compared.
///
/// A single answer never proves that a receipt is not registered. A failed document is asked about again, and
/// a refused receipt is sent once more under its id, which the service registers only once.
class Registrar
{
public:
    /// Register and transport are borrowed; the register's driver must use the transport.
    Registrar(LoadedRegister& usedRegister, ObservingTransport& usedTransport, Patience usedPatience = {});

    /// Registers a receipt and waits for its fiscal result. Throws nothing that a driver may throw: every
    /// failure is an outcome.
    [[nodiscard]] ReceiptResult sell(const QueuedReceipt& queued);

    /// The same without waiting, so that other receipts may be sent meanwhile: sends the receipt, and returns
    /// its result where that is known at once.
    [[nodiscard]] std::variant<ReceiptResult, AwaitedReceipt> begin(const QueuedReceipt& queued);
    /// Asks once about it; returns its result where that is known now. The transport has seen what concerns
    /// this receipt then.
    [[nodiscard]] std::optional<ReceiptResult> ask(AwaitedReceipt& awaited);

    /// Sends a receipt without waiting for its registration. Throws as little as sell().
    [[nodiscard]] ReceiptResult send(const QueuedReceipt& queued);

    /// Finds out what became of a document that was sent earlier, and waits until it is finished. Sends no
    /// receipt, and throws as little as sell().
    [[nodiscard]] ReceiptResult collect(const QString& uuid);

private:
    /// What is known of the receipt after a step; the rest is in what the transport has seen.
    struct Finding
    {
        SaleVerdict verdict = SaleVerdict::Unknown;
        /// What the driver threw last; none when it threw nothing.
        std::optional<ErrorInfo> error;
    };

    [[nodiscard]] Finding close(const Receipt& receipt);
    [[nodiscard]] Finding closeAgain(const Receipt& receipt);
    [[nodiscard]] Patience ofRegister() const;
    [[nodiscard]] Finding submit(const Receipt& receipt);
    [[nodiscard]] Finding submitAgain(const Receipt& receipt);
    [[nodiscard]] Finding await(const Receipt& receipt, Finding finding);
    [[nodiscard]] DocumentState awaitNews(const QString& uuid, bool hasFailedOnce,
        const std::function<DocumentState()>& judge, std::optional<ErrorInfo>& error) const;
    [[nodiscard]] Finding repeatRefused(Finding finding, const std::function<Finding()>& sendAgain) const;
    [[nodiscard]] ReceiptResult resultOf(const QueuedReceipt& queued, const Finding& finding) const;
    [[nodiscard]] QString adviceFor(SaleVerdict verdict) const;
    [[nodiscard]] ErrorInfo errorOf(const Receipt& receipt, const Finding& finding) const;
    [[nodiscard]] std::optional<ErrorInfo> attempted(const std::function<void()>& step) const;

    LoadedRegister& fiscalRegister;
    ObservingTransport& transport;
    Patience patience;
};

} // namespace till
