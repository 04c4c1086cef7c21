#include "atolonline/commandprocessor.h"

#include "atolonline/exceptions.h"
#include "host/log/log4qt.h"
#include "plugin/atolonlinesettings.h"
#include "tests/support/logcapture.h"
#include "tests/support/outcome.h"
#include "tests/support/scriptedtransport.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <cstddef>
#include <tuple>
#include <utility>

#include <malloc.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using atolonline::CommandProcessor;

constexpr auto good = R"({"error":null,"token":"T1","timestamp":"30.11.2017 17:58:53"})";
constexpr auto accepted = R"({"uuid":"u-1","status":"wait","error":null})";

QByteArray refusal(int code)
{
    return R"({"error":{"code":)" + QByteArray::number(code) + R"(,"error_id":"e","text":"t"}})";
}

class Service : public testing::Test
{
protected:
    Service()
    {
        settings.setUrl(u"https://service.example/possystem/v4/"_s);
        settings.setLogin(u"login"_s);
        settings.setPassword(u"pass"_s);
        settings.setGroupCode(u"group-1"_s);
        settings.setCompanyEmail(u"shop@example.com"_s);
        settings.setCompanyInn(u"7700000000"_s);
        settings.setPaymentAddress(u"Москва"_s);
        processor.setSettings(&settings);
    }

    QString sell() { return processor.sell({}, {}, {}); }

    QJsonObject receiptSentWith(const FdRequisite::Map& requisites)
    {
        transport.answer(accepted);
        processor.sell({}, {}, requisites);
        return transport.requests().last().json().value(u"receipt"_s).toObject();
    }

    static FdRequisite::Map taxSystem(const QVariant& value)
    {
        return {{EFrDriver::AppliedTaxSystem, FdRequisite(EFrDriver::AppliedTaxSystem, value)}};
    }

    AtolOnlineSettings settings;
    LogCapture log;
    ScriptedTransport transport;
    CommandProcessor processor{Log4Qt::LogManager::logger(u"frdriver"_s, u"test"_s)};
};

using Token = Service;
using Sell = Service;
using Status = Service;
using Reply = Service;

TEST_F(Token, IsRequestedWithLoginPasswordAndTheContentHeader)
{
    transport.answer(good);
    processor.requestToken(false);
    ASSERT_EQ(transport.requestLines(), QStringList{u"POST https://service.example/possystem/v4/getToken"_s});
    EXPECT_EQ(transport.requests().first().body, R"({"login":"login","pass":"pass"})");
    EXPECT_EQ(transport.requests().first().headers,
        (RestClient::Headers{{u"Content-type"_s, u"application/json; charset=utf-8"_s}}));
    EXPECT_EQ(log.lines(), QStringList{u"debug: Получение токена"_s});
}

TEST_F(Token, IsSentAsAHeaderOfEveryLaterRequest)
{
    transport.answer(good);
    transport.answer(accepted);
    processor.requestToken(false);
    EXPECT_EQ(sell(), u"u-1"_s);
    EXPECT_EQ(transport.requests().last().headers.value(u"token"_s), u"T1"_s);
    EXPECT_FALSE(transport.requests().last().url.contains(u"T1"_s));
}

TEST_F(Token, IsRequestedOnceUnlessForced)
{
    transport.answer(good);
    processor.requestToken(false);
    log.take();
    processor.requestToken(false);
    EXPECT_EQ(transport.requests().size(), 1);
    EXPECT_EQ(log.lines(), QStringList());

    transport.answer(R"({"token":"T2"})");
    processor.requestToken(true);
    EXPECT_EQ(transport.requests().last().headers.value(u"token"_s), u"T1"_s);
    transport.answer(accepted);
    sell();
    EXPECT_EQ(transport.requests().last().headers.value(u"token"_s), u"T2"_s);
}

