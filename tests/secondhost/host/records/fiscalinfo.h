#pragma once

#include <QDateTime>
#include <QString>

struct FiscalInfo
{
    double total = 0;
    int fiscalDocumentNumber = 0;
    QString taxSystem, fiscalSign, shiftNumber, registrationNumber, fnNumber;
    QDateTime dateTime;
};

struct FnInfo
{
};

struct OfdStatusInfo
{
};

struct KkmRegisters
{
};

struct FnDocument
{
};
