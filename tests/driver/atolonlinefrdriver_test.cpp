#include "atolonline/exceptions.h"
#include "host/records/deviceinfo.h"
#include "host/records/fiscaldocument.h"
#include "host/records/frpayment.h"
#include "plugin/atolonlinesettings.h"
#include "tests/support/logcapture.h"
#include "tests/support/outcome.h"
#include "tests/support/scriptedtransport.h"
#include "tests/support/sleeplessdriver.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

using hw::fr::Option;

constexpr auto token = R"({"token":"T1"})";
constexpr auto accepted = R"({"uuid":"u-1","status":"wait","error":null})";
constexpr auto waiting = R"({"status":"wait","error":{"code":34,"error_id":"e","text":"t"}})";
constexpr auto expired = R"({"error":{"code":11,"error_id":"e","text":"t"}})";
constexpr auto exists = R"({"uuid":"u-0","status":"wait","error":{"code":33,"error_id":"e","text":"t"}})";
constexpr auto done = R"({"uuid":"u-1","status":"done","error":null,"payload":{
    "total":160.5,"fn_number":"0000440300046840","shift_number":17,"receipt_datetime":"05.03.2024 14:07:09",
    "fiscal_receipt_number":4,"fiscal_document_number":123,"ecr_registration_number":"0000111118041361",
    "fiscal_document_attribute":3449555941,"ofd_receipt_url":"https://ofd.example/1"}})";

class CloudDriver : public testing::Test
{
protected:
    AtolOnlineSettings* filledSettings()
    {
        settings.setDeviceId(7);
        settings.setUrl(u"https://service.example/v4/"_s);
        settings.setGroupCode(u"g"_s);
        settings.setRequestInterval(200);
        return &settings;
    }

    void collect(const QString& contact = u"buyer@example.com"_s)
    {
        driver.checkOpen(document);
        driver.setRequisite(FdRequisite(EFrDriver::BuyerContact, contact));
        driver.setRequisite(FdRequisite(EFrDriver::AppliedTaxSystem, 1));
        driver.checkAddPosition(FrPosition());
        driver.checkPay(FrPayment(1, 160.5));
        log.take();
    }

    void answers(std::initializer_list<const char*> bodies)
    {
        for (const char* body : bodies)
            transport.answer(body);
    }

    QJsonObject sentReceipt() const
    {
        return transport.requests().last().json().value(u"receipt"_s).toObject();
    }

    LogCapture log;
    ScriptedTransport transport;
    AtolOnlineSettings settings;
    SleeplessDriver driver{filledSettings()};
    const FiscalDocument document{0, u"till-7-000123"_s};
};

const QStringList polling{u"GET https://service.example/v4/g/report/u-1"_s};
const QString selling = u"POST https://service.example/v4/g/sell"_s;
const QString asking = u"POST https://service.example/v4/getToken"_s;

TEST_F(CloudDriver, DescribesItsDeviceAndLogsUnderItsNumber)
{
    EXPECT_EQ(driver.getDeviceInfo().getProducerCode(), u"4"_s);
    EXPECT_EQ(driver.getDeviceInfo().getModelCode(), u"1"_s);
    EXPECT_EQ(driver.getDeviceInfo().getModelName(), u"Атол Онлайн"_s);
    EXPECT_EQ(driver.getDeviceInfo().getLoggerName(), u"atolonline_7"_s);
    EXPECT_EQ(driver.getDeviceSettings(), &settings);
    answers({token});
    driver.connect();
    EXPECT_EQ(log.categories(), QStringList{u"frdriver.atolonline_7"_s});
}

TEST_F(CloudDriver, SetsItsOptionsUnlessTheSettingsSayOtherwise)
{
    const auto options = [](const AbstractFrDriver& subject) {
        QList<quint64> on;
        for (int bit = 0; bit < 64; ++bit) {
            if (subject.checkOption(Option(quint64(1) << bit)))
                on << (quint64(1) << bit);
        }
        return on;
    };
    EXPECT_EQ(options(driver), (QList<quint64>{0x4, 0x10, 0x2000000, 0x2000000000}));
    settings.setDriverOption(Option::Bit19, true);
    settings.setDriverOption(Option::UseFn, false);
    EXPECT_EQ(
        options(AtolOnlineFRDriver(&settings)), (QList<quint64>{0x4, 0x80000, 0x2000000, 0x2000000000}));
}

