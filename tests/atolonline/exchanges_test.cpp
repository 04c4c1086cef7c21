#include "atolonline/commandprocessor.h"

#include "atolonline/exceptions.h"
#include "host/log/log4qt.h"
#include "plugin/atolonlinesettings.h"
#include "tests/support/logcapture.h"
#include "tests/support/outcome.h"
#include "tests/support/scriptedtransport.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

using atolonline::CommandProcessor;

constexpr auto accepted = R"({"uuid":"u-1","status":"wait"})";
constexpr auto documentDone = R"({"status":"done","payload":{"total":1}})";

// Keeps the addresses as they would go on the wire.
class AddressBook : public ScriptedTransport
{
public:
    bool get(const QUrl& url, const QJsonDocument& document, const Headers& headers) override
    {
        addresses << QString::fromLatin1(url.toEncoded());
        return ScriptedTransport::get(url, document, headers);
    }
    bool post(const QUrl& url, const QByteArray& body, const Headers& headers) override
    {
        addresses << QString::fromLatin1(url.toEncoded());
        return ScriptedTransport::post(url, body, headers);
    }

    QStringList addresses;
};

class Exchange : public testing::Test
{
protected:
    Exchange()
    {
        fill(u"first"_s);
        processor.setSettings(&settings);
    }

    // Writes every text of the settings, each with the word in it.
    void fill(const QString& word)
    {
        settings.setUrl(u"https://%1.example/"_s.arg(word));
        settings.setLogin(word + u"-login"_s);
        settings.setPassword(word + u"-password"_s);
        settings.setGroupCode(word + u"-group"_s);
        settings.setCompanyEmail(word + u"-email"_s);
        settings.setCompanyInn(word + u"-inn"_s);
        settings.setPaymentAddress(word + u"-address"_s);
    }

    QString sell(const QByteArray& answer = accepted)
    {
        transport.answer(answer);
        return processor.sell({}, {}, {});
    }

    void requestToken(const QByteArray& answer)
    {
        transport.answer(answer);
        processor.requestToken(true);
    }

    int askStatus(const QByteArray& answer)
    {
        transport.answer(answer);
        return processor.getDocumentStatus(u"u-1"_s);
    }

    QJsonObject lastBody() const { return transport.requests().last().json(); }

    // Addresses, credentials and company of a token request, a receipt and a question about it.
    QStringList usedByAllRequests()
    {
        transport.addresses.clear();
        requestToken(R"({"token":"T1"})");
        const QByteArray credentials = transport.requests().last().body;
        sell();
        const QJsonObject company = lastBody().value(u"receipt"_s).toObject().value(u"company"_s).toObject();
        askStatus(documentDone);
        return transport.addresses << QString::fromUtf8(credentials)
                                   << QString::fromUtf8(
                                          QJsonDocument(company).toJson(QJsonDocument::Compact));
    }

    AtolOnlineSettings settings;
    LogCapture log;
    AddressBook transport;
    CommandProcessor processor{Log4Qt::LogManager::logger(u"frdriver"_s, u"test"_s)};
};

using RequestAddress = Exchange;
using RequestSettings = Exchange;
using RequestHeaders = Exchange;
using ReplyText = Exchange;
using ExternalId = Exchange;
using KeptPayload = Exchange;
using ReceiptLink = Exchange;

TEST_F(RequestAddress, IsTheBaseAndThePathWithNothingFoldedOrRepaired)
{
    const std::pair<QString, QString> rows[] = {
        {u"https://a.example/v4/"_s, u"https://a.example/v4/"_s},
        {u"https://a.example/x/../v4/./y//"_s, u"https://a.example/x/../v4/./y//"_s},
        {u"https://a.example/my shop/"_s, u"https://a.example/my%20shop/"_s},
        {u"https://a.example/100%/"_s, u"https://a.example/100%25/"_s},
        {u"https://a.example/a%2Fb%20c/"_s, u"https://a.example/a%2Fb%20c/"_s},
        {u"https://a.example/касса/"_s, u"https://a.example/%D0%BA%D0%B0%D1%81%D1%81%D0%B0/"_s},
        {u"https://a.example:8443/?shop=1&path="_s, u"https://a.example:8443/?shop=1&path="_s},
    };
    for (const auto& [base, sent] : rows) {
        settings.setUrl(base);
        settings.setGroupCode(u"g ё"_s);
        transport.addresses.clear();
        requestToken(R"({"token":"T1"})");
        sell();
        askStatus(documentDone);
        EXPECT_EQ(transport.addresses, (QStringList{sent + u"getToken"_s, sent + u"g%20%D1%91/sell"_s,
                                           sent + u"g%20%D1%91/report/u-1"_s}));
    }
}

TEST_F(RequestSettings, AreReadAtEachRequestButTheCompanyWhenTheSettingsAreGiven)
{
    const auto texts = [](const QString& word, const QString& company) {
        return QStringList{u"https://%1.example/getToken"_s.arg(word),
            u"https://%1.example/%1-group/sell"_s.arg(word),
            u"https://%1.example/%1-group/report/u-1"_s.arg(word),
            uR"({"login":"%1-login","pass":"%1-password"})"_s.arg(word),
            uR"({"email":"%1-email","inn":"%1-inn","payment_address":"%1-address"})"_s.arg(company)};
    };
    EXPECT_EQ(usedByAllRequests(), texts(u"first"_s, u"first"_s));
    fill(u"second"_s);
    EXPECT_EQ(usedByAllRequests(), texts(u"second"_s, u"first"_s));
    processor.setSettings(&settings);
    EXPECT_EQ(usedByAllRequests(), texts(u"second"_s, u"second"_s));
}

