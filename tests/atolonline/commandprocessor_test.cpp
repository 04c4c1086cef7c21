#include "atolonline/commandprocessor.h"

#include "atolonline/exceptions.h"
#include "plugin/atolonlinesettings.h"
#include "tests/support/logcapture.h"
#include "tests/support/scriptedtransport.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <tuple>
#include <utility>

#include <malloc.h>

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
        settings.setUrl(QStringLiteral("https://service.example/possystem/v4/"));
        settings.setLogin(QStringLiteral("login"));
        settings.setPassword(QStringLiteral("pass"));
        settings.setGroupCode(QStringLiteral("group-1"));
        settings.setCompanyEmail(QStringLiteral("shop@example.com"));
        settings.setCompanyInn(QStringLiteral("7700000000"));
        settings.setPaymentAddress(QStringLiteral("Москва"));
        processor.setSettings(&settings);
    }

    QString sell() { return processor.sell({}, {}, {}); }

    QJsonObject receiptSentWith(const FdRequisite::Map& requisites)
    {
        transport.answer(accepted);
        processor.sell({}, {}, requisites);
        return transport.requests().last().json().value(QStringLiteral("receipt")).toObject();
    }

    static FdRequisite::Map taxSystem(const QVariant& value)
    {
        return {{EFrDriver::AppliedTaxSystem, FdRequisite(EFrDriver::AppliedTaxSystem, value)}};
    }

    QString failureOf(const std::function<void()>& call)
    {
        try {
            call();
        } catch (const BasicException& e) {
            return e.tr().ru();
        }
        return QStringLiteral("no failure");
    }

    AtolOnlineSettings settings;
    LogCapture log;
    ScriptedTransport transport;
    CommandProcessor processor{
        Log4Qt::LogManager::logger(QStringLiteral("frdriver"), QStringLiteral("test"))};
};

using Token = Service;
using Sell = Service;
using Status = Service;
using Reply = Service;

TEST_F(Token, IsAskedForWithLoginAndPasswordAndTheContentHeaderAlone)
{
    transport.answer(good);
    processor.requestToken(false);
    ASSERT_EQ(transport.requestLines(),
        QStringList{QStringLiteral("POST https://service.example/possystem/v4/getToken")});
    EXPECT_EQ(transport.requests().first().body, R"({"login":"login","pass":"pass"})");
    EXPECT_EQ(transport.requests().first().headers, (RestClient::Headers{{QStringLiteral("Content-type"),
                                                        QStringLiteral("application/json; charset=utf-8")}}));
    EXPECT_EQ(log.lines(), QStringList{QStringLiteral("debug: Получение токена")});
}

TEST_F(Token, TravelsAsAHeaderWithEveryLaterRequest)
{
    transport.answer(good);
    transport.answer(accepted);
    processor.requestToken(false);
    EXPECT_EQ(sell(), QStringLiteral("u-1"));
    EXPECT_EQ(transport.requests().last().headers.value(QStringLiteral("token")), QStringLiteral("T1"));
    EXPECT_FALSE(transport.requests().last().url.contains(QStringLiteral("T1")));
}

TEST_F(Token, IsAskedForOnceUnlessForced)
{
    transport.answer(good);
    processor.requestToken(false);
    log.take();
    processor.requestToken(false);
    EXPECT_EQ(transport.requests().size(), 1);
    EXPECT_EQ(log.lines(), QStringList());

    transport.answer(R"({"token":"T2"})");
    processor.requestToken(true);
    EXPECT_EQ(transport.requests().last().headers.value(QStringLiteral("token")), QStringLiteral("T1"));
    transport.answer(accepted);
    sell();
    EXPECT_EQ(transport.requests().last().headers.value(QStringLiteral("token")), QStringLiteral("T2"));
}