TEST_F(CloudDriver, ConnectsByObtainingATokenOnce)
{
    answers({token});
    driver.connect();
    driver.connect();
    EXPECT_EQ(transport.requestLines(), QStringList{asking});
    EXPECT_EQ(log.lines(), QStringList{u"debug: Получение токена"_s});
}

TEST_F(CloudDriver, LogsTheTypeOfADocumentAndRefusesAllButSales)
{
    const char* names[] = {"возврата продажи", "аннулирования продажи", "аннулирования возврата", "покупки",
        "возврата покупки", "аннулирования покупки", "внесения", "выема", "коррекции продажи",
        "коррекции возврата", "нефискального", "неизвестного типа чека"};
    const auto refusal = [&](int type, const char* name) {
        log.take();
        EXPECT_THROW(driver.checkOpen(FiscalDocument(type, QString())), FrCommandException);
        EXPECT_EQ(log.lines(), QStringList{u"info: Открытие чека "_s + QString::fromUtf8(name)});
    };
    for (int type = 1; type <= 12; ++type)
        refusal(type, names[type - 1]);
    refusal(42, "неизвестного типа чека");
    refusal(-1, "неизвестного типа чека");
    EXPECT_EQ(outcomeOf([&] { driver.checkOpen(FiscalDocument(1, QString())); }),
        u"FrCommandException: Тип чека не поддерживается ФР"_s);
    log.take();
    driver.checkOpen(document);
    EXPECT_EQ(log.lines(), QStringList{u"info: Открытие чека продажи"_s});
}

TEST_F(CloudDriver, KeepsItsReceiptWhenAnotherTypeIsRefused)
{
    collect();
    EXPECT_THROW(driver.checkOpen(FiscalDocument(1, QString())), FrCommandException);
    answers({accepted});
    driver.documentClose(document);
    EXPECT_EQ(sentReceipt().value(u"items"_s).toArray().size(), 1);
}

TEST_F(CloudDriver, LogsEveryRequisiteAndKeepsContactAndTaxationSystem)
{
    driver.checkOpen(document);
    log.take();
    driver.setRequisite(FdRequisite(EFrDriver::AppliedTaxSystem, 2));
    driver.setRequisite(FdRequisite(EFrDriver::BuyerContact, u"buyer@example.com"_s));
    driver.setRequisite(FdRequisite(EFrDriver::AdditionalReceiptRequisite, u"x"_s));
    EXPECT_EQ(
        log.take(), (QStringList{u"info: Запись реквизита 1055 (применяемая система налогообложения) в ФР"_s,
                        u"debug: Установка системы налогообложения для чека: Упрощенная (доход)"_s,
                        u"info: Запись реквизита 1008 (телефон или электронный адрес покупателя) в ФР"_s,
                        u"debug: Установка адреса покупателя: buyer@example.com"_s,
                        u"info: Запись реквизита 1192 (дополнительный реквизит чека) в ФР"_s}));
    answers({accepted});
    driver.documentClose(document);
    EXPECT_EQ(QJsonDocument(sentReceipt()).toJson(QJsonDocument::Compact),
        R"({"client":{"email":"buyer@example.com"},"company":{"email":"","inn":"","payment_address":"",)"
        R"("sno":"usn_income"},"items":[],"payments":[{"sum":0,"type":0}],"total":0})");
}

TEST_F(CloudDriver, KeepsTheLastRequisiteOfATag)
{
    collect(u"first@example.com"_s);
    driver.setRequisite(FdRequisite(EFrDriver::BuyerContact, u"second@example.com"_s));
    answers({accepted});
    driver.documentClose(document);
    EXPECT_EQ(sentReceipt().value(u"client"_s), (QJsonObject{{u"email"_s, u"second@example.com"_s}}));
}

TEST_F(CloudDriver, ForgetsRequisitesSetBeforeOpening)
{
    driver.setRequisite(FdRequisite(EFrDriver::BuyerContact, u"buyer@example.com"_s));
    driver.checkOpen(document);
    EXPECT_EQ(outcomeOf([&] { driver.checkClose(document); }),
        u"FrWorkWithServiceException: Требуется телефон или электронный адрес покупателя"_s);
}

