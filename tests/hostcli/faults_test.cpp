#include "host/transport/peercertificate.h"
#include "hostcli/commandline.h"
#include "tests/hostcli/russian.h"
#include "till/diagnosis/configurationcheck.h"
#include "till/diagnosis/machine.h"
#include "till/diagnosis/servicecheck.h"
#include "till/receipts/receiptparser.h"
#include "till/sale/obstacle.h"
#include "till/sale/outcome.h"

#include <QFile>
#include <QMap>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

const QDateTime noon = QDateTime(QDate(2026, 3, 4), QTime(12, 0), QTimeZone::utc()).toUTC();

// What keeps the service from being reached, from the transport's words.
QString obstacle(const char* failure)
{
    const Obstacle found = obstacleIn(QString::fromUtf8(failure));
    return found.cause + u". "_s + found.advice;
}

QString certificateFault(const char* words)
{
    return obstacle(
        (QByteArray("сертификат сервера не принят: SSL certificate problem: ") + words).constData());
}

// The worst finding in a configuration that is good but for one setting.
QString configured(const char* name, const char* value)
{
    RegisterConfig config;
    config.file = u"r.ini"_s;
    for (const auto& [key, good] :
        {std::pair("url", "https://s.example/v4/"), {"login", "l"}, {"password", "p"}, {"groupCode", "g"},
            {"inn", "7700000009"}, {"email", "a@b.example"}, {"paymentAddress", "b"}})
        config.settings << Setting{
            QString::fromLatin1(key), QString::fromUtf8(key == std::string(name) ? value : good)};
    return worstFirst(checkConfiguration(config)).first().text;
}

QString group(ServiceCode code)
{
    ServiceAnswer answer;
    answer.arrived = answer.hasError = true;
    answer.errorCode = code;
    return judgeGroup(answer, u"shop_1"_s).text;
}

QString usage(const std::vector<const char*>& arguments)
{
    const auto parsed = frhost::parseCommandLine(static_cast<int>(arguments.size()), arguments.data());
    const auto* text = std::get_if<frhost::CommandLineText>(&parsed);
    return text ? text->text : QString();
}

QString receiptProblem(const char* json)
{
    const auto parsed = ReceiptParser().parse(json);
    const auto* problem = std::get_if<ReceiptProblem>(&parsed);
    return problem ? problem->rule : QString();
}

QString advice(SaleVerdict verdict)
{
    return conclusionOf(verdict).advice;
}

// Prepares each fault of the document and returns what the program shows.
const QMap<QString, std::function<QString()>>& faults()
{
    static const QMap<QString, std::function<QString()>> table{
        {u"clock-behind"_s, [] { return certificateFault("certificate is not yet valid"); }},
        {u"certificate-expired"_s, [] { return certificateFault("certificate has expired"); }},
        {u"authority-unknown"_s, [] { return certificateFault("unable to get local issuer certificate"); }},
        {u"server-renamed"_s,
            [] {
                return obstacle(
                    "сертификат сервера не принят: SSL: no alternative certificate subject name matches");
            }},
        {u"ca-file-missing"_s, [] { return obstacle("файл сертификатов не читается: error setting"); }},
        {u"tls-too-old"_s, [] { return obstacle("TLS не согласован: alert protocol version"); }},
        {u"name-unknown"_s, [] { return obstacle("имя сервера не найдено: Could not resolve host: s"); }},
        {u"proxy-unknown"_s, [] { return obstacle("имя прокси не найдено: Could not resolve proxy: p"); }},
        {u"proxy-password"_s,
            [] { return obstacle("соединение оборвано: CONNECT tunnel failed, response 407"); }},
        {u"port-closed"_s, [] { return obstacle("соединение не установлено: Failed to connect"); }},
        {u"network-dead"_s, [] { return obstacle("истекло время на соединение (предел 10000 мс)"); }},
        {u"path-wrong"_s, [] { return obstacle("HTTP 404, тело не JSON: illegal value"); }},
        {u"captive-portal"_s, [] { return obstacle("HTTP 200, тело не JSON: illegal value"); }},
        {u"server-broken"_s, [] { return obstacle("HTTP 502, тело не JSON: illegal value"); }},
        {u"scheme-missing"_s, [] { return configured("url", "s.example/v4/"); }},
        {u"not-encrypted"_s, [] { return configured("url", "http://s.example/v4/"); }},
        {u"inn-mistyped"_s, [] { return configured("inn", "7700000090"); }},
        {u"login-missing"_s, [] { return configured("login", ""); }},
        {u"payment-address-missing"_s, [] { return configured("paymentAddress", ""); }},
        {u"group-wrong"_s, [] { return group(ServiceCode::WrongGroup); }},
        {u"protocol-wrong"_s, [] { return group(ServiceCode::WrongProtocol); }},
        {u"clock-ahead"_s, [] { return judgeClock(noon, noon.addSecs(3600)).text; }},
        {u"certificate-expires"_s,
            [] {
                return judgeCertificate(hostruntime::PeerCertificate{{}, {}, noon.addDays(5)}, noon).text;
            }},
        {u"name-server-missing"_s, [] { return resolved(u"a..b"_s).text; }},
        {u"journal-read-only"_s, [] { return judgeSpace(u"/var/j.db"_s, false, 0).text; }},
        {u"disk-full"_s, [] { return judgeSpace(u"/var/j.db"_s, true, 3 * 1024 * 1024).text; }},
        {u"account-blocked"_s, [] { return accountAdvice(ServiceCode::BlockedUser); }},
        {u"password-wrong"_s, [] { return accountAdvice(ServiceCode::WrongCredentials); }},
        {u"receipt-refused"_s, [] { return refusalAdvice(ServiceCode::InvalidReceipt); }},
        {u"receipt-not-processed"_s, [] { return refusalAdvice(ServiceCode::NotProcessed); }},
        {u"inn-refused"_s, [] { return refusalAdvice(ServiceCode::WrongInn); }},
        {u"operation-unknown"_s, [] { return refusalAdvice(ServiceCode::UnsupportedOperation); }},
        {u"request-changed"_s, [] { return refusalAdvice(ServiceCode::BadRequest); }},
        {u"receipt-failed"_s, [] { return advice(SaleVerdict::Failed); }},
        {u"id-of-another"_s, [] { return advice(SaleVerdict::ForeignId); }},
        {u"answer-lost"_s, [] { return advice(SaleVerdict::Unknown); }},
        {u"not-sent"_s, [] { return advice(SaleVerdict::NotSent); }},
        {u"not-proved"_s, [] { return advice(SaleVerdict::Incomplete); }},
        {u"key-mistyped"_s, [] { return receiptProblem(R"({"id":"a","postions":[],"payments":[]})"); }},
        {u"command-mistyped"_s,
            [] {
                return usage({"frhost", "sel", "a.json"});
            }},
        {u"file-forgotten"_s,
            [] {
                return usage({"frhost", "sell"});
            }},
    };
    return table;
}

