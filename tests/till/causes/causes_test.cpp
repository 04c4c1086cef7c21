#include "tests/support/qtprinters.h"
#include "till/causes/causes.h"
#include "till/wire/servicecodes.h"

#include <QSet>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

TEST(Causes, HaveARowForEachCodeOfTheServiceThatAgreesWithTheJudgement)
{
    for (const ServiceCodeMeaning& meaning : serviceCodes) {
        const int code = static_cast<int>(meaning.code);
        const Cause* cause = causeNamed(QString::number(code));
        ASSERT_TRUE(cause) << code;
        EXPECT_EQ(cause->outcome == "refused"_L1, meaning.refusesReceipt) << code;
        EXPECT_TRUE(!meaning.concernsAccount || cause->next == NextStep::Account) << code;
        // A new id is for a document that the service has, never for an answer to the receipt itself.
        EXPECT_NE(cause->next, NextStep::NewId) << code;
    }
}

TEST(Causes, HaveNoRowForACodeThatIsNotTheServices)
{
    for (const Cause& cause : causes()) {
        if (cause.kind != "service"_L1)
            continue;
        const int code = cause.names.constFirst().toInt();
        const auto isThis = [code](const auto& meaning) { return static_cast<int>(meaning.code) == code; };
        EXPECT_TRUE(std::ranges::any_of(serviceCodes, isThis)) << code;
    }
}

TEST(Causes, AreEachNamedOnceAndExplainedToEverybody)
{
    QSet<QString> names;
    for (const Cause& cause : causes()) {
        EXPECT_FALSE(cause.names.isEmpty());
        for (const QString& name : cause.names) {
            EXPECT_FALSE(names.contains(name)) << name.toStdString();
            names.insert(name);
        }
        for (const CauseTexts& texts : {cause.english, cause.russian}) {
            for (const QString& text : {texts.cashier, texts.administrator, texts.programmer})
                EXPECT_TRUE(text.endsWith(u'.')) << text.toStdString();
        }
    }
    EXPECT_GT(names.size(), 50);
}

TEST(Causes, AreFoundInALineOfTheLog)
{
    const auto found = [](const QString& line) {
        const Cause* cause = causeIn(line);
        return cause ? cause->names.constFirst() : QString();
    };
    const QString line =
        u"Атол.Онлайн: нет ответа на POST /possystem/v4/g/sell: %1 (123 мс, запрос отправлен)"_s;
    EXPECT_EQ(found(line.arg(u"имя сервера не найдено"_s)), u"имя сервера не найдено"_s);
    EXPECT_EQ(found(line.arg(u"истекло время на отправку (предел 15000 мс)"_s)),
        u"истекло время на начало ответа"_s);
    EXPECT_EQ(found(line.arg(u"HTTP 200, тело не JSON: illegal value"_s)), u"тело не JSON"_s);
    EXPECT_EQ(found(line.arg(u"HTTP 502, тело не JSON: illegal value"_s)), u"HTTP 5xx"_s);
    EXPECT_EQ(found(line.arg(u"Соединение не установлено: CONNECT tunnel failed, response 407"_s)),
        u"CONNECT tunnel failed, response 407"_s);
    EXPECT_EQ(found(line.arg(u"соединение оборвано: CONNECT tunnel failed, response 502"_s)),
        u"CONNECT tunnel failed"_s);
    EXPECT_EQ(
        found(line.arg(u"сертификат сервера не принят: SSL certificate problem: certificate has expired"_s)),
        u"certificate has expired"_s);
    EXPECT_EQ(found(line.arg(u"TLS не согласован: unknown error, failed"_s)), u"TLS не согласован"_s);
    EXPECT_EQ(found(line.arg(u"соединение оборвано, запрос не повторён"_s)),
        u"сервер закрыл соединение без ответа"_s);
    EXPECT_EQ(found(u"Нет связи с ФР"_s), u"no-connection"_s);
    EXPECT_EQ(found(u"32"_s), QString());
    EXPECT_EQ(found(QString()), QString());
}

TEST(Causes, OfTheTransportAreFoundInOurMessages)
{
    int shown = 0;
    for (const Cause& cause : causes()) {
        for (const CauseTexts& texts : {cause.english, cause.russian}) {
            EXPECT_EQ(texts.cause.isEmpty(), texts.advice.isEmpty()) << texts.cause.toStdString();
            if (texts.cause.isEmpty())
                continue;
            ++shown;
            const Cause* found =
                causeIn(u"Cannot reach https://s/v4/: %1. %2"_s.arg(texts.cause, texts.advice));
            ASSERT_TRUE(found) << texts.cause.toStdString();
            EXPECT_EQ(found->names, cause.names) << texts.cause.toStdString();
            EXPECT_FALSE(texts.cause.endsWith(u'.')) << texts.cause.toStdString();
            EXPECT_TRUE(texts.advice.endsWith(u'.')) << texts.advice.toStdString();
        }
    }
    EXPECT_GT(shown, 40);
}

TEST(Causes, HoldNoMarksOfTheDocuments)
{
    for (const Cause& cause : causes()) {
        EXPECT_FALSE(cause.english.administrator.contains("**"_L1)) << cause.names.constFirst().toStdString();
        EXPECT_FALSE(cause.russian.administrator.contains("**"_L1)) << cause.names.constFirst().toStdString();
    }
}

TEST(NextStep, HasAName)
{
    EXPECT_EQ(nextStepName(NextStep::None), u"none"_s);
    EXPECT_EQ(nextStepName(NextStep::Rerun), u"rerun"_s);
    EXPECT_EQ(nextStepName(NextStep::Correct), u"correct"_s);
    EXPECT_EQ(nextStepName(NextStep::NewId), u"new-id"_s);
    EXPECT_EQ(nextStepName(NextStep::Account), u"account"_s);
}

} // namespace
