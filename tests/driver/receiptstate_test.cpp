#include "host/exceptions.h"
#include "host/records/fiscaldocument.h"
#include "host/records/frpayment.h"
#include "plugin/atolonlinesettings.h"
#include "tests/driver/noteddriver.h"
#include "tests/support/logcapture.h"
#include "tests/support/outcome.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto accepted = R"({"uuid":"u-1","status":"wait"})";
constexpr auto expired = R"({"error":{"code":11}})";
constexpr auto done = R"({"status":"done","payload":{"total":160.5,"fn_number":"0000440300046840",
    "shift_number":17,"receipt_datetime":"05.03.2024 14:07:09","fiscal_document_number":123,
    "ecr_registration_number":"0000111118041361","fiscal_document_attribute":3449555941}})";
constexpr auto otherDone = R"({"status":"done","payload":{"total":1,"fn_number":"2","shift_number":3,
    "receipt_datetime":"01.01.2020 00:00:00","fiscal_document_number":4,"ecr_registration_number":"5",
    "fiscal_document_attribute":6}})";

// What the fiscal information holds after `done`.
const QString doneResult = u"fn 0000440300046840, document 123, 05.03.2024 14:07:09, shift 17, total 160.5, "
                           u"register 0000111118041361, "
                           "sign 3449555941, Общая"_s;

QString described(const FiscalInfo& info)
{
    return u"fn %1, document %2, %3, shift %4, total %5, register %6, sign %7, %8"_s.arg(info.fnNumber,
        QString::number(info.fiscalDocumentNumber), info.dateTime.toString(u"dd.MM.yyyy hh:mm:ss"),
        info.shiftNumber, QString::number(info.total), info.registrationNumber, info.fiscalSign,
        info.taxSystem);
}

QByteArray refusal(int code)
{
    return R"({"error":{"code":)" + QByteArray::number(code) + R"(,"text":"t"}})";
}

class DriverState : public testing::Test
{
protected:
    AtolOnlineSettings* filledSettings()
    {
        settings.setUrl(u"https://a.example/"_s);
        settings.setGroupCode(u"g"_s);
        settings.setRequestInterval(200);
        return &settings;
    }

    void collect()
    {
        driver.setRequisite(FdRequisite(EFrDriver::BuyerContact, u"a@b"_s));
        driver.setRequisite(FdRequisite(EFrDriver::AppliedTaxSystem, 1));
        FrPosition position;
        position.setName(u"Товар"_s);
        driver.checkAddPosition(position);
        driver.checkPay(FrPayment(1, 160.5));
    }

    void answers(std::initializer_list<QByteArray> bodies)
    {
        for (const QByteArray& body : bodies)
            transport.answer(body);
    }

    void close()
    {
        answers({accepted, done});
        driver.checkClose(document);
    }

    QString fiscalInfo() { return described(driver.getFiscalInfo(0, false)); }

    // The bodies of all receipts so far without their time.
    QStringList sentReceipts() const
    {
        QStringList bodies;
        for (const auto& request : transport.requests()) {
            if (!request.url.endsWith(u"/sell"))
                continue;
            QJsonObject body = request.json();
            body.remove(u"timestamp"_s);
            bodies << QString::fromUtf8(QJsonDocument(body).toJson(QJsonDocument::Compact));
        }
        return bodies;
    }

    QStringList tokens() const
    {
        QStringList values;
        for (const auto& request : transport.requests())
            values << request.headers.value(u"token"_s, u"none"_s);
        return values;
    }

    QStringList steps;
    LogCapture log;
    NotedTransport transport{steps};
    AtolOnlineSettings settings;
    NotedDriver driver{steps, filledSettings()};
    const FiscalDocument document{0, u"till-1"_s};
};

using Polling = DriverState;
using Receipt = DriverState;
using FiscalResult = DriverState;
using Failure = DriverState;
using Renewal = DriverState;