TEST_F(Token, MissingInTheReplyLeavesAnEmptyHeaderThatCountsAsHeld)
{
    transport.answer(R"({"timestamp":"x"})");
    processor.requestToken(false);
    processor.requestToken(false);
    transport.answer(accepted);
    sell();
    EXPECT_EQ(transport.requests().size(), 2);
    EXPECT_TRUE(transport.requests().last().headers.contains(QStringLiteral("token")));
    EXPECT_EQ(transport.requests().last().headers.value(QStringLiteral("token")), QString());
}

TEST_F(Token, RefusedLeavesTheHeadersAsTheyWere)
{
    transport.answer(refusal(12));
    EXPECT_EQ(failureOf([&] { processor.requestToken(false); }), QStringLiteral("Неверный логин или пароль"));
    transport.answer(accepted);
    sell();
    EXPECT_FALSE(transport.requests().last().headers.contains(QStringLiteral("token")));
}

TEST_F(Token, AddressIsJoinedAsItStands)
{
    settings.setUrl(QStringLiteral("https://service.example/v4"));
    transport.answer(good);
    processor.requestToken(false);
    EXPECT_EQ(transport.requests().last().url, QStringLiteral("https://service.example/v4getToken"));
}

TEST_F(Token, FollowsALaterChangeOfTheLoginButReceiptsKeepTheCompany)
{
    settings.setLogin(QStringLiteral("other"));
    settings.setCompanyInn(QStringLiteral("5000000000"));
    transport.answer(good);
    processor.requestToken(false);
    EXPECT_EQ(transport.requests().last().body, R"({"login":"other","pass":"pass"})");
    const QJsonObject company = receiptSentWith({}).value(QStringLiteral("company")).toObject();
    EXPECT_EQ(company.value(QStringLiteral("inn")).toString(), QStringLiteral("7700000000"));
}

TEST(Transport, ThatWasSubstitutedOutlivesTheProcessor)
{
    ScriptedTransport transport;
    transport.answer(accepted);
    {
        const CommandProcessor processor(Log4Qt::LogManager::logger(QStringLiteral("frdriver"), QString()));
    }
    EXPECT_TRUE(transport.get(QUrl(QStringLiteral("http://x/")), {}, {}));
}

TEST_F(Sell, PostsTheEnvelopeToTheGroup)
{
    transport.answer(accepted);
    processor.setClientEmail(QStringLiteral("buyer@example.com"));
    processor.setInternalDocumentId(QStringLiteral("till-7-000123"));
    const QDateTime before = QDateTime::currentDateTime();
    EXPECT_EQ(processor.sell({}, {{1, 160.0}}, taxSystem(4)), QStringLiteral("u-1"));
    const QDateTime after = QDateTime::currentDateTime();

    EXPECT_EQ(transport.requestLines(),
        QStringList{QStringLiteral("POST https://service.example/possystem/v4/group-1/sell")});
    QJsonObject body = transport.requests().last().json();
    const QString timestamp = body.take(QStringLiteral("timestamp")).toString();
    EXPECT_EQ(QJsonDocument(body).toJson(QJsonDocument::Compact),
        R"({"external_id":"till-7-000123","receipt":{"client":{"email":"buyer@example.com"},)"
        R"("company":{"email":"shop@example.com","inn":"7700000000","payment_address":"Москва",)"
        R"("sno":"usn_income_outcome"},"items":[],"payments":[{"sum":160,"type":1}],"total":160}})");
    const QDateTime sent = QDateTime::fromString(timestamp, QStringLiteral("dd.MM.yyyy hh:mm:ss"));
    EXPECT_TRUE(sent.isValid() && sent >= before.addSecs(-1) && sent <= after) << timestamp.toStdString();
    EXPECT_EQ(
        log.lines(), QStringList{QStringLiteral("info: Установка идентификатора документа till-7-000123")});
}

TEST_F(Sell, LeavesOutTheTaxationSystemOfAnEarlierReceipt)
{
    const auto company = [&](const FdRequisite::Map& requisites) {
        return receiptSentWith(requisites).value(QStringLiteral("company")).toObject();
    };
    EXPECT_EQ(company(taxSystem(1)).value(QStringLiteral("sno")).toString(), QStringLiteral("osn"));
    EXPECT_FALSE(company({}).contains(QStringLiteral("sno")));
}

