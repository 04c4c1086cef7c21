#include "frbase/basicfrdriver.h"

#include "host/records/driveroptions.h"
#include "host/records/driverrecords.h"

#include <QJsonObject>
#include <QMap>
#include <QString>

// === Reports and counters ===

void BasicFrDriver::vatReport() {}

QJsonObject BasicFrDriver::zReport()
{
    return {};
}

QJsonObject BasicFrDriver::xReport()
{
    return {};
}

QJsonObject BasicFrDriver::xReportDept()
{
    return {};
}

MoneyCounters BasicFrDriver::getMoneyCounters(hw::fr::CheckType /*type*/)
{
    return {};
}

QMap<int, MoneyCounters> BasicFrDriver::getCheckCounters(hw::fr::CheckType /*type*/)
{
    return {};
}

QMap<int, MoneyCounters> BasicFrDriver::getPositionCounters(hw::fr::CheckType /*type*/) const
{
    return {};
}

int BasicFrDriver::getLastShiftNumber()
{
    return 0;
}

int BasicFrDriver::getDefaultPaymentType()
{
    return 1;
}

QString BasicFrDriver::getSendLinesTemplate() const
{
    return {};
}

void BasicFrDriver::fpReportInDatesRange(
    const QString& /*password*/, long /*from*/, long /*to*/, bool /*full*/)
{
}

void BasicFrDriver::fpReportInShiftsRange(
    const QString& /*password*/, long /*from*/, long /*to*/, bool /*full*/)
{
}