const QString asking = u"POST https://a.example/getToken"_s;
const QString selling = u"POST https://a.example/g/sell"_s;
const QString question = u"GET https://a.example/g/report/u-1"_s;
const QString nap = u"sleep 200"_s;
const QString wholeReceipt =
    uR"({"external_id":"till-1","receipt":{"client":{"email":"a@b"},"company":{"email":"","inn":"",)"
    R"("payment_address":"","sno":"osn"},"items":[{"name":"Товар","payment_method":"full_payment",)"
    R"("payment_object":"commodity","price":0,"quantity":0,"sum":0,"vat":{"type":"none"}}],)"
    R"("payments":[{"sum":160.5,"type":1}],"total":160.5}})"_s;

TEST_F(Polling, SleepsBeforeEachQuestionAndTheFirstToo)
{
    collect();
    answers({accepted, R"({"status":"wait"})", refusal(34), done});
    driver.checkClose(document);
    EXPECT_EQ(steps, (QStringList{selling, nap, question, nap, question, nap, question}));
}

TEST_F(Polling, SleepsTheIntervalThatIsSetMeanwhile)
{
    collect();
    close();
    settings.setRequestInterval(300);
    close();
    EXPECT_EQ(steps.filter(u"sleep"_s), (QStringList{nap, u"sleep 300"_s}));
}

TEST_F(Polling, HasNoLimit)
{
    constexpr int waits = 20000;
    collect();
    answers({accepted});
    for (int i = 0; i < waits; ++i)
        answers({R"({"status":"wait"})"});
    answers({done});
    driver.checkClose(document);
    EXPECT_EQ(steps.count(question), waits + 1);
    EXPECT_EQ(steps.count(nap), waits + 1);
    EXPECT_EQ(fiscalInfo(), doneResult);
}

TEST_F(Receipt, OfARefusedTypeClearsNothing)
{
    collect();
    close();
    const QJsonObject response = driver.getLastResponse();
    for (const int type : {1, 2, 7, 11, 42, -1})
        EXPECT_THROW(driver.checkOpen(FiscalDocument(type, u"till-2"_s)), FrCommandException);
    EXPECT_EQ(fiscalInfo(), doneResult);
    EXPECT_EQ(driver.getLastResponse(), response);
    close();
    EXPECT_EQ(sentReceipts(), (QStringList{wholeReceipt, wholeReceipt}));
}

TEST_F(Receipt, StaysAfterItWasClosed)
{
    collect();
    close();
    answers({accepted});
    driver.documentClose(document);
    close();
    EXPECT_EQ(sentReceipts(), (QStringList{wholeReceipt, wholeReceipt, wholeReceipt}));
}

TEST_F(Receipt, GrowsAfterItWasClosed)
{
    collect();
    close();
    driver.checkPay(FrPayment(1, 0.5));
    close();
    EXPECT_EQ(sentReceipts().last(), QString(wholeReceipt).replace(u"160.5"_s, u"161"_s));
}

TEST_F(Receipt, IsSentWithoutHavingBeenOpened)
{
    collect();
    close();
    EXPECT_EQ(sentReceipts(), QStringList{wholeReceipt});
}

TEST_F(FiscalResult, StaysWhateverIsSentOrAskedWithoutWaiting)
{
    collect();
    close();
    answers({accepted, R"({"uuid":"u-0","error":{"code":33}})", otherDone, refusal(34), otherDone});
    driver.documentClose(document);
    driver.documentClose(document);
    driver.getDocumentInfo(u"u-1"_s);
    driver.getDocumentInfo(u"u-1"_s);
    driver.getDocumentInfo(u"u-1"_s);
    EXPECT_EQ(driver.getLastResponse().value(u"status"_s).toString(), u"done"_s);
    EXPECT_EQ(fiscalInfo(), doneResult);
}