TEST_F(Token, IsEmptyButPresentWhenTheReplyLacksIt)
{
    transport.answer(R"({"timestamp":"x"})");
    processor.requestToken(false);
    processor.requestToken(false);
    transport.answer(accepted);
    sell();
    EXPECT_EQ(transport.requests().size(), 2);
    EXPECT_TRUE(transport.requests().last().headers.contains(u"token"_s));
    EXPECT_EQ(transport.requests().last().headers.value(u"token"_s), QString());
}

TEST_F(Token, IsNotSentAfterARefusal)
{
    transport.answer(refusal(12));
    EXPECT_EQ(outcomeOf([&] { processor.requestToken(false); }),
        u"FrWorkWithServiceException: Неверный логин или пароль"_s);
    transport.answer(accepted);
    sell();
    EXPECT_FALSE(transport.requests().last().headers.contains(u"token"_s));
}

TEST_F(Token, IsRequestedFromTheAddressWithGetTokenAppended)
{
    settings.setUrl(u"https://service.example/v4"_s);
    transport.answer(good);
    processor.requestToken(false);
    EXPECT_EQ(transport.requests().last().url, u"https://service.example/v4getToken"_s);
}

TEST_F(Token, IsRequestedWithTheCurrentLoginWhileReceiptsKeepTheCompany)
{
    settings.setLogin(u"other"_s);
    settings.setCompanyInn(u"5000000000"_s);
    transport.answer(good);
    processor.requestToken(false);
    EXPECT_EQ(transport.requests().last().body, R"({"login":"other","pass":"pass"})");
    const QJsonObject company = receiptSentWith({}).value(u"company"_s).toObject();
    EXPECT_EQ(company.value(u"inn"_s).toString(), u"7700000000"_s);
}

TEST(SubstitutedTransport, OutlivesTheProcessor)
{
    ScriptedTransport transport;
    transport.answer(accepted);
    {
        const CommandProcessor processor(Log4Qt::LogManager::logger(u"frdriver"_s, QString()));
    }
    EXPECT_TRUE(transport.get(QUrl(u"http://x/"_s), {}, {}));
}

TEST_F(Sell, PostsTheEnvelopeToTheGroup)
{
    transport.answer(accepted);
    processor.setClientEmail(u"buyer@example.com"_s);
    processor.setInternalDocumentId(u"till-7-000123"_s);
    const QDateTime before = QDateTime::currentDateTime();
    EXPECT_EQ(processor.sell({}, {{1, 160.0}}, taxSystem(4)), u"u-1"_s);
    const QDateTime after = QDateTime::currentDateTime();

    EXPECT_EQ(
        transport.requestLines(), QStringList{u"POST https://service.example/possystem/v4/group-1/sell"_s});
    QJsonObject body = transport.requests().last().json();
    const QString timestamp = body.take(u"timestamp"_s).toString();
    EXPECT_EQ(QJsonDocument(body).toJson(QJsonDocument::Compact),
        R"({"external_id":"till-7-000123","receipt":{"client":{"email":"buyer@example.com"},)"
        R"("company":{"email":"shop@example.com","inn":"7700000000","payment_address":"Москва",)"
        R"("sno":"usn_income_outcome"},"items":[],"payments":[{"sum":160,"type":1}],"total":160}})");
    const QDateTime sent = QDateTime::fromString(timestamp, u"dd.MM.yyyy hh:mm:ss"_s);
    EXPECT_TRUE(sent.isValid() && sent >= before.addSecs(-1) && sent <= after) << timestamp.toStdString();
    EXPECT_EQ(log.lines(), QStringList{u"info: Установка идентификатора документа till-7-000123"_s});
}

TEST_F(Sell, ForgetsTheTaxationSystemOfAnEarlierReceipt)
{
    const auto company = [&](const FdRequisite::Map& requisites) {
        return receiptSentWith(requisites).value(u"company"_s).toObject();
    };
    EXPECT_EQ(company(taxSystem(1)).value(u"sno"_s).toString(), u"osn"_s);
    EXPECT_FALSE(company({}).contains(u"sno"_s));
}

