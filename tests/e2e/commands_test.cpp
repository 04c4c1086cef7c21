#include "tests/e2e/support/shop.h"

#include <QJsonArray>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;
using testing::Not;

const QString nowhere = QStringLiteral("http://127.0.0.1:1/possystem/v4");

TEST(Describe, ShowsThePluginAndEverySettingButThePassword)
{
    Shop shop(nowhere);
    shop.configure(QStringLiteral("password"), QStringLiteral("canary"));
    const Ran shown = shop.frhost({QStringLiteral("describe")});
    EXPECT_EQ(shown.exitCode, 0) << shown.err.toStdString();
    EXPECT_THAT(shown.out.toStdString(), Not(HasSubstr("canary")));
    ASSERT_EQ(shown.lines().size(), 1);
    const QJsonObject json = shown.lines().first();
    EXPECT_EQ(json.value(QStringLiteral("metaData")).toObject().value(QStringLiteral("MetaData")).toObject(),
        (QJsonObject{{QStringLiteral("name"), QStringLiteral("atolonline")},
            {QStringLiteral("type"), QStringLiteral("fr")}}));
    QStringList names;
    QJsonObject url;
    QJsonObject password;
    for (const QJsonValue& value : json.value(QStringLiteral("properties")).toArray()) {
        const QJsonObject property = value.toObject();
        names << property.value(QStringLiteral("name")).toString();
        if (names.last() == QStringLiteral("url"))
            url = property;
        if (names.last() == QStringLiteral("password"))
            password = property;
    }
    EXPECT_EQ(names.join(u' '),
        QStringLiteral(
            "hardwareClass deviceId speedEnumerate driverOptions url login password requestInterval "
            "email inn paymentAddress groupCode"));
    EXPECT_EQ(url.value(QStringLiteral("default")).toString(QStringLiteral("none")), QString());
    EXPECT_EQ(url.value(QStringLiteral("value")).toString(), nowhere + u'/');
    EXPECT_EQ(url.value(QStringLiteral("labels")).toObject().value(QStringLiteral("name")).toString(),
        QStringLiteral("Адрес сервера"));
    EXPECT_TRUE(password.value(QStringLiteral("set")).toBool());
    EXPECT_FALSE(password.contains(QStringLiteral("value")));
}

TEST(Describe, NeedsNoConfiguration)
{
    const Ran shown = run(frhostProgram(), {QStringLiteral("describe")});
    EXPECT_EQ(shown.exitCode, 0) << shown.err.toStdString();
    EXPECT_THAT(shown.out.toStdString(), HasSubstr("Интервал запроса статуса"));
}

TEST(Compose, NeedsNoConfigurationAndSendsNothing)
{
    const Ran composed = run(frhostProgram(), {QStringLiteral("compose"), QStringLiteral("-")},
        receiptLine(QStringLiteral("a")) + receiptLine(QStringLiteral("b")));
    EXPECT_EQ(composed.exitCode, 0) << composed.err.toStdString();
    EXPECT_EQ(composed.columns({QStringLiteral("external_id")}),
        (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(composed.err, QString());
}

TEST(Compose, GoesOnAfterAReceiptThatTheDriverRefuses)
{
    const Ran composed = run(frhostProgram(), {QStringLiteral("compose"), QStringLiteral("-")},
        R"({"id":"a","positions":[],"payments":[]})"
        "\n" +
            receiptLine(QStringLiteral("b")));
    EXPECT_EQ(composed.exitCode, 3);
    EXPECT_EQ(composed.columns({QStringLiteral("external_id")}), QStringList{QStringLiteral("b")});
    EXPECT_EQ(composed.err, QStringLiteral("-:1: Требуется телефон или электронный адрес покупателя\n"));
}

TEST(Configuration, IsNeededToReachTheService)
{
    const Ran refused = run(frhostProgram(), {QStringLiteral("check")});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err,
        QStringLiteral("This command talks to the service: give a configuration with --config FILE.\n"));
}

TEST(Configuration, ThatTheRegisterRefusesIsReported)
{
    Shop shop(nowhere);
    shop.configure(QStringLiteral("requestInterval"), QStringLiteral("100"));
    const Ran refused = shop.frhost({QStringLiteral("check")});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.err.toStdString(),
        HasSubstr("register.ini:9: the register refused the value of requestInterval. Интервал запроса "
                  "статуса отправленного документа в миллисекундах. Не может быть меньше 200 мс."));
}

TEST(Configuration, WithAnUnknownKeyNamesTheNearest)
{
    Shop shop(nowhere);
    shop.configure(QStringLiteral("group"), QStringLiteral("x"));
    const Ran refused = shop.frhost({QStringLiteral("check")});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.err.toStdString(),
        HasSubstr("register.ini:10: unknown key \"group\"; did you mean \"groupCode\"?"));
}

TEST(Configuration, SwitchesOptionsOfTheDriver)
{
    const Shop shop(nowhere);
    const QString file =
        shop.file(QStringLiteral("options.ini"), "[driverOptions]\n0x10 = off\n0x80000 = on\n");
    const Ran composed = run(frhostProgram(),
        {QStringLiteral("--config"), file, QStringLiteral("compose"), QStringLiteral("-")},
        receiptLine(QStringLiteral("a")));
    EXPECT_EQ(composed.exitCode, 0) << composed.err.toStdString();
}

TEST(LogLevel, ChoosesTheLinesAndTheEnvironmentGoesFirst)
{
    const auto logged = [](const QStringList& environment, const char* level) {
        return run(QStringLiteral("env"),
            environment + QStringList{frhostProgram(), QStringLiteral("--log-level"),
                              QString::fromLatin1(level), QStringLiteral("compose"), QStringLiteral("-")},
            receiptLine(QStringLiteral("a")))
            .err.toStdString();
    };
    EXPECT_EQ(logged({}, "warning"), "");
    EXPECT_THAT(logged({}, "info"), HasSubstr(" info frdriver.atolonline_0: Открытие чека продажи\n"));
    EXPECT_THAT(logged({}, "info"), Not(HasSubstr(" debug ")));
    EXPECT_THAT(logged({}, "debug"),
        HasSubstr(" debug frdriver.atolonline_0: Установка адреса покупателя: buyer@example.com\n"));
    EXPECT_THAT(logged({QStringLiteral("QT_LOGGING_RULES=frdriver.*.info=true")}, "warning"),
        HasSubstr("Открытие чека продажи"));
}

TEST(Language, IsThatOfTheLocale)
{
    const auto told = [](const char* locale) {
        return run(QStringLiteral("env"), {QStringLiteral("LC_ALL=") + QString::fromLatin1(locale),
                                              frhostProgram(), QStringLiteral("check")})
            .err;
    };
    EXPECT_EQ(told("ru_RU.UTF-8"),
        QStringLiteral("Эта команда обращается к сервису: укажите настройки, --config FILE.\n"));
    EXPECT_EQ(told("C.UTF-8"),
        QStringLiteral("This command talks to the service: give a configuration with --config FILE.\n"));
}

TEST(Plugin, ThatIsNoneIsReported)
{
    const Shop shop(nowhere);
    const QString file = shop.file(QStringLiteral("libx.so"), "x");
    const Ran refused = run(frhostProgram(), {QStringLiteral("--plugin"), file, QStringLiteral("describe")});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err, file + QStringLiteral(": this is no fiscal-register plugin\n"));
}

} // namespace