TEST(ReceiptProblem, IsAllInTheUsersLanguage)
{
    const std::pair<const char*, const char*> problems[] = {
        {R"({"id":7,"requisites":[],"positions":[],"payments":[]})", "Ожидается: Собственный идентификатор"},
        {"?", "не JSON: Недопустимое значение."},
        {"{\"id\" 1}", "не JSON: Нет двоеточия после имени ключа."},
        {"{\"id\": \"a\" 1}", "не JSON: После значения ключа нет запятой или '}'."},
        {"[1 2]", "не JSON: После элемента массива нет запятой или ']'."},
        {"{} {}", "не JSON: После значения идёт ещё что-то."},
        {R"({"id": "\uzzzz"})", "не JSON: После \\u в строке не шестнадцатеричное число."},
        {R"({"id": "\q"})", "не JSON: Недопустимый знак после \\ в строке."},
        {R"({"id": "a)", "не JSON: Нет закрывающей кавычки."},
    };
    const Russian russian;
    for (const auto& [json, shown] : problems)
        EXPECT_TRUE(receiptProblem(json).contains(QString::fromUtf8(shown)))
            << receiptProblem(json).toStdString();
}

// The rows of the document's table: name, fault, English, Russian, what to do.
QList<QStringList> rows()
{
    QFile document(QStringLiteral(FAULTS));
    EXPECT_TRUE(document.open(QIODevice::ReadOnly));
    QList<QStringList> found;
    for (const QString& line : QString::fromUtf8(document.readAll()).split(u'\n')) {
        if (!line.startsWith(u"| `"_s))
            continue;
        QStringList cells;
        for (const QString& cell : line.split(u'|').sliced(1))
            cells << cell.trimmed();
        cells.first().remove(u'`');
        found << cells;
    }
    return found;
}

TEST(Faults, AreShownAsTheDocumentSays)
{
    QStringList documented;
    for (const QStringList& row : rows()) {
        ASSERT_EQ(row.size(), 6) << row.join(u'|').toStdString();
        documented << row.first();
        ASSERT_TRUE(faults().contains(row.first())) << row.first().toStdString();
        const auto& shown = faults().value(row.first());
        EXPECT_FALSE(row.at(2).isEmpty() || row.at(3).isEmpty() || row.at(4).isEmpty())
            << row.first().toStdString();
        EXPECT_TRUE(shown().contains(row.at(2))) << shown().toStdString();
        const Russian russian;
        EXPECT_TRUE(shown().contains(row.at(3))) << shown().toStdString();
    }
    EXPECT_GE(documented.size(), 30);
    documented.sort();
    EXPECT_EQ(documented, faults().keys()) << "a fault without its row, or twice";
}

} // namespace
