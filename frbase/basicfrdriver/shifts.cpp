#include "frbase/basicfrdriver.h"

#include "host/log/log4qt.h"
#include "host/records/driveroptions.h"
#include "host/records/fdrequisite.h"
#include "host/records/fiscalinfo.h"
#include "host/records/taxsystem.h"

#include <QDateTime>
#include <QList>
#include <QString>

// === Shifts, electronic journal, requisites, fiscal information ===

void BasicFrDriver::d2dReport(const QDateTime& /*from*/, const QDateTime& /*to*/, bool /*full*/) {}

void BasicFrDriver::z2zReport(unsigned int /*from*/, unsigned int /*to*/, bool /*full*/) {}

void BasicFrDriver::openShift() {}

bool BasicFrDriver::isShiftOpen()
{
    return true;
}

bool BasicFrDriver::useFN()
{
    return checkOption(hw::fr::Option(0x10));
}

void BasicFrDriver::printEj() {}

QList<QString> BasicFrDriver::getEj(int /*shift*/)
{
    return {};
}

void BasicFrDriver::accountingReport() {}

void BasicFrDriver::setRequisite(const FdRequisite& requisite)
{
    logger->info("Запись реквизита %1 (%2) в ФР", requisite.getTag(), requisite.getDescription());
}

OfdStatusInfo BasicFrDriver::getOfdStatusInfo()
{
    return {};
}

FnInfo BasicFrDriver::getFnInfo()
{
    return {};
}

FiscalInfo BasicFrDriver::getFiscalInfo(int /*documentNumber*/, bool /*lastOnly*/)
{
    return lastFiscalInfo;
}

QString BasicFrDriver::getFfdVersion()
{
    return {};
}

int BasicFrDriver::getMainPaymentType(int type)
{
    return type;
}

void BasicFrDriver::setCheckTemplate(int /*templateNumber*/, const QString& /*text*/) {}

int BasicFrDriver::getCheckCountersTries() const
{
    return 1;
}

int BasicFrDriver::getDefaultTaxSystem() const
{
    return 0;
}

QList<hw::fr::common::TaxSystemType> BasicFrDriver::getAllTaxSystems() const
{
    return {};
}