TEST_F(Sell, OmitsTaxationSystemZero)
{
    const QJsonObject company = receiptSentWith(taxSystem(0)).value(u"company"_s).toObject();
    EXPECT_FALSE(company.contains(u"sno"_s));
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// The sanitizers replace the allocator whose statistics are read here.
TEST_F(Sell, LeaksNoMemoryOverThousandsOfReceipts)
{
    const auto used = [] {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    const auto compose = [this](int count) {
        for (int i = 0; i < count; ++i)
            std::ignore = processor.createReceipt({}, {}, taxSystem(1));
    };
    compose(100);
    const std::size_t before = used();
    compose(5000);
    EXPECT_EQ(used(), before);
}
#endif

TEST_F(Sell, SendsTheContactThatWasSetLast)
{
    processor.setClientPhone(u"+79990000000"_s);
    processor.setClientEmail(u"buyer@example.com"_s);
    EXPECT_EQ(receiptSentWith({}).value(u"client"_s).toObject(),
        (QJsonObject{{u"email"_s, u"buyer@example.com"_s}}));
    processor.setClientPhone(u"+79990000000"_s);
    EXPECT_EQ(
        receiptSentWith({}).value(u"client"_s).toObject(), (QJsonObject{{u"phone"_s, u"+79990000000"_s}}));
    EXPECT_EQ(
        receiptSentWith({}).value(u"client"_s).toObject(), (QJsonObject{{u"phone"_s, u"+79990000000"_s}}));
}

TEST_F(Sell, ReturnsEmptyTextWhenTheReplyHasNoUuid)
{
    transport.answer(R"({"status":"wait"})");
    EXPECT_EQ(sell(), QString());
}

TEST_F(Sell, ForgetsThePreviousDocumentBeforeItSends)
{
    transport.answer(R"({"status":"done","payload":{"total":1}})");
    processor.getDocumentStatus(u"u"_s);
    transport.dropAnswer();
    EXPECT_EQ(outcomeOf([&] { sell(); }), u"FrWorkWithServiceException: Нет связи с ФР"_s);
    EXPECT_EQ(processor.getLastResponse(), QJsonObject());
    EXPECT_EQ(processor.getLastDocumentFiscalInfo(), QVariantMap());
}

TEST_F(Sell, PostsOnceWhateverTheServiceAnswers)
{
    for (const int code : {0, 1, 11, 33, 34, 50}) {
        const auto before = transport.requests().size();
        transport.answer(refusal(code));
        EXPECT_THROW(sell(), BasicException);
        EXPECT_EQ(transport.requests().size(), before + 1) << code;
    }
}

TEST_F(Status, IsRequestedByUuidWithoutABody)
{
    transport.answer(R"({"status":"wait"})");
    EXPECT_EQ(processor.getDocumentStatus(u"u-1"_s), atolonline::Wait);
    EXPECT_EQ(transport.requestLines(),
        QStringList{u"GET https://service.example/possystem/v4/group-1/report/u-1"_s});
    EXPECT_EQ(transport.requests().last().body, QByteArray());
    EXPECT_EQ(log.lines(), QStringList{u"info: Получение статуса документа по uuid: u-1"_s});
}

TEST(StatusText, IsMatchedExactly)
{
    const std::pair<const char*, int> rows[] = {
        {"wait", 1}, {"done", 2}, {"fail", 3}, {"DONE", 0}, {"Wait", 0}, {" done", 0}, {"", 0}};
    for (const auto& [status, code] : rows)
        EXPECT_EQ(CommandProcessor::getStatusFromString(QString::fromLatin1(status)), code) << status;
}

TEST_F(Status, KeepsThePayloadOfADoneDocument)
{
    transport.answer(R"({"status":"done","payload":{"fiscal_document_attribute":3449555941}})");
    EXPECT_EQ(processor.getDocumentStatus(u"u"_s), atolonline::Done);
    EXPECT_EQ(processor.getLastDocumentFiscalInfo().value(u"fiscal_document_attribute"_s).toString(),
        u"3449555941"_s);
}

TEST_F(Status, ClearsThePayloadWhenTheReplyHasNone)
{
    transport.answer(R"({"status":"done","payload":{"total":1}})");
    processor.getDocumentStatus(u"u"_s);
    transport.answer(R"({"status":"fail","payload":null})");
    EXPECT_EQ(processor.getDocumentStatus(u"u"_s), atolonline::Fail);
    EXPECT_EQ(processor.getLastDocumentFiscalInfo(), QVariantMap());
}

TEST_F(Status, IsWaitAfterCode34AndKeepsThePayload)
{
    transport.answer(R"({"status":"done","payload":{"total":1}})");
    processor.getDocumentStatus(u"u"_s);
    log.take();
    transport.answer(R"({"status":"wait","error":{"code":34,"error_id":"e","text":"t"}})");
    EXPECT_EQ(processor.getDocumentStatus(u"u"_s), atolonline::Wait);
    EXPECT_EQ(processor.getLastDocumentFiscalInfo(), (QVariantMap{{u"total"_s, 1}}));
    EXPECT_EQ(log.lines(), (QStringList{u"info: Получение статуса документа по uuid: u"_s,
                               u"error: Ответ от сервера содержит ошибку. Код 34, идентификатор e (t)"_s,
                               u"debug: Документ еще не обработан"_s}));
}

TEST_F(Status, ThrowsAfterOtherErrors)
{
    transport.answer(refusal(30));
    EXPECT_THROW(processor.getDocumentStatus(u"u"_s), FrDriverException);
    transport.answer(refusal(11));
    EXPECT_THROW(processor.getDocumentStatus(u"u"_s), atolonline::TokenExpired);
}

TEST_F(Reply, IsNoConnectionWhenEmptyAndLeavesThePreviousOne)
{
    transport.answer(R"({"status":"wait","n":1})");
    processor.getDocumentStatus(u"u"_s);
    for (const char* empty : {"", "[]", "{}", "[1]", "17", "null"}) {
        transport.answer(empty);
        EXPECT_EQ(outcomeOf([&] { processor.getDocumentStatus(u"u"_s); }),
            u"FrWorkWithServiceException: Нет связи с ФР"_s)
            << empty;
        EXPECT_THROW((transport.dropAnswer(), processor.requestToken(true)), FrWorkWithServiceException);
    }
    EXPECT_EQ(processor.getLastResponse().value(u"n"_s).toInt(), 1);
}

TEST_F(Reply, IsKeptForTheHostEvenWithAnError)
{
    transport.answer(refusal(32));
    EXPECT_THROW(sell(), FrWorkWithServiceException);
    EXPECT_EQ(QJsonDocument(processor.getLastResponse()).toJson(QJsonDocument::Compact), refusal(32));
}

TEST_F(Reply, KeepsIntegersExact)
{
    transport.answer(R"({"status":"done","payload":{"a":9007199254740993,"b":0.1,"c":42949672.95}})");
    processor.getDocumentStatus(u"u"_s);
    EXPECT_EQ(QJsonDocument(processor.getLastResponse()).toJson(QJsonDocument::Compact),
        R"({"payload":{"a":9007199254740993,"b":0.1,"c":42949672.95},"status":"done"})");
}

TEST_F(Reply, HasItsReceiptLinkLoggedWhateverTheRequest)
{
    const QString link = u"info: Просмотр чека на сайте ОФД: https://ofd.example/1"_s;
    constexpr auto body = R"({"token":"T","uuid":"u","payload":{"ofd_receipt_url":"https://ofd.example/1"}})";
    transport.answer(body);
    processor.requestToken(true);
    transport.answer(body);
    sell();
    transport.answer(body);
    processor.getDocumentStatus(u"u"_s);
    EXPECT_EQ(log.lines().filter(link).size(), 3);
}

TEST_F(Reply, IsKeptWholeUntilItIsCleared)
{
    transport.answer(R"({"token":"T","timestamp":"x"})");
    processor.requestToken(true);
    EXPECT_EQ(processor.getLastResponse().value(u"timestamp"_s).toString(), u"x"_s);
    processor.clearLastResponse();
    EXPECT_EQ(processor.getLastResponse(), QJsonObject());
}

} // namespace
