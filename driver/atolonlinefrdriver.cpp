#include "driver/atolonlinefrdriver.h"

#include "atolonline/commandprocessor.h"
#include "atolonline/exceptions.h"
#include "atolonline/requisitetags.h"
#include "host/exceptions.h"
#include "host/log/log4qt.h"
#include "host/records/deviceinfo.h"
#include "host/records/driveroptions.h"
#include "host/records/efrdriver.h"
#include "host/records/fiscaldocument.h"
#include "host/records/fiscalinfo.h"
#include "host/records/frpayment.h"
#include "host/records/taxsystem.h"
#include "host/tr.h"
#include "plugin/atolonlinesettings.h"

#include <QJsonValue>

#include <array>
#include <cstddef>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int saleDocument = 0;

QString genitiveOf(int documentType)
{
    static const std::array names{u"продажи"_s, u"возврата продажи"_s, u"аннулирования продажи"_s,
        u"аннулирования возврата"_s, u"покупки"_s, u"возврата покупки"_s, u"аннулирования покупки"_s,
        u"внесения"_s, u"выема"_s, u"коррекции продажи"_s, u"коррекции возврата"_s, u"нефискального"_s};
    const auto index = static_cast<std::size_t>(documentType);
    return documentType >= 0 && index < names.size() ? names[index] : u"неизвестного типа чека"_s;
}

QString taxSystemOf(const FdRequisite& requisite)
{
    using namespace hw::fr::common;
    return TaxSystem::getDescription(TaxSystemType(requisite.getSourceData().toInt()));
}

// A host whose loggers cannot tell is handed every line.
template <typename Logger>
bool wantsInfo(const Logger& logger)
{
    if constexpr (requires { logger.isInfoEnabled(); })
        return logger.isInfoEnabled();
    else
        return true;
}

} // namespace

AtolOnlineFRDriver::AtolOnlineFRDriver(AtolOnlineSettings* cloudSettings)
    : BasicFrDriver(nullptr, u"atolonline_%1"_s.arg(cloudSettings->getDeviceId()), cloudSettings)
    , settings(cloudSettings)
    , commandProcessor(new atolonline::CommandProcessor(logger))
{
    deviceInfo.setProducerCode(u"4"_s);
    deviceInfo.setModel(u"1"_s, u"Атол Онлайн"_s);

    using hw::fr::Option;
    setOption(Option(0x10), true);
    setOption(Option(0x80000), false);
    setOption(Option(0x1000000), false);
    setOption(Option(0x2000000), true);
    setOption(Option(0x2000000000), true);

    commandProcessor->setSettings(settings);
}

AtolOnlineFRDriver::~AtolOnlineFRDriver() = default;

void AtolOnlineFRDriver::connect()
{
    commandProcessor->requestToken(false);
}

void AtolOnlineFRDriver::checkOpen(const FiscalDocument& document)
{
    logger->info("Открытие чека %1", genitiveOf(document.getDocumentType()));
    if (document.getDocumentType() != saleDocument)
        throw FrCommandException(u"Тип чека не поддерживается ФР"_s);
    positions.clear();
    payments.clear();
    requisites.clear();
    lastFiscalInfo = {};
    commandProcessor->clearLastResponse();
}

void AtolOnlineFRDriver::setRequisite(const FdRequisite& requisite)
{
    BasicFrDriver::setRequisite(requisite);
    const auto tag = EFrDriver::RequisiteTypes(requisite.getTag());
    if (tag == atolonline::tags::appliedTaxSystem)
        logger->debug("Установка системы налогообложения для чека: %1", taxSystemOf(requisite));
    else if (tag == atolonline::tags::buyerContact)
        logger->debug("Установка адреса покупателя: %1", requisite.getSourceData().toString());
    else
        return;
    requisites.insert(tag, requisite);
}

void AtolOnlineFRDriver::checkAddPosition(const FrPosition& position)
{
    if (wantsInfo(*logger))
        logger->info("Добавление позиции в чек: %1", position.toString());
    positions.append(position);
}

