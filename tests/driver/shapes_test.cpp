#include "host/records/fiscaldocument.h"
#include "host/records/frpayment.h"
#include "plugin/atolonlinesettings.h"
#include "tests/support/logcapture.h"
#include "tests/support/outcome.h"
#include "tests/support/scriptedtransport.h"
#include "tests/support/sleeplessdriver.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto accepted = R"({"uuid":"u-1","status":"wait","error":null})";
constexpr auto done = R"({"uuid":"u-1","status":"done","error":null,"payload":{
    "total":160.5,"fn_number":"0000440300046840","shift_number":17,"receipt_datetime":"05.03.2024 14:07:00",
    "fiscal_receipt_number":4,"fiscal_document_number":123,"ecr_registration_number":"0000111118041361",
    "fiscal_document_attribute":3449555941}})";

enum class Call
{
    Token,
    Sell,
    Send,
    Report
};

// What the service is said to answer in one case, in every shape that one of the sources has; and what the
// driver makes of each of them.
struct Row
{
    const char* name;
    Call call;
    std::vector<const char*> shapes;
    QString outcome;
};

// Payload as seen by the host.
QString infoOf(AtolOnlineFRDriver& driver)
{
    const FiscalInfo info = driver.getFiscalInfo(0, false);
    return QStringList{info.fnNumber, info.registrationNumber, info.shiftNumber,
        QString::number(info.fiscalDocumentNumber), info.fiscalSign, QString::number(info.total),
        info.dateTime.toString(u"dd.MM.yyyy hh:mm:ss"_s)}
        .join(u' ');
}

const QString registered = u"0000440300046840 0000111118041361 17 123 3449555941 160.5 05.03.2024 14:07:00"_s;

