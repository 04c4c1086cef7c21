#include "host/abstractfrdriver.h"
#include "host/log/log4qt.h"
#include "host/vposfrdriver.h"
#include "register.h"

#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

const QByteArray token = R"({"token": "T1"})";
const QByteArray accepted = R"({"uuid": "u-1", "status": "wait"})";
const QByteArray done = R"({"status": "done", "payload": {"total": 100, "fn_number": "0000440300046840",
    "shift_number": 17, "receipt_datetime": "05.03.2024 14:07:09", "fiscal_document_number": 123,
    "ecr_registration_number": "0000111118041361", "fiscal_document_attribute": 3449555941,
    "ofd_receipt_url": "https://ofd.example/1"}})";

QStringList addresses()
{
    QStringList list;
    for (const RestClient::Request& request : RestClient::requests)
        list << request.url.toString();
    return list;
}

TEST(SaleInASecondHost, IsSentFromTheHostsRecords)
{
    const Register cloud({token, accepted, done});
    cloud.driver().connect();
    cloud.collect(sale());
    cloud.driver().checkClose(sale());

    ASSERT_THAT(addresses(),
        ElementsAre(u"https://service.example/v4/getToken"_s, u"https://service.example/v4/group/sell"_s,
            u"https://service.example/v4/group/report/u-1"_s));
    EXPECT_EQ(
        bodyOf(RestClient::requests[0]), (QVariantMap{{u"login"_s, u"shop"_s}, {u"pass"_s, u"secret"_s}}));
    EXPECT_EQ(RestClient::requests[1].token, "T1");
    EXPECT_EQ(RestClient::requests[2].token, "T1");

    const QVariantMap body = bodyOf(RestClient::requests[1]);
    EXPECT_EQ(body.value(u"external_id"_s), u"till-1"_s);
    const QVariantMap receipt = body.value(u"receipt"_s).toMap();
    EXPECT_EQ(receipt.value(u"total"_s), 100);
    EXPECT_EQ(receipt.value(u"client"_s), (QVariantMap{{u"phone"_s, u"+79990000000"_s}}));
    EXPECT_EQ(receipt.value(u"company"_s).toMap().value(u"sno"_s), u"usn_income_outcome"_s);
    const QVariantMap payment{{u"type"_s, 1}, {u"sum"_s, 100}};
    EXPECT_EQ(receipt.value(u"payments"_s), QVariantList{payment});
    const QVariantMap supplier{{u"phones"_s, QVariantList{u"+79990000001"_s}}, {u"name"_s, u"Supplier"_s},
        {u"inn"_s, u"7700000001"_s}};
    const QVariantMap item{{u"name"_s, u"Tea"_s}, {u"price"_s, 99.995}, {u"quantity"_s, 1}, {u"sum"_s, 100},
        {u"vat"_s, QVariantMap{{u"type"_s, u"none"_s}}}, {u"payment_method"_s, u"full_prepayment"_s},
        {u"payment_object"_s, u"service"_s}, {u"supplier_info"_s, supplier},
        {u"agent_info"_s, QVariantMap{{u"type"_s, u"commission_agent"_s}}},
        {u"nomenclature_code"_s, u"01 AB"_s}};
    EXPECT_EQ(receipt.value(u"items"_s), QVariantList{item});
}

TEST(SaleInASecondHost, FillsTheHostsFiscalInformation)
{
    const Register cloud({accepted, done});
    cloud.collect(sale());
    cloud.driver().checkClose(sale());

    const FiscalInfo info = cloud.driver().getFiscalInfo(0, false);
    EXPECT_EQ(info.total, 100);
    EXPECT_EQ(info.fnNumber, u"0000440300046840"_s);
    EXPECT_EQ(info.shiftNumber, u"17"_s);
    EXPECT_EQ(info.dateTime, QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9)));
    EXPECT_EQ(info.fiscalDocumentNumber, 123);
    EXPECT_EQ(info.registrationNumber, u"0000111118041361"_s);
    EXPECT_EQ(info.fiscalSign, u"3449555941"_s);
    EXPECT_EQ(info.taxSystem, u"4"_s);
}

TEST(SaleInASecondHost, WritesTheseLines)
{
    const Register cloud({token, accepted, done});
    cloud.driver().connect();
    cloud.collect(sale());
    cloud.driver().checkClose(sale());

    EXPECT_EQ(Log4Qt::LogManager::names, QStringList{u"frdriver, atolonline_3"_s});
    EXPECT_THAT(Log4Qt::Logger::lines,
        ElementsAre(u"debug: Получение токена"_s, u"info: Открытие чека продажи"_s,
            u"info: Запись реквизита 1008 (N) в ФР"_s, u"debug: Установка адреса покупателя: +79990000000"_s,
            u"info: Запись реквизита 1055 (N) в ФР"_s,
            u"debug: Установка системы налогообложения для чека: 4"_s,
            u"info: Добавление позиции в чек: Tea"_s, u"info: Добавление оплаты: тип 1, сумма 100.00"_s,
            u"info: Закрытие чека продажи"_s, u"info: Установка идентификатора документа till-1"_s,
            u"info: Чек отправлен, UUID: u-1"_s,
            u"debug: Ожидание перехода документа в статус done или fail"_s,
            u"info: Получение статуса документа по uuid: u-1"_s,
            u"info: Просмотр чека на сайте ОФД: https://ofd.example/1"_s));
}

TEST(DuplicateInASecondHost, ReturnsTheUuidOfTheExistingDocument)
{
    const Register cloud({R"({"uuid": "u-0", "error": {"code": 33, "error_id": "e", "text": "t"}})"});
    cloud.collect(sale());
    EXPECT_EQ(cloud.cloudDriver().documentClose(sale()), u"u-0"_s);
    EXPECT_EQ(cloud.cloudDriver().getLastResponse().value(u"uuid"_s), u"u-0"_s);
}

TEST(ExpiredTokenInASecondHost, IsRenewedAndTheSameReceiptSentAgain)
{
    const Register cloud({token, errorAnswer(11), R"({"token": "T2"})", accepted, done});
    cloud.driver().connect();
    cloud.collect(sale());
    cloud.driver().checkClose(sale());

    ASSERT_EQ(RestClient::requests.size(), 5);
    EXPECT_EQ(RestClient::requests[1].token, "T1");
    EXPECT_EQ(RestClient::requests[3].token, "T2");
    EXPECT_EQ(bodyOf(RestClient::requests[3]).value(u"receipt"_s),
        bodyOf(RestClient::requests[1]).value(u"receipt"_s));
    EXPECT_EQ(bodyOf(RestClient::requests[3]).value(u"external_id"_s), u"till-1"_s);
    EXPECT_THAT(Log4Qt::Logger::lines,
        testing::Contains(u"warn: Срок действия токена истёк. Получаем новый токен"_s));
    EXPECT_EQ(cloud.driver().getFiscalInfo(0, false).fiscalDocumentNumber, 123);
}

} // namespace
