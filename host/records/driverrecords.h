#pragma once

#include "host/records/efrdriver.h"

#include <QByteArray>
#include <QString>

/// Small records in the signatures of AbstractFrDriver. Drivers of printing registers read them.

/// A font to load into the register.
struct Font
{
    EFrDriver::FontTypes type = EFrDriver::FontTypes::Normal;
    QByteArray data;
};

/// A bar code to print.
struct Barcode
{
    QString value;
    int type = 0;
};

/// A logo held by the register.
struct Logo
{
    int number = 0;
};

/// A cashier.
struct FrUser
{
    QString name;
    QString inn;
};

/// A line or picture that is printed when a receipt closes.
struct FrPrintData
{
    QString text;
};

/// A marked line whose code is checked before it is sold.
struct MarkedPosition
{
    QString markingCode;
    double count = 0;
};

/// Why a register is registered anew, as the fiscal data format numbers the reasons (tag 1101).
enum class RegistrationReason : int
{
    FnChange = 1,
    OfdChange = 2,
    UserRequisitesChange = 3,
    SettingsChange = 4,
};

/// Count and sum of documents; the sum in roubles.
struct MoneyCounters
{
    int count = 0;
    double sum = 0;
};