const std::vector<Row> rows = {
    {"ATokenRefusedForThePassword", Call::Token,
        {R"({"error":{"error_id":"e","code":12,"text":"t","type":"system"},"timestamp":"30.11.2017 17:58:53"})",
            R"({"error":{"error_id":"e","code":12,"text":"t","type":"system"},"token":"","timestamp":"t"})",
            R"({"error":{"code":12,"text":"t","type":"system"},"status":"fail","timestamp":"t"})"},
        u"FrWorkWithServiceException: Неверный логин или пароль"_s},
    {"AMalformedLogin", Call::Token,
        {R"({"error":{"error_id":"e","code":32,"text":"PatternMismatch: #/login","type":"system"},"status":"fail"})",
            R"({"error":{"error_id":"e","code":32,"text":"PatternMismatch: #/login","type":"system"}})"},
        u"FrWorkWithServiceException: Некорректные данные в запросе"_s},
    {"AnAccountOfAnotherProtocol", Call::Token,
        {R"({"error":{"error_id":"e","code":21,"text":"t","type":"system"},"timestamp":"t"})",
            R"({"error":{"error_id":"e","code":21,"text":"t","type":"system"},"status":"fail"})"},
        u"FrWorkWithServiceException: Код группы не поддерживает данную версию протокола"_s},
    {"AnUnknownToken", Call::Sell,
        {R"({"error":{"error_id":"e","code":10,"text":"t","type":"system"},"timestamp":"t"})",
            R"({"error":{"error_id":"e","code":10,"text":"t","type":"system"},"status":"fail"})"},
        u"FrWorkWithServiceException: Некорректный токен"_s},
    {"AnInvalidReceipt", Call::Sell,
        {R"({"error":{"error_id":"e","code":32,"text":"t","type":"system"},"status":"fail","timestamp":"t"})",
            R"({"error":{"error_id":"e","code":32,"text":"t","type":"system"},"timestamp":"t"})"},
        u"FrWorkWithServiceException: Некорректные данные в запросе"_s},
    {"AServerError", Call::Sell,
        {R"({"error":{"error_id":"e","code":50,"text":"t","type":"system"},"timestamp":"t"})",
            R"({"uuid":null,"error":{"error_id":"e","code":50,"text":"t","type":"system"},"status":"fail"})"},
        u"FrNoConnectionException: Нет связи с ФР"_s},
    {"AKnownReceipt", Call::Send,
        {R"({"uuid":"u-1","status":"wait","error":{"error_id":"e","code":33,"text":"t","type":"system"},"timestamp":"t"})",
            R"({"uuid":"u-1","error":{"code":33,"text":"t","type":"system"}})"},
        u"u-1"_s},
    {"AReceiptInProgress", Call::Report,
        {R"({"uuid":"u-1","status":"wait","error":{"error_id":"e","code":34,"text":"t","type":"system"},"timestamp":"t"})",
            R"({"status":"wait","error":{"error_id":"e","code":34,"text":"t","type":"system"},"callback_url":"","timestamp":"t"})",
            R"({"uuid":"u-1","error":null,"status":"wait","payload":null,"timestamp":"t"})"},
        registered},
    {"ARegisteredReceipt", Call::Report,
        {done,
            R"({"uuid":"u-1","error":null,"status":"done","payload":{"total":160.5,"ofd_inn":"7700000099",
            "fns_site":"www.nalog.gov.ru","fn_number":"0000440300046840","shift_number":17,
            "receipt_datetime":"05.03.2024 14:07:00","fiscal_receipt_number":4,"fiscal_document_number":123,
            "ecr_registration_number":"0000111118041361","fiscal_document_attribute":3449555941,
            "ofd_receipt_url":"https://ofd.example/1"},"warnings":null,"timestamp":"t","group_code":"g",
            "daemon_code":"d","device_code":"KKT000132","external_id":"e","callback_url":""})",
            R"({"uuid":"u-1","error":null,"status":"done","payload":{"total":160.5,"fns_site":"www.nalog.ru",
            "fn_number":"0000440300046840","shift_number":17,"receipt_datetime":"05.03.2024 14:07:00",
            "fiscal_receipt_number":4,"fiscal_document_number":123,
            "ecr_registration_number":"0000111118041361","fiscal_document_attribute":3449555941},
            "warnings":{"callback_url":"PatternMismatch"}})"},
        registered},
    {"AFailedReceipt", Call::Report,
        {R"({"uuid":"u-1","error":{"code":2009,"text":"чужой ИНН","type":"agent"},"status":"fail","payload":null,
            "warnings":null})",
            R"({"uuid":"u-1","error":{"error_id":"e","code":2009,"text":"чужой ИНН","type":"agent"},
            "status":"fail","payload":null})",
            R"({"uuid":"u-1","error":{"code":2009,"text":"чужой ИНН","type":"agent"},"status":"fail"})"},
        u"FrWorkWithServiceException: чужой ИНН"_s},
};

class Shape : public testing::TestWithParam<Row>
{
protected:
    // The text that says what became of the call that gets this answer.
    static QString outcome(Call call, const char* answer)
    {
        const LogCapture log;
        ScriptedTransport transport;
        AtolOnlineSettings settings;
        settings.setGroupCode(u"g"_s);
        SleeplessDriver driver(&settings);
        const FiscalDocument document(0, u"till-7-000123"_s);
        driver.checkOpen(document);
        driver.setRequisite(FdRequisite(EFrDriver::BuyerContact, u"buyer@example.com"_s));
        driver.checkPay(FrPayment(1, 160.5));
        if (call == Call::Report)
            transport.answer(accepted);
        transport.answer(answer);
        if (call == Call::Report)
            transport.answer(done);
        QString result;
        const QString ended = outcomeOf([&] {
            if (call == Call::Token) {
                driver.connect();
            } else if (call == Call::Send) {
                result = driver.documentClose(document);
            } else {
                driver.checkClose(document);
                result = infoOf(driver);
            }
        });
        return ended == u"returned"_s ? result : ended;
    }
};

TEST_P(Shape, MakesNoDifference)
{
    const Row& row = GetParam();
    for (const char* shape : row.shapes)
        EXPECT_EQ(outcome(row.call, shape), row.outcome) << shape;
}

INSTANTIATE_TEST_SUITE_P(
    Of, Shape, testing::ValuesIn(rows), [](const auto& of) { return std::string(of.param.name); });

} // namespace
