#pragma once

#include <QHash>
#include <QtGlobal>

namespace hw::fr {

/// Options of a driver: single bits of a 64-bit word, whose meaning the host defines. Those that the drivers
/// here set without reading them are named by their position.
enum class Option : quint64
{
    Bit2 = 0x4,
    /// The register has a fiscal storage.
    UseFn = 0x10,
    Bit19 = 0x80000,
    Bit24 = 0x1000000,
    Bit25 = 0x2000000,
    Bit37 = 0x2000000000,
};

/// Values of single options that take precedence over what a driver sets.
using DriverOptions = QHash<Option, bool>;

/// Kinds of documents, as counters distinguish them.
enum class CheckType : int
{
    Sale,
    SaleRefund,
    SaleAnnulment,
    SaleRefundAnnulment,
    Purchase,
    PurchaseRefund,
    PurchaseAnnulment,
    MoneyIn,
    MoneyOut,
    SaleCorrection,
    RefundCorrection,
    NonFiscal,
};

} // namespace hw::fr
