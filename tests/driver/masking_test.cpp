#include "driver/atolonlinefrdriver.h"

#include "host/exceptions.h"
#include "host/log/secrets.h"
#include "host/records/fiscaldocument.h"
#include "host/records/frpayment.h"
#include "plugin/atolonlinesettings.h"
#include "tests/support/logcapture.h"
#include "tests/support/scriptedtransport.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

namespace secrets = hostruntime::secrets;

constexpr auto token = R"({"token":"T1"})";
constexpr auto expired = R"({"error":{"code":11,"error_id":"till","text":"1008"}})";
constexpr auto accepted = R"({"uuid":"till-1008","status":"wait","error":null})";
constexpr auto waiting = R"({"error":{"code":34,"error_id":"till","text":"1008"}})";
constexpr auto done =
    R"({"status":"done","error":null,"payload":{"ofd_receipt_url":"https://ofd.example/till"}})";

class Masking : public testing::Test
{
protected:
    Masking() { secrets::clear(); }
    ~Masking() override { secrets::clear(); }

    static FrPosition position()
    {
        FrPosition line;
        line.setName(u"till"_s);
        line.setPriceWithDisc(1000);
        line.setCount(1);
        line.setPossum(1000);
        return line;
    }

    // Everything that the driver logs about a sale which takes two tokens and two questions.
    static QStringList linesOfASale()
    {
        const LogCapture log;
        ScriptedTransport transport;
        for (const char* answer : {expired, token, accepted, waiting, done})
            transport.answer(answer);
        AtolOnlineSettings settings;
        settings.setRequestInterval(1);
        AtolOnlineFRDriver driver(&settings);
        const FiscalDocument document(0, u"till-7-000123"_s);
        driver.checkOpen(document);
        driver.setRequisite(FdRequisite(EFrDriver::BuyerContact, u"till@buyer.example"_s));
        driver.setRequisite(FdRequisite(EFrDriver::AppliedTaxSystem, 1));
        driver.checkAddPosition(position());
        driver.checkPay(FrPayment(1, 1000));
        driver.BasicFrDriver::checkPay(FrPayment(1, 1000));
        EXPECT_THROW(driver.BasicFrDriver::connect(), FrNoConnectionException);
        driver.checkClose(document);
        return log.lines();
    }
};

// Every word of the log is also a password, so only what must not be masked is left.
TEST_F(Masking, LeavesTheDriversOwnLinesAndTakesTheServicesWords)
{
    const QStringList plain = linesOfASale();
    static const QRegularExpression gap(u"\\W+"_s, QRegularExpression::UseUnicodePropertiesOption);
    for (const QString& word : plain.join(u' ').split(gap))
        secrets::addCredential(word);
    const QStringList expected{
        u"info: Открытие чека продажи"_s,
        u"info: Запись реквизита 1008 (телефон или электронный адрес покупателя) в ФР"_s,
        u"debug: Установка адреса покупателя: till@buyer.example"_s,
        u"info: Запись реквизита 1055 (применяемая система налогообложения) в ФР"_s,
        u"debug: Установка системы налогообложения для чека: Общая"_s,
        u"info: Добавление позиции в чек: till, цена 1000.00, количество 1.000, сумма 1000.00, скидка 0.00, налог 5"_s,
        u"info: Добавление оплаты: тип 1, сумма 1000.00"_s,
        u"info: Расчет по чеку: (1) 1000.00"_s,
        u"info: Установка связи с устройством"_s,
        u"error: Ошибка инициализации драйвера порта"_s,
        u"info: Закрытие чека продажи"_s,
        u"info: Установка идентификатора документа till-7-000123"_s,
        u"error: Ответ от сервера содержит ошибку. Код 11, идентификатор *** (***)"_s,
        u"warn: Срок действия токена истёк. Получаем новый токен"_s,
        u"debug: Получение токена"_s,
        u"info: Закрытие чека продажи"_s,
        u"info: Установка идентификатора документа till-7-000123"_s,
        u"info: Чек отправлен, UUID: ***-***"_s,
        u"debug: Ожидание перехода документа в статус done или fail"_s,
        u"info: Получение статуса документа по uuid: ***-***"_s,
        u"error: Ответ от сервера содержит ошибку. Код 34, идентификатор *** (***)"_s,
        u"debug: Документ еще не обработан"_s,
        u"info: Получение статуса документа по uuid: ***-***"_s,
        u"info: Просмотр чека на сайте ОФД: ***://ofd.***/***"_s,
    };
    EXPECT_EQ(linesOfASale(), expected);
    EXPECT_EQ(plain.size(), expected.size());
}

// The buyer's contact is the buyer's own line at debug level only, wherever else it is said.
TEST_F(Masking, TakesContactAndLoginOutOfTheServicesWordsAboveDebug)
{
    secrets::addPersonal(u"till"_s);
    const QString all = linesOfASale().join(u'\n');
    EXPECT_TRUE(all.contains(u"Код 11, идентификатор *** (1008)"_s)) << all.toStdString();
    EXPECT_TRUE(all.contains(u"Чек отправлен, UUID: ***-1008"_s)) << all.toStdString();
    EXPECT_TRUE(all.contains(u"info: Установка идентификатора документа till-7-000123"_s))
        << all.toStdString();
}

} // namespace