TEST_F(CloudDriver, RecognisesAnEMailAddressByTheAtSign)
{
    const std::pair<const char*, const char*> rows[] = {
        {"a@b", "email"}, {"@", "email"}, {"+79990000000", "phone"}, {"", "phone"}};
    for (const auto& [contact, key] : rows) {
        collect(QString::fromLatin1(contact));
        answers({accepted});
        driver.documentClose(document);
        EXPECT_EQ(sentReceipt().value(u"client"_s).toObject().keys(), QStringList{QString::fromLatin1(key)});
    }
}

TEST_F(CloudDriver, LogsAPositionWithItsPlaceholdersUntouched)
{
    driver.checkOpen(document);
    log.take();
    FrPosition position;
    position.setName(u"%2"_s);
    driver.checkAddPosition(position);
    EXPECT_EQ(log.lines(), QStringList{u"info: Добавление позиции в чек: %2, цена 0.00, "
                                       u"количество 0.000, сумма 0.00, скидка 0.00, налог 5"_s});
}

TEST_F(CloudDriver, AddsUpPaymentsOfOneType)
{
    driver.checkOpen(document);
    log.take();
    driver.checkPay(FrPayment(0, 100.5));
    driver.checkPay(FrPayment(0, 50));
    EXPECT_EQ(log.lines(), (QStringList{u"info: Добавление оплаты: тип 0, сумма 100.50"_s,
                               u"info: Добавление оплаты: тип 0, сумма 50.00"_s}));
    driver.setRequisite(FdRequisite(EFrDriver::BuyerContact, u"a@b"_s));
    answers({accepted});
    driver.documentClose(document);
    EXPECT_EQ(QJsonDocument(sentReceipt().value(u"payments"_s).toArray()).toJson(QJsonDocument::Compact),
        R"([{"sum":150.5,"type":0}])");
}

TEST_F(CloudDriver, ClosesASaleWithTheseRequestsAndLogLines)
{
    answers({token});
    driver.connect();
    collect();
    answers({accepted, waiting, waiting, waiting, done});
    EXPECT_EQ(driver.checkClose(document), QJsonObject());
    EXPECT_EQ(
        transport.requestLines(), QStringList({asking, selling}) + polling + polling + polling + polling);
    EXPECT_EQ(driver.sleeps, (QList<int>{200, 200, 200, 200}));
    const QString asked = u"info: Получение статуса документа по uuid: u-1"_s;
    const QString code34 = u"error: Ответ от сервера содержит ошибку. Код 34, идентификатор e (t)"_s;
    const QString inProgress = u"debug: Документ еще не обработан"_s;
    EXPECT_EQ(log.lines(),
        (QStringList{u"info: Закрытие чека продажи"_s,
            u"info: Установка идентификатора документа till-7-000123"_s, u"info: Чек отправлен, UUID: u-1"_s,
            u"debug: Ожидание перехода документа в статус done или fail"_s, asked, code34, inProgress, asked,
            code34, inProgress, asked, code34, inProgress, asked,
            u"info: Просмотр чека на сайте ОФД: https://ofd.example/1"_s}));
}

TEST_F(CloudDriver, ReportsTheFiscalResultOfAClosedReceipt)
{
    collect();
    answers({accepted, done});
    driver.checkClose(document);
    const FiscalInfo info = driver.getFiscalInfo(0, false);
    EXPECT_EQ(info.fnNumber, u"0000440300046840"_s);
    EXPECT_EQ(info.registrationNumber, u"0000111118041361"_s);
    EXPECT_EQ(info.shiftNumber, u"17"_s);
    EXPECT_EQ(info.fiscalDocumentNumber, 123);
    EXPECT_EQ(info.fiscalSign, u"3449555941"_s);
    EXPECT_EQ(info.total, 160.5);
    EXPECT_EQ(info.dateTime, QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9)));
    EXPECT_EQ(info.taxSystem, u"Общая"_s);
    EXPECT_EQ(driver.getLastResponse().value(u"status"_s).toString(), u"done"_s);
}

