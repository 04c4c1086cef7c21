#include "frbase/basicfrdriver.h"

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

void BasicFrDriver::fpReportInDatesRange(
    const QString& /*password*/, long /*from*/, long /*to*/, bool /*full*/)
{
}

void BasicFrDriver::fpReportInShiftsRange(
    const QString& /*password*/, long /*from*/, long /*to*/, bool /*full*/)
{
}

void BasicFrDriver::d2dReport(const QDateTime& /*from*/, const QDateTime& /*to*/, bool /*full*/) {}

void BasicFrDriver::z2zReport(unsigned int /*from*/, unsigned int /*to*/, bool /*full*/) {}

void BasicFrDriver::printLastZReport() {}

void BasicFrDriver::accountingReport() {}

void BasicFrDriver::printEj() {}

QList<QString> BasicFrDriver::getEj(int /*shift*/)
{
    return {};
}

void BasicFrDriver::openShift() {}

bool BasicFrDriver::isShiftOpen()
{
    return true;
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

QMap<int, MoneyCounters> BasicFrDriver::getRelatedCounters() const
{
    return {};
}

int BasicFrDriver::getCheckCountersTries() const
{
    return 1;
}

int BasicFrDriver::getLastShiftNumber()
{
    return 0;
}

int BasicFrDriver::getAnnulationCounter()
{
    return 0;
}

QString BasicFrDriver::getFrDocNum()
{
    return {};
}

QString BasicFrDriver::getFrDocNumAfterClosing()
{
    return {};
}

QString BasicFrDriver::getFrDocCopy(long /*documentNumber*/)
{
    return {};
}

int BasicFrDriver::getFrDocOffset()
{
    return -1;
}

void BasicFrDriver::printLastFnDocument() {}

void BasicFrDriver::printFnDocument(long /*documentNumber*/) {}
