#pragma once

#include "host/records/fiscalinfo.h"

/// The fiscal data of a receipt, none of which is missing.
[[nodiscard]] inline FiscalInfo completeFiscalData(double total = 1030)
{
    FiscalInfo info;
    info.dateTime = QDateTime(QDate(2020, 1, 15), QTime(21, 10, 5));
    info.fnNumber = QStringLiteral("0251440300046840");
    info.registrationNumber = QStringLiteral("0001234500006789");
    info.shiftNumber = QStringLiteral("17");
    info.fiscalDocumentNumber = 29414;
    info.taxSystem = QStringLiteral("Общая");
    info.fiscalSign = QStringLiteral("3449555941");
    info.total = total;
    return info;
}
