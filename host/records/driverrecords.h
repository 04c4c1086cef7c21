#pragma once

#include "host/records/efrdriver.h"

#include <QByteArray>
#include <QString>

// Small records in the signatures of AbstractFrDriver; only drivers of printing registers read them.

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

/// A line to print when a receipt is closed.
struct FrPrintData
{
    QString text;
};

/// A marked item whose code is to be checked before the item is sold.
struct MarkedPosition
{
    QString markingCode;
    double count = 0;
};

/// Reasons for registering a register again, numbered as in the fiscal data format (tag 1101).
enum class RegistrationReason : int
{
    FnChange = 1,
    OfdChange = 2,
    UserRequisitesChange = 3,
    SettingsChange = 4,
};

/// Number and sum of documents; the sum is in roubles.
struct MoneyCounters
{
    int count = 0;
    double sum = 0;
};