TEST_F(FiscalResult, TakesNumbersForTextsAndTextsForNumbers)
{
    const std::pair<QByteArray, QString> rows[] = {
        {R"({"fn_number":440300046840,"fiscal_document_number":123,"shift_number":17,"total":160.5,
             "ecr_registration_number":1111,"fiscal_document_attribute":3449555941,"receipt_datetime":1})",
            u"fn 440300046840, document 123, , shift 17, total 160.5, register 1111, sign 3449555941, Общая"_s},
        {R"({"fn_number":"0044","fiscal_document_number":"123","shift_number":"017","total":"160.5",
             "ecr_registration_number":"0011","fiscal_document_attribute":"0034",
             "receipt_datetime":"05.03.2024 14:07:09"})",
            u"fn 0044, document 123, 05.03.2024 14:07:09, shift 017, total 160.5, register 0011, sign 0034, "
            "Общая"_s},
        {R"({"fn_number":null,"fiscal_document_number":"many","shift_number":[],"total":"much",
             "ecr_registration_number":{},"fiscal_document_attribute":true,"receipt_datetime":"5.3.2024"})",
            u"fn , document 0, , shift , total 0, register , sign true, Общая"_s},
    };
    for (const auto& [payload, result] : rows) {
        collect();
        answers({accepted, R"({"status":"done","payload":)" + payload + '}'});
        driver.checkClose(document);
        EXPECT_EQ(fiscalInfo(), result);
    }
}

TEST_F(Failure, OfASubmissionReachesTheHostUnlessTheDriverActsOnIt)
{
    const QString service = u"FrWorkWithServiceException: "_s;
    const QString noConnection = u"FrNoConnectionException: Нет связи с ФР"_s;
    const QString inProgress = u"atolonline::DocumentInProgress: Документ еще не обработан"_s;
    const QString existing =
        u"atolonline::DocumentExists: Документ с переданным идентификатором уже существует"_s;
    const struct
    {
        QByteArray answer;
        QString closed;
        QString submitted;
    } rows[] = {
        {"", service + u"Нет связи с ФР"_s, service + u"Нет связи с ФР"_s},
        {refusal(0), service + u't', service + u't'},
        {refusal(1), service + u"Не удалось обработать полученный чек"_s,
            service + u"Не удалось обработать полученный чек"_s},
        {refusal(30), u"FrDriverException: Документ с указанным идентификатором не найден"_s,
            u"FrDriverException: Документ с указанным идентификатором не найден"_s},
        {refusal(31), u"FrCommandNotSupportException: Команда не поддерживается"_s,
            u"FrCommandNotSupportException: Команда не поддерживается"_s},
        {refusal(33), existing, u"returned"_s},
        {refusal(34), inProgress, inProgress},
        {refusal(40), noConnection, noConnection},
        {refusal(50), noConnection, noConnection},
    };
    collect();
    for (const auto& row : rows) {
        steps.clear();
        transport.answer(row.answer);
        EXPECT_EQ(outcomeOf([this] { driver.checkClose(document); }), row.closed);
        transport.answer(row.answer);
        EXPECT_EQ(outcomeOf([this] { driver.documentClose(document); }), row.submitted);
        EXPECT_EQ(steps, (QStringList{selling, selling})) << row.answer.toStdString();
    }
}

TEST_F(Renewal, ReplacesTheTokenThatIsHeld)
{
    collect();
    answers({R"({"token":"T1"})"});
    driver.connect();
    answers({expired, R"({"token":"T2"})", accepted});
    EXPECT_EQ(driver.documentClose(document), u"u-1"_s);
    answers({expired, R"({"token":"T3"})", accepted, done});
    driver.checkClose(document);
    answers({expired, R"({"token":"T4"})", done});
    driver.getDocumentInfo(u"u-1"_s);
    EXPECT_EQ(steps, (QStringList{asking, selling, asking, selling, selling, asking, selling, nap, question,
                         question, asking, question}));
    EXPECT_EQ(tokens(), u"none T1 T1 T2 T2 T2 T3 T3 T3 T3 T4"_s.split(u' '));
}

} // namespace