TEST_F(RequestHeaders, OfAQuestionAreTheContentTypeAndTheToken)
{
    RestClient::Headers headers{{u"Content-type"_s, u"application/json; charset=utf-8"_s}};
    askStatus(documentDone);
    EXPECT_EQ(transport.requests().last().headers, headers);
    requestToken(R"({"token":"T1"})");
    askStatus(documentDone);
    headers.insert(u"token"_s, u"T1"_s);
    EXPECT_EQ(transport.requests().last().headers, headers);
}

TEST_F(RequestHeaders, StayAsTheyWereWhenAForcedRenewalFails)
{
    requestToken(R"({"token":"T1"})");
    const RestClient::Headers headers{
        {u"Content-type"_s, u"application/json; charset=utf-8"_s}, {u"token"_s, u"T1"_s}};
    const std::pair<const char*, QString> rows[] = {
        {"", u"FrWorkWithServiceException: Нет связи с ФР"_s},
        {R"({"error":{"code":12},"token":"T2"})", u"FrWorkWithServiceException: Неверный логин или пароль"_s},
        {R"({"error":{"code":11},"token":"T2"})", u"atolonline::TokenExpired: Срок действия токена истёк"_s},
    };
    for (const auto& [answer, failure] : rows) {
        EXPECT_EQ(outcomeOf([&, text = answer] { requestToken(text); }), failure);
        sell();
        EXPECT_EQ(transport.requests().last().headers, headers) << failure.toStdString();
    }
}

TEST_F(ReplyText, IsMadeOfATokenAndAUuidThatAreNotTexts)
{
    const std::pair<QByteArray, QString> rows[] = {{"17", u"17"_s},
        {"9007199254740993", u"9007199254740993"_s}, {"1.5", u"1.5"_s}, {"true", u"true"_s},
        {"null", QString()}, {"{\"a\":1}", QString()}, {"[]", QString()}};
    for (const auto& [value, text] : rows) {
        requestToken("{\"timestamp\":\"x\",\"token\":" + value + '}');
        EXPECT_EQ(sell("{\"status\":\"wait\",\"uuid\":" + value + '}'), text) << value.toStdString();
        EXPECT_EQ(transport.requests().last().headers.value(u"token"_s), text) << value.toStdString();
    }
}

TEST_F(ExternalId, IsEmptyUntilItIsSetAndThenStays)
{
    const auto sent = [this] { return lastBody().value(u"external_id"_s); };
    sell();
    EXPECT_EQ(sent(), QJsonValue(QString()));
    processor.setInternalDocumentId(u"till-1"_s);
    for (const char* answer : {accepted, "", R"({"error":{"code":33}})", accepted}) {
        try {
            sell(answer);
        } catch (const BasicException&) {
        }
        EXPECT_EQ(sent(), QJsonValue(u"till-1"_s));
    }
}

TEST_F(KeptPayload, IsThatOfTheLastStatusThatWasNotAnError)
{
    askStatus(documentDone);
    const QVariantMap kept{{u"total"_s, 1}};
    for (int code = -3; code <= 60; ++code) {
        if (code == -1)
            continue;
        try {
            askStatus(R"({"error":{"code":)" + QByteArray::number(code) + R"(},"payload":{"total":2}})");
        } catch (const BasicException&) {
        }
        EXPECT_EQ(processor.getLastDocumentFiscalInfo(), kept) << code;
    }
    EXPECT_THROW(askStatus(""), FrWorkWithServiceException);
    requestToken(R"({"token":"T1","payload":{"total":2}})");
    EXPECT_EQ(processor.getLastDocumentFiscalInfo(), kept);
    askStatus(R"({"status":"wait","error":{"text":"t"},"payload":{"total":3}})");
    EXPECT_EQ(processor.getLastDocumentFiscalInfo(), (QVariantMap{{u"total"_s, 3}}));
}

TEST_F(ReceiptLink, IsLoggedWheneverItsKeyIsThereAndTheReplyIsNotAnError)
{
    const QString line = u"info: Просмотр чека на сайте ОФД: "_s;
    const std::pair<const char*, QStringList> rows[] = {
        {R"({"payload":{"ofd_receipt_url":"https://ofd.example/1"}})", {line + u"https://ofd.example/1"_s}},
        {R"({"payload":{"ofd_receipt_url":""}})", {line}},
        {R"({"payload":{"ofd_receipt_url":null}})", {line}},
        {R"({"payload":{"ofd_receipt_url":17}})", {line + u"17"_s}},
        {R"({"error":{"text":"t"},"payload":{"ofd_receipt_url":"x"}})", {line + u"x"_s}},
        {R"({"error":{"code":34},"payload":{"ofd_receipt_url":"x"}})", {}},
        {R"({"error":{"code":1},"payload":{"ofd_receipt_url":"x"}})", {}},
        {R"({"payload":{"total":1},"ofd_receipt_url":"x"})", {}},
        {R"({"payload":"ofd_receipt_url"})", {}},
        {R"({"payload":null})", {}},
    };
    for (const auto& [answer, logged] : rows) {
        try {
            askStatus(answer);
        } catch (const BasicException&) {
        }
        EXPECT_EQ(log.take().filter(u"ОФД"_s), logged) << answer;
    }
}

} // namespace
