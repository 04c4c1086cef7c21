#pragma once

#include "till/receipts/receiptqueue.h"
#include "till/sale/attempt.h"
#include "till/sale/receiptresult.h"
#include "till/sale/verdict.h"

#include <QJsonObject>

class AbstractFrDriver;

namespace frhost {

class FiscalRegister;
class ObservingTransport;

/// Hands the receipt to the open driver: opens the check, then its requisites, lines and payments.
void handOver(AbstractFrDriver& driver, const Receipt& receipt);

/// Registers receipts and finds out what became of each. Blocks while the service works on a receipt.
class Registrar
{
public:
    /// Both are borrowed; the register's driver must use the transport.
    Registrar(FiscalRegister& fiscalRegister, ObservingTransport& transport);

    /// Registers a receipt and waits for its fiscal result. Throws nothing that a driver may throw: every
    /// failure is an outcome.
    [[nodiscard]] ReceiptResult sell(const QueuedReceipt& queued);

    /// Sends a receipt without waiting for its registration.
    [[nodiscard]] ReceiptResult send(const QueuedReceipt& queued);

private:
    [[nodiscard]] ReceiptResult started(const QueuedReceipt& queued) const;
    void takeResult(ReceiptResult& result);
    void takeExisting(ReceiptResult& result, const Receipt& receipt);
    QJsonObject askAgain(ReceiptResult& result, const Receipt& receipt);
    void compareTotals(ReceiptResult& result, const Receipt& receipt, const QJsonObject& answer) const;
    void conclude(ReceiptResult& result, SaleVerdict verdict) const;
    void tellFailure(ErrorInfo& error) const;
    void noteError(ReceiptResult& result, const std::optional<ErrorInfo>& error) const;

    FiscalRegister& fiscalRegister;
    ObservingTransport& transport;
};

} // namespace frhost