TEST_F(CloudDriver, ClearsTheFiscalResultWhereKeysAreMissing)
{
    collect();
    answers({accepted, done});
    driver.checkClose(document);
    answers({accepted, R"({"status":"fail","payload":null})"});
    driver.checkClose(document);
    const FiscalInfo info = driver.getFiscalInfo(5, true);
    EXPECT_EQ(info.fnNumber + info.registrationNumber + info.shiftNumber + info.fiscalSign, QString());
    EXPECT_EQ(info.fiscalDocumentNumber, 0);
    EXPECT_EQ(info.total, 0.0);
    EXPECT_FALSE(info.dateTime.isValid());
    EXPECT_EQ(info.taxSystem, u"Общая"_s);
}

TEST_F(CloudDriver, ReadsNumbersFromTextAndIgnoresOtherDateFormats)
{
    collect();
    answers({accepted,
        R"({"status":"done","payload":{"fiscal_document_number":"123","receipt_datetime":"2024-03-05T14:07:09"}})"});
    driver.checkClose(document);
    EXPECT_EQ(driver.getFiscalInfo(0, false).fiscalDocumentNumber, 123);
    EXPECT_FALSE(driver.getFiscalInfo(0, false).dateTime.isValid());
}

TEST_F(CloudDriver, LeavesTheTaxationSystemEmptyWithoutItsRequisite)
{
    driver.checkOpen(document);
    driver.setRequisite(FdRequisite(EFrDriver::BuyerContact, u"a@b"_s));
    answers({accepted, done});
    driver.checkClose(document);
    EXPECT_EQ(driver.getFiscalInfo(0, false).taxSystem, QString());
}

TEST_F(CloudDriver, ForgetsThePreviousResultAndAnswerWhenAReceiptOpens)
{
    collect();
    answers({accepted, done});
    driver.checkClose(document);
    driver.checkOpen(document);
    EXPECT_EQ(driver.getFiscalInfo(0, false).fnNumber, QString());
    EXPECT_EQ(driver.getLastResponse(), QJsonObject());
}

TEST_F(CloudDriver, SendsNothingWithoutABuyersContact)
{
    driver.checkOpen(document);
    log.take();
    EXPECT_THROW(driver.checkClose(document), FrWorkWithServiceException);
    EXPECT_THROW(driver.documentClose(document), FrWorkWithServiceException);
    EXPECT_EQ(transport.requestLines(), QStringList());
    EXPECT_EQ(log.lines(), (QStringList{u"info: Закрытие чека продажи"_s, u"info: Закрытие чека"_s}));
}

TEST_F(CloudDriver, RenewsExpiredTokensUntilTheReceiptIsAccepted)
{
    collect();
    answers({expired, token, expired, token, accepted, done});
    driver.checkClose(document);
    EXPECT_EQ(transport.requestLines(), QStringList({selling, asking, selling, asking, selling}) + polling);
    const QStringList once{
        u"info: Закрытие чека продажи"_s, u"info: Установка идентификатора документа till-7-000123"_s};
    const QStringList renewal{u"error: Ответ от сервера содержит ошибку. Код 11, идентификатор e (t)"_s,
        u"warn: Срок действия токена истёк. Получаем новый токен"_s, u"debug: Получение токена"_s};
    EXPECT_EQ(log.lines().mid(0, 12), once + renewal + once + renewal + once);
}

TEST_F(CloudDriver, RepeatsAReceiptUnderTheSameIdentifier)
{
    collect();
    answers({expired, token, accepted, done});
    driver.checkClose(document);
    QStringList ids;
    for (const auto& request : transport.requests()) {
        if (request.url.endsWith(u"/sell"_s))
            ids << request.json().value(u"external_id"_s).toString();
    }
    EXPECT_EQ(ids, (QStringList{u"till-7-000123"_s, u"till-7-000123"_s}));
}

TEST_F(CloudDriver, SurvivesThousandsOfExpiredTokensInARow)
{
    collect();
    for (int i = 0; i < 5000; ++i)
        answers({expired, token});
    answers({accepted, done});
    driver.checkClose(document);
    EXPECT_EQ(driver.getFiscalInfo(0, false).fiscalDocumentNumber, 123);
}

TEST_F(CloudDriver, PassesOnATokenExpiryWhilePolling)
{
    collect();
    answers({accepted, waiting, expired});
    EXPECT_THROW(driver.checkClose(document), atolonline::TokenExpired);
    EXPECT_EQ(transport.requestLines(), QStringList{selling} + polling + polling);
}

