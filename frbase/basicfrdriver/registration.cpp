#include "frbase/basicfrdriver.h"

#include "host/log/log4qt.h"
#include "host/records/driverrecords.h"
#include "host/records/frparameter.h"
#include "host/records/taxsystem.h"

#include <QChar>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>

// === Number, registration, marking codes ===

void BasicFrDriver::setNumber(int newNumber)
{
    number = newNumber;
}

int BasicFrDriver::getNumber() const
{
    return number;
}

QMap<int, MoneyCounters> BasicFrDriver::getRelatedCounters() const
{
    return {};
}

void BasicFrDriver::continuePrintClosedDoc() {}

void BasicFrDriver::registration(const QList<hw::fr::common::TaxSystemType>& /*taxSystems*/,
    hw::fr::common::TaxSystemType /*defaultTaxSystem*/, const QString& /*registrationNumber*/,
    const QList<RegistrationReason>& /*reasons*/, const QMap<QString, QVariant>& /*parameters*/)
{
}

void BasicFrDriver::maintenance() {}

QJsonObject BasicFrDriver::loadImage(int /*imageNumber*/, const QString& /*file*/)
{
    return {};
}

int BasicFrDriver::checkMarkingCode(const MarkedPosition& /*position*/, bool /*wait*/)
{
    return 0;
}

bool BasicFrDriver::isRegistrationParametersChanged(const QMap<QString, QVariant>& /*parameters*/) const
{
    return false;
}

void BasicFrDriver::checkPaper() const {}

void BasicFrDriver::clearMarkingCodes() {}

int BasicFrDriver::getAnnulationCounter()
{
    return 0;
}

void BasicFrDriver::setSymbolsMapping(const QMap<QChar, QChar>& /*mapping*/) {}

void BasicFrDriver::setProgramCliche(const QList<QString>& /*lines*/) {}

bool BasicFrDriver::isCashDrawerOpened() const
{
    return false;
}

bool BasicFrDriver::setParams(const QList<FrParameter>& params)
{
    const auto narrowed = [](int value) { return static_cast<unsigned short>(value); };
    for (const FrParameter& param : params) {
        if (!legacySetParam(narrowed(param.getTableNum()), narrowed(param.getRowNum()),
                narrowed(param.getFieldNum()), param.getValue()))
            return false;
    }
    return true;
}

bool BasicFrDriver::isLastCheckWithNumber(const QString& /*checkNumber*/)
{
    return false;
}

QJsonObject BasicFrDriver::getLastCheck(const FiscalDocument& /*document*/)
{
    return {};
}

void BasicFrDriver::printCodePageSymbols(int /*codePage*/) {}

void BasicFrDriver::addPostLines(const QList<FrPrintData>& /*lines*/)
{
    logger->warn("Печать дополнительных элементов при закрытии чека не поддерживается");
}

void BasicFrDriver::clearLinesForPrint() {}
