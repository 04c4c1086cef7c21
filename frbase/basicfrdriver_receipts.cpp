#include "frbase/basicfrdriver.h"

#include "host/log/log4qt.h"
#include "host/records/fdrequisite.h"
#include "host/records/frpayment.h"
#include "host/records/frposition.h"

void BasicFrDriver::checkOpen(const FiscalDocument& /*document*/) {}

void BasicFrDriver::checkAddPosition(const FrPosition& position)
{
    logger->info("Добавление позиции в чек: %1", position.toString());
}

void BasicFrDriver::checkStornoPosition(const FrPosition& /*position*/) {}

void BasicFrDriver::checkTotal() {}

void BasicFrDriver::checkPay(const FrPayment& payment)
{
    logger->info("Расчет по чеку: (%1) %2", payment.type, QString::number(payment.getSum(), 'f', 2));
}

void BasicFrDriver::checkPrint(const QList<QString>& /*lines*/) {}

QJsonObject BasicFrDriver::checkClose(const FiscalDocument& /*document*/)
{
    return {};
}

void BasicFrDriver::checkCancel() {}

void BasicFrDriver::checkWaitForPrint() {}

void BasicFrDriver::cancelCheckOpen(const FiscalDocument& /*document*/) {}

void BasicFrDriver::cancelCheckTotal(const FiscalDocument& /*document*/) {}

void BasicFrDriver::cancelCheckPay(const FiscalDocument& /*document*/) {}

QJsonObject BasicFrDriver::cancelCheckClose(const FiscalDocument& /*document*/)
{
    return {};
}

void BasicFrDriver::moneyCheckOpen(hw::fr::CheckType /*type*/, const QString& /*checkNumber*/) {}

void BasicFrDriver::moneyCheckPrint(const QList<QString>& /*lines*/) {}

void BasicFrDriver::moneyCheckWaitForPrint() {}

QJsonObject BasicFrDriver::moneyCheckClose(double /*sum*/)
{
    return {};
}

void BasicFrDriver::textDocOpen(hw::fr::CheckType /*type*/)
{
    logger->info("Открытие текстового документа");
}

void BasicFrDriver::textDocPrint(const QList<QString>& /*lines*/) {}

void BasicFrDriver::textDocClose() {}

void BasicFrDriver::continuePrintClosedDoc() {}

bool BasicFrDriver::isLastCheckWithNumber(const QString& /*checkNumber*/)
{
    return false;
}

QJsonObject BasicFrDriver::getLastCheck(const FiscalDocument& /*document*/)
{
    return {};
}

void BasicFrDriver::setRequisite(const FdRequisite& requisite)
{
    logger->info("Запись реквизита %1 (%2) в ФР", requisite.getTag(), requisite.getDescription());
}

int BasicFrDriver::checkMarkingCode(const MarkedPosition& /*position*/, bool /*wait*/)
{
    return 0;
}

void BasicFrDriver::clearMarkingCodes() {}