TEST_F(CloudDriver, PassesOnEveryOtherFailureAndRepeatsNothing)
{
    const std::pair<const char*, const char*> rows[] = {
        {R"({"error":{"code":32,"text":"t"}})", "FrWorkWithServiceException: Некорректные данные в запросе"},
        {exists, "atolonline::DocumentExists: Документ с переданным идентификатором уже существует"},
        {R"({"error":{"code":50,"text":"t"}})", "FrNoConnectionException: Нет связи с ФР"},
        {"", "FrWorkWithServiceException: Нет связи с ФР"},
    };
    for (const auto& [answer, message] : rows) {
        collect();
        const auto before = transport.requests().size();
        transport.answer(answer);
        EXPECT_EQ(outcomeOf([&] { driver.checkClose(document); }), QString::fromUtf8(message));
        EXPECT_EQ(transport.requests().size(), before + 1);
    }
}

TEST_F(CloudDriver, StopsWaitingAtAnUnknownStatus)
{
    collect();
    answers({accepted, R"({"status":"queued"})"});
    EXPECT_EQ(driver.checkClose(document), QJsonObject());
    EXPECT_EQ(driver.sleeps.size(), 1);
}

TEST_F(CloudDriver, SendsTheSameReceiptAgainAfterAFailedClose)
{
    collect();
    transport.dropAnswer();
    EXPECT_THROW(driver.checkClose(document), FrWorkWithServiceException);
    const QJsonObject first = sentReceipt();
    answers({accepted, done});
    driver.checkClose(document);
    EXPECT_EQ(transport.requests().at(1).json().value(u"receipt"_s).toObject(), first);
}

TEST_F(CloudDriver, ClosesADocumentWithoutWaiting)
{
    collect();
    answers({accepted});
    EXPECT_EQ(driver.documentClose(document), u"u-1"_s);
    EXPECT_EQ(transport.requestLines(), QStringList{selling});
    EXPECT_EQ(driver.sleeps, QList<int>());
    EXPECT_EQ(driver.getFiscalInfo(0, false).fnNumber, QString());
    EXPECT_EQ(log.lines(),
        (QStringList{u"info: Закрытие чека"_s, u"info: Установка идентификатора документа till-7-000123"_s}));
}

TEST_F(CloudDriver, ReturnsTheUuidOfAnExistingDocument)
{
    collect();
    answers({exists});
    EXPECT_EQ(driver.documentClose(document), u"u-0"_s);
    answers({R"({"error":{"code":33,"text":"t"}})"});
    EXPECT_EQ(driver.documentClose(document), QString());
}

TEST_F(CloudDriver, RenewsATokenWithoutAWarningWhenNotWaiting)
{
    collect();
    answers({expired, token, accepted});
    EXPECT_EQ(driver.documentClose(document), u"u-1"_s);
    EXPECT_EQ(log.lines().filter(u"Получаем новый токен"_s), QStringList());
    EXPECT_EQ(log.lines().filter(u"Закрытие чека"_s).size(), 2);
}

TEST_F(CloudDriver, ReturnsTheWholeAnswerAboutADocument)
{
    answers({expired, token, waiting, done});
    EXPECT_EQ(driver.getDocumentInfo(u"u-1"_s).value(u"status"_s).toString(), u"wait"_s);
    EXPECT_EQ(driver.getDocumentInfo(u"u-1"_s).value(u"status"_s).toString(), u"done"_s);
    EXPECT_EQ(transport.requestLines(), polling + QStringList{asking} + polling + polling);
    EXPECT_EQ(log.lines().filter(u"info: Получение информации о документе"_s).size(), 3);
    EXPECT_EQ(driver.getFiscalInfo(0, false).fnNumber, QString());
}

TEST_F(CloudDriver, IsTheSameObjectThroughBothInterfaces)
{
    AbstractFrDriver* base = &driver;
    auto* cloud = dynamic_cast<VposFrDriver*>(base);
    ASSERT_NE(cloud, nullptr);
    collect();
    answers({accepted});
    EXPECT_EQ(cloud->documentClose(document), u"u-1"_s);
    EXPECT_EQ(cloud->getLastResponse(), driver.getLastResponse());
}

} // namespace