void AtolOnlineFRDriver::checkPay(const FrPayment& payment)
{
    logger->info(
        "Добавление оплаты: тип %1, сумма %2", payment.type, QString::number(payment.getSum(), 'f', 2));
    payments[payment.type] += payment.getSum();
}

QDateTime AtolOnlineFRDriver::getDateTime()
{
    return QDateTime::currentDateTime();
}

void AtolOnlineFRDriver::prepareCheckClose()
{
    const auto contact = requisites.constFind(atolonline::tags::buyerContact);
    if (contact == requisites.constEnd())
        throw FrWorkWithServiceException(u"Требуется телефон или электронный адрес покупателя"_s);
    const QString value = contact->getSourceData().toString();
    if (value.contains(u'@'))
        commandProcessor->setClientEmail(value);
    else
        commandProcessor->setClientPhone(value);
}

QString AtolOnlineFRDriver::submit(const FiscalDocument& document)
{
    prepareCheckClose();
    commandProcessor->setInternalDocumentId(document.getInternalIdentifier());
    return commandProcessor->sell(positions, payments, requisites);
}

// The service may end the life of a token at any moment, so the number of repeats has no limit.
template <typename Call>
auto AtolOnlineFRDriver::renewingToken(Call call)
{
    for (;;) {
        try {
            return call();
        } catch (const atolonline::TokenExpired&) {
        }
        commandProcessor->requestToken(true);
    }
}

QJsonObject AtolOnlineFRDriver::checkClose(const FiscalDocument& document)
{
    const QString uuid = renewingToken([&] {
        logger->info("Закрытие чека продажи");
        try {
            return submit(document);
        } catch (const atolonline::TokenExpired& e) {
            logger->warn("%1. Получаем новый токен", e.tr().ru());
            throw;
        }
    });
    logger->info("Чек отправлен, UUID: %1", uuid);
    waitForResult(uuid);
    updateFiscalInfo(commandProcessor->getLastDocumentFiscalInfo());
    return {};
}

void AtolOnlineFRDriver::waitForResult(const QString& uuid)
{
    logger->debug("Ожидание перехода документа в статус done или fail");
    do {
        msleep(settings->getRequestInterval());
    } while (commandProcessor->getDocumentStatus(uuid) == atolonline::Wait);
}

void AtolOnlineFRDriver::updateFiscalInfo(const QMap<QString, QVariant>& payload)
{
    lastFiscalInfo.fnNumber = payload.value(u"fn_number"_s).toString();
    lastFiscalInfo.fiscalDocumentNumber = payload.value(u"fiscal_document_number"_s).toInt();
    lastFiscalInfo.dateTime =
        QDateTime::fromString(payload.value(u"receipt_datetime"_s).toString(), u"dd.MM.yyyy hh:mm:ss"_s);
    lastFiscalInfo.shiftNumber = payload.value(u"shift_number"_s).toString();
    lastFiscalInfo.total = payload.value(u"total"_s).toDouble();
    lastFiscalInfo.registrationNumber = payload.value(u"ecr_registration_number"_s).toString();
    lastFiscalInfo.fiscalSign = payload.value(u"fiscal_document_attribute"_s).toString();
    const auto taxSystem = requisites.constFind(atolonline::tags::appliedTaxSystem);
    if (taxSystem != requisites.constEnd())
        lastFiscalInfo.taxSystem = taxSystemOf(*taxSystem);
}

QString AtolOnlineFRDriver::documentClose(const FiscalDocument& document)
{
    return renewingToken([&] {
        logger->info("Закрытие чека");
        try {
            return submit(document);
        } catch (const atolonline::DocumentExists&) {
            return commandProcessor->getLastResponse().value("uuid"_L1).toString();
        }
    });
}

QJsonObject AtolOnlineFRDriver::getDocumentInfo(const QString& uuid)
{
    return renewingToken([&] {
        logger->info("Получение информации о документе");
        commandProcessor->getDocumentStatus(uuid);
        return commandProcessor->getLastResponse();
    });
}

QJsonObject AtolOnlineFRDriver::getLastResponse() const
{
    return commandProcessor->getLastResponse();
}
