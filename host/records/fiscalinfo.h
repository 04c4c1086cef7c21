#pragma once

#include <QDateTime>
#include <QString>

#include <limits>

/// Result of a fiscal document. Texts are empty, numbers 0 and the date and time invalid until a driver fills
/// it.
struct FiscalInfo
{
    /// Date and time of the receipt, as printed by the register.
    QDateTime dateTime;
    /// Number of the fiscal storage; 16 digits, may begin with zeros.
    QString fnNumber;
    /// Registration number of the register; 16 digits, may begin with zeros.
    QString registrationNumber;
    QString shiftNumber;
    int fiscalDocumentNumber = 0;
    /// Taxation system of the receipt, in words.
    QString taxSystem;
    /// Fiscal sign of the document; text, because the number may exceed 2^31.
    QString fiscalSign;
    /// Total of the receipt, in roubles.
    double total = 0;
};

/// State of the fiscal storage.
struct FnInfo
{
    static constexpr qint64 notSet = std::numeric_limits<qint64>::min();

    /// Documents held; notSet until a driver fills it.
    qint64 documentCount = notSet;
    QString fnNumber;
    QDateTime validUntil;
};

/// State of the connection to the fiscal data operator.
struct OfdStatusInfo
{
    /// -1 when unknown.
    int state = -1;
    int unsentDocuments = 0;
    QDateTime firstUnsent;
};

/// Registers of the device at the beginning or end of a shift; sums in roubles.
struct KkmRegisters
{
    QDateTime dateTime;
    QString shiftNumber;
    double sales = 0;
    double refunds = 0;
    double cash = 0;
};

/// One document read from the fiscal storage; the total in roubles.
struct FnDocument
{
    QDateTime dateTime;
    QString fiscalSign;
    double total = 0;
};