TEST_F(Sell, TakesTaxationSystemZeroForNone)
{
    const QJsonObject company = receiptSentWith(taxSystem(0)).value(QStringLiteral("company")).toObject();
    EXPECT_FALSE(company.contains(QStringLiteral("sno")));
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// The sanitizers replace the allocator that is asked here.
TEST_F(Sell, TakesNoMoreMemoryAfterThousandsOfReceipts)
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

TEST_F(Sell, CarriesTheContactThatWasSetLast)
{
    processor.setClientPhone(QStringLiteral("+79990000000"));
    processor.setClientEmail(QStringLiteral("buyer@example.com"));
    EXPECT_EQ(receiptSentWith({}).value(QStringLiteral("client")).toObject(),
        (QJsonObject{{QStringLiteral("email"), QStringLiteral("buyer@example.com")}}));
    processor.setClientPhone(QStringLiteral("+79990000000"));
    EXPECT_EQ(receiptSentWith({}).value(QStringLiteral("client")).toObject(),
        (QJsonObject{{QStringLiteral("phone"), QStringLiteral("+79990000000")}}));
    EXPECT_EQ(receiptSentWith({}).value(QStringLiteral("client")).toObject(),
        (QJsonObject{{QStringLiteral("phone"), QStringLiteral("+79990000000")}}));
}

TEST_F(Sell, ReturnsEmptyTextWhenTheReplyHasNoUuid)
{
    transport.answer(R"({"status":"wait"})");
    EXPECT_EQ(sell(), QString());
}

TEST_F(Sell, ForgetsThePreviousDocumentBeforeItSends)
{
    transport.answer(R"({"status":"done","payload":{"total":1}})");
    processor.getDocumentStatus(QStringLiteral("u"));
    transport.dropAnswer();
    EXPECT_EQ(failureOf([&] { sell(); }), QStringLiteral("Нет связи с ФР"));
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

TEST_F(Status, IsAskedForByUuidInTheGroupWithoutABody)
{
    transport.answer(R"({"status":"wait"})");
    EXPECT_EQ(processor.getDocumentStatus(QStringLiteral("u-1")), atolonline::Wait);
    EXPECT_EQ(transport.requestLines(),
        QStringList{QStringLiteral("GET https://service.example/possystem/v4/group-1/report/u-1")});
    EXPECT_EQ(transport.requests().last().body, QByteArray());
    EXPECT_EQ(log.lines(), QStringList{QStringLiteral("info: Получение статуса документа по uuid: u-1")});
}

TEST(StatusText, IsComparedToTheLetter)
{
    const std::pair<const char*, int> rows[] = {
        {"wait", 1}, {"done", 2}, {"fail", 3}, {"DONE", 0}, {"Wait", 0}, {" done", 0}, {"", 0}};
    for (const auto& [status, code] : rows)
        EXPECT_EQ(CommandProcessor::getStatusFromString(QString::fromLatin1(status)), code) << status;
}

TEST_F(Status, DoneKeepsThePayload)
{
    transport.answer(R"({"status":"done","payload":{"fiscal_document_attribute":3449555941}})");
    EXPECT_EQ(processor.getDocumentStatus(QStringLiteral("u")), atolonline::Done);
    EXPECT_EQ(
        processor.getLastDocumentFiscalInfo().value(QStringLiteral("fiscal_document_attribute")).toString(),
        QStringLiteral("3449555941"));
}

TEST_F(Status, WithoutPayloadEmptiesTheKeptOne)
{
    transport.answer(R"({"status":"done","payload":{"total":1}})");
    processor.getDocumentStatus(QStringLiteral("u"));
    transport.answer(R"({"status":"fail","payload":null})");
    EXPECT_EQ(processor.getDocumentStatus(QStringLiteral("u")), atolonline::Fail);
    EXPECT_EQ(processor.getLastDocumentFiscalInfo(), QVariantMap());
}

TEST_F(Status, NotProcessedYetIsWaitAndKeepsThePayload)
{
    transport.answer(R"({"status":"done","payload":{"total":1}})");
    processor.getDocumentStatus(QStringLiteral("u"));
    log.take();
    transport.answer(R"({"status":"wait","error":{"code":34,"error_id":"e","text":"t"}})");
    EXPECT_EQ(processor.getDocumentStatus(QStringLiteral("u")), atolonline::Wait);
    EXPECT_EQ(processor.getLastDocumentFiscalInfo(), (QVariantMap{{QStringLiteral("total"), 1}}));
    EXPECT_EQ(log.lines(),
        (QStringList{QStringLiteral("info: Получение статуса документа по uuid: u"),
            QStringLiteral("error: Ответ от сервера содержит ошибку. Код 34, идентификатор e (t)"),
            QStringLiteral("debug: Документ еще не обработан")}));
}

TEST_F(Status, OtherErrorsLeaveAsExceptions)
{
    transport.answer(refusal(30));
    EXPECT_THROW(processor.getDocumentStatus(QStringLiteral("u")), FrDriverException);
    transport.answer(refusal(11));
    EXPECT_THROW(processor.getDocumentStatus(QStringLiteral("u")), atolonline::TokenExpired);
}

TEST_F(Reply, ThatIsEmptyRaisesNoConnectionAndKeepsTheLastOne)
{
    transport.answer(R"({"status":"wait","n":1})");
    processor.getDocumentStatus(QStringLiteral("u"));
    for (const char* empty : {"", "[]", "{}", "[1]", "17", "null"}) {
        transport.answer(empty);
        EXPECT_EQ(failureOf([&] { processor.getDocumentStatus(QStringLiteral("u")); }),
            QStringLiteral("Нет связи с ФР"))
            << empty;
        EXPECT_THROW((transport.dropAnswer(), processor.requestToken(true)), FrWorkWithServiceException);
    }
    EXPECT_EQ(processor.getLastResponse().value(QStringLiteral("n")).toInt(), 1);
}

TEST_F(Reply, WithAnErrorIsKeptForTheHost)
{
    transport.answer(refusal(32));
    EXPECT_THROW(sell(), FrWorkWithServiceException);
    EXPECT_EQ(QJsonDocument(processor.getLastResponse()).toJson(QJsonDocument::Compact), refusal(32));
}

TEST_F(Reply, KeepsIntegersExact)
{
    transport.answer(R"({"status":"done","payload":{"a":9007199254740993,"b":0.1,"c":42949672.95}})");
    processor.getDocumentStatus(QStringLiteral("u"));
    EXPECT_EQ(QJsonDocument(processor.getLastResponse()).toJson(QJsonDocument::Compact),
        R"({"payload":{"a":9007199254740993,"b":0.1,"c":42949672.95},"status":"done"})");
}

TEST_F(Reply, WithAReceiptLinkLogsItWhateverTheRequest)
{
    const QString link = QStringLiteral("info: Просмотр чека на сайте ОФД: https://ofd.example/1");
    constexpr auto body = R"({"token":"T","uuid":"u","payload":{"ofd_receipt_url":"https://ofd.example/1"}})";
    transport.answer(body);
    processor.requestToken(true);
    transport.answer(body);
    sell();
    transport.answer(body);
    processor.getDocumentStatus(QStringLiteral("u"));
    EXPECT_EQ(log.lines().filter(link).size(), 3);
}

TEST_F(Reply, OfTheWholeReplyIsKeptAndCleared)
{
    transport.answer(R"({"token":"T","timestamp":"x"})");
    processor.requestToken(true);
    EXPECT_EQ(processor.getLastResponse().value(QStringLiteral("timestamp")).toString(), QStringLiteral("x"));
    processor.clearLastResponse();
    EXPECT_EQ(processor.getLastResponse(), QJsonObject());
}

} // namespace
