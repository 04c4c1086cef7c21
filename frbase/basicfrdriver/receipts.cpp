#include "frbase/basicfrdriver.h"

#include "host/log/log4qt.h"
#include "host/records/driveroptions.h"
#include "host/records/frpayment.h"
#include "host/records/frposition.h"

#include <QJsonObject>
#include <QList>
#include <QString>

// === Receipts, money documents, text documents ===

void BasicFrDriver::checkOpen(const FiscalDocument& /*document*/) {}

QJsonObject BasicFrDriver::checkClose(const FiscalDocument& /*document*/)
{
    return {};
}

void BasicFrDriver::checkCancel() {}

void BasicFrDriver::checkWaitForPrint() {}

void BasicFrDriver::cutAfterChecksClosing() {}

void BasicFrDriver::cutPaper() {}

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

void BasicFrDriver::moneyCheckOpen(hw::fr::CheckType /*type*/, const QString& /*number*/) {}

void BasicFrDriver::moneyCheckPrint(const QList<QString>& /*lines*/) {}

QJsonObject BasicFrDriver::moneyCheckClose(double /*sum*/)
{
    return {};
}

void BasicFrDriver::moneyCheckWaitForPrint() {}

void BasicFrDriver::textDocOpen(hw::fr::CheckType /*type*/)
{
    logger->info("Открытие текстового документа");
}

void BasicFrDriver::textDocPrint(const QList<QString>& /*lines*/) {}

void BasicFrDriver::textDocClose() {}

void BasicFrDriver::barcodePrint(const Barcode& /*barcode*/)
{
    logger->warn("Печать штрих-кода не поддерживается устройством");
}
