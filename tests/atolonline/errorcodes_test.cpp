#include "atolonline/commandprocessor.h"
#include "host/exceptions.h"
#include "host/log/log4qt.h"
#include "plugin/atolonlinesettings.h"
#include "tests/support/logcapture.h"
#include "tests/support/scriptedtransport.h"

#include <gtest/gtest.h>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

class ErrorCode : public testing::Test
{
protected:
    ErrorCode() { processor.setSettings(&settings); }

    // The message of the exception for an error with this code, as the service writes it.
    QString thrownFor(const char* code)
    {
        transport.answer(QByteArray(R"({"uuid":"u","error":{"text":"текст","code":)") + code + "}}");
        try {
            processor.sell({}, {}, {});
        } catch (const BasicException& e) {
            return e.tr().ru();
        }
        return u"nothing"_s;
    }

    AtolOnlineSettings settings;
    LogCapture log;
    ScriptedTransport transport;
    atolonline::CommandProcessor processor{Log4Qt::LogManager::logger(u"frdriver"_s, u"test"_s)};
};

TEST_F(ErrorCode, BeyondAnIntIsAnErrorWithoutAMessageOfItsOwn)
{
    for (const char* code : {"2147483648", "-2147483649", "4294967295", "-4294967297", "4294967307",
             "4294967329", "4294967330", "9223372036854775807", "-9223372036854775808", "9223372036854775808",
             "18446744073709551615", "18446744073709551627", "4294967306.6", "2147483647.5", "-2147483648.5",
             "1e19", "-1e19", "1e300", "-1e300", "\"4294967295\"", "\"4294967307\""}) {
        EXPECT_EQ(thrownFor(code), u"текст"_s) << code;
    }
}

TEST_F(ErrorCode, AtTheLimitsOfAnIntIsAnErrorWithoutAMessageOfItsOwn)
{
    EXPECT_EQ(thrownFor("2147483647"), u"текст"_s);
    EXPECT_EQ(thrownFor("-2147483648"), u"текст"_s);
}

TEST_F(ErrorCode, IsConvertedToAnIntegerWhateverItsJsonType)
{
    const std::pair<const char*, QString> rows[] = {
        {"11", u"Срок действия токена истёк"_s},
        {"11.0", u"Срок действия токена истёк"_s},
        {"1.1e1", u"Срок действия токена истёк"_s},
        {"\"11\"", u"Срок действия токена истёк"_s},
        {"31.6", u"текст"_s},
        {"10.6", u"текст"_s},
        {"-0.6", u"текст"_s},
        {"-1.4", u"текст"_s},
        {"true", u"Не удалось обработать полученный чек"_s},
        {"false", u"текст"_s},
        {"null", u"текст"_s},
        {"\"\"", u"текст"_s},
        {"\"11.0\"", u"текст"_s},
        {"\"eleven\"", u"текст"_s},
        {"[11]", u"текст"_s},
        {R"({"code":11})", u"текст"_s},
        {"-1", u"nothing"_s},
    };
    for (const auto& [code, message] : rows)
        EXPECT_EQ(thrownFor(code), message) << code;
}

TEST_F(ErrorCode, IsLoggedAsTheServiceWroteIt)
{
    thrownFor("4294967307");
    EXPECT_EQ(log.lines(),
        QStringList{u"error: Ответ от сервера содержит ошибку. Код 4294967307, идентификатор  (текст)"_s});
}

} // namespace
