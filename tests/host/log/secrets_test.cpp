#include "host/log/log4qt.h"
#include "host/log/secrets.h"
#include "tests/support/logcapture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <thread>
#include <vector>

namespace {

using namespace Qt::Literals::StringLiterals;
namespace secrets = hostruntime::secrets;
using secrets::Audience;

class Secrets : public testing::Test
{
protected:
    Secrets() { secrets::clear(); }
    ~Secrets() override { secrets::clear(); }
};

TEST_F(Secrets, MasksACredentialInEverySpelling)
{
    const QString value = uR"(p"a/s\s %Ж+&Z)"_s;
    secrets::addCredential(value);
    const QString json =
        QString::fromUtf8(QJsonDocument(QJsonObject{{u"k"_s, value}}).toJson(QJsonDocument::Compact));
    const QStringList texts{
        value,
        json,
        QString(json).replace(u'/', u"\\/"_s),
        QString(json).replace(u'Ж', u"\\u0416"_s),
        QString::fromLatin1(QUrl::toPercentEncoding(value)),
        QString::fromLatin1(QUrl::toPercentEncoding(value)).replace(u"%20"_s, u"+"_s),
        u"p%22a%2fs%5cs%20%25%d0%96%2b%26Z"_s,
    };
    QStringList masked;
    for (const QString& text : texts)
        masked << secrets::masked(text, Audience::Developer);
    EXPECT_EQ(masked, QStringList({u"***"_s, uR"({"k":"***"})"_s, uR"({"k":"***"})"_s, uR"({"k":"***"})"_s,
                          u"***"_s, u"***"_s, u"***"_s}));
}

TEST_F(Secrets, MasksACredentialEscapedForHtml)
{
    secrets::addCredential(uR"(a<b>&"c'Ж)"_s);
    for (const QString& text : {u"a&lt;b&gt;&amp;&quot;c&#39;Ж"_s, u"a&LT;b&GT;&AMP;&QUOT;c&apos;&#1046;"_s,
             u"&#97;&#060;&#x62;&#X3E;&#x0026;&#34;&#0099;&#x27;&#x416;"_s,
             u"a\\u003cb\\u003E&\\\"c\\u0027Ж"_s, u"a\\u0026lt;b&amp;gt;\\u0026amp;\\\"c'Ж"_s,
             u"a%26lt%3Bb%3E&%2522c%27Ж"_s})
        EXPECT_EQ(secrets::masked(u'<' + text + u'>', Audience::Developer), u"<***>"_s);
}

TEST_F(Secrets, MasksOneThatLooksLikeAnEscape)
{
    for (const QString& value : {u"100%25+1"_s, u"&amp;&lt"_s, uR"(\u0041\\n)"_s, u"&#38;"_s, u"%26%"_s}) {
        secrets::clear();
        secrets::addCredential(value);
        const QString json =
            QString::fromUtf8(QJsonDocument(QJsonObject{{u"k"_s, value}}).toJson(QJsonDocument::Compact));
        EXPECT_EQ(secrets::masked(value, Audience::Anyone), u"***"_s);
        EXPECT_EQ(secrets::masked(json, Audience::Anyone), uR"({"k":"***"})"_s);
        EXPECT_EQ(
            secrets::masked(QString::fromLatin1(QUrl::toPercentEncoding(value)), Audience::Anyone), u"***"_s);
        EXPECT_EQ(secrets::masked(value.toHtmlEscaped(), Audience::Anyone), u"***"_s);
    }
}

TEST_F(Secrets, MasksOverlappingValuesCompletely)
{
    secrets::addCredential(u"abcde"_s);
    secrets::addCredential(u"defgh"_s);
    secrets::addPersonal(u"ghijk"_s);
    EXPECT_EQ(secrets::masked(u"<abcdefghijk>"_s, Audience::Anyone), u"<***>"_s);
    EXPECT_EQ(secrets::masked(u"<abcdefghijk>"_s, Audience::Developer), u"<***ijk>"_s);
}

// One of the ways to write a character, and all of them in the course of time.
using Spelling = std::function<QString(const QString&)>;

QString hex(char32_t number, int digits)
{
    return u"%1"_s.arg(static_cast<uint>(number), digits, 16, QLatin1Char('0'));
}

QString json(const QString& character)
{
    QString text;
    for (const QChar unit : character)
        text += u"\\u"_s + hex(unit.unicode(), 4);
    return text;
}

QString percent(const QString& character)
{
    return QString::fromLatin1(character.toUtf8().toPercentEncoding({}, character.toUtf8()));
}

QString decimal(const QString& character, int digits = 1)
{
    return u"&#%1;"_s.arg(character.toUcs4().first(), digits, 10, QLatin1Char('0'));
}

const Spelling spellings[] = {
    [](const QString& c) { return c; },
    [](const QString& c) { return c.toHtmlEscaped(); },
    [](const QString& c) { return decimal(c); },
    [](const QString& c) { return decimal(c, 5); },
    [](const QString& c) { return u"&#x"_s + hex(c.toUcs4().first(), 1) + u';'; },
    [](const QString& c) { return u"&#X"_s + hex(c.toUcs4().first(), 6).toUpper() + u';'; },
    [](const QString& c) { return json(c); },
    [](const QString& c) { return json(c).toUpper().replace(u'U', u'u'); },
    [](const QString& c) { return percent(c); },
    [](const QString& c) { return percent(c).toLower(); },
    [](const QString& c) { return c == u" "_s ? u"+"_s : c; },
    [](const QString& c) { return u"\"\\/"_s.contains(c) ? u'\\' + c : c; },
    [](const QString& c) { return c == u"&"_s ? u"\\u0026amp;"_s : c; },
    [](const QString& c) { return percent(decimal(c)); },
};

TEST_F(Secrets, MasksAnyMixtureOfSpellings)
{
    std::mt19937 random(20261122);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    const auto alphabet = u"aZ09 &<>\"'\\/%+;#uxЖäé😀"_s.toUcs4();
    for (int round = 0; round < 20'000; ++round) {
        QString value;
        QString spelt;
        for (std::size_t left = 4 + below(9); left > 0; --left) {
            const char32_t point =
                alphabet.at(static_cast<qsizetype>(below(static_cast<std::size_t>(alphabet.size()))));
            const QString character = QString::fromUcs4(&point, 1);
            value += character;
            spelt += spellings[below(std::size(spellings))](character);
        }
        secrets::clear();
        secrets::addCredential(value);
        ASSERT_EQ(secrets::masked(u"[\n"_s + spelt + u"\n]"_s, Audience::Developer), u"[\n***\n]"_s)
            << value.toStdString() << " as " << spelt.toStdString();
    }
}

TEST_F(Secrets, LeaveEveryOtherTextAsItIs)
{
    secrets::addCredential(u"pass<word>&more"_s);
    for (const QString& text :
        {u"pass&lt;word&gt;&amp;mor"_s, u"&&&lt;&#;&#x;&#99999999;&unknown;%%4%zz\\\\u00\\"_s,
            u"&#xD800;%D0%zz%F5%80%80%80%C0%80"_s, u"pass&lt;word&gt;&AmP;MORE"_s})
        EXPECT_EQ(secrets::masked(text, Audience::Anyone), text);
}

TEST_F(Secrets, MasksAShortValueInQuotesHoweverTheyAreWritten)
{
    secrets::addCredential(u"1<"_s);
    EXPECT_EQ(secrets::masked(uR"(\"1\u003c\" &quot;1&lt;&quot; "1<")"_s, Audience::Anyone),
        uR"(\"***\" &quot;***&quot; "***")"_s);
}

TEST_F(Secrets, MasksEveryTextOfAJsonValue)
{
    secrets::addCredential(u"1<"_s);
    secrets::addCredential(u"canary"_s);
    secrets::addPersonal(u"buyer@example.com"_s);
    const auto parsed = [](const char* json) { return QJsonValue(QJsonDocument::fromJson(json).object()); };
    const QJsonValue value =
        parsed(R"({"a":[1,true,null,"1<","1&lt;","11<",{"canary":"a c&#97;nary"}],"b":"buyer@example.com"})");
    EXPECT_EQ(secrets::masked(value, Audience::Developer),
        parsed(R"({"a":[1,true,null,"***","***","11<",{"***":"a ***"}],"b":"buyer@example.com"})"));
    EXPECT_EQ(secrets::masked(value, Audience::Anyone)["b"_L1].toString(), u"***"_s);
}

TEST_F(Secrets, MasksALongerValueThatBeginsWithAnotherCompletely)
{
    secrets::addCredential(u"secret"_s);
    secrets::addCredential(u"secret-and-more"_s);
    EXPECT_EQ(secrets::masked(u"a secret-and-more b secret c"_s, Audience::Anyone), u"a *** b *** c"_s);
}

TEST_F(Secrets, MasksAShortValueOnlyAsACompleteQuotedText)
{
    secrets::addCredential(u"1"_s);
    EXPECT_EQ(secrets::masked(uR"({"pass":"1","n":11,"s":"11"} 1)"_s, Audience::Anyone),
        uR"({"pass":"***","n":11,"s":"11"} 1)"_s);
}

TEST_F(Secrets, IgnoresAnEmptyText)
{
    secrets::addCredential(QString());
    secrets::addPersonal(QString());
    EXPECT_EQ(secrets::masked(uR"("" text)"_s, Audience::Anyone), uR"("" text)"_s);
}

TEST_F(Secrets, ForgetsTheOldestBeyondTheLimit)
{
    secrets::addCredential(u"credential-0"_s);
    for (int i = 1; i <= 255; ++i)
        secrets::addCredential(u"another-%1"_s.arg(i));
    EXPECT_EQ(secrets::masked(u"credential-0"_s, Audience::Anyone), u"***"_s);
    secrets::addCredential(u"another-256"_s);
    EXPECT_EQ(secrets::masked(u"credential-0"_s, Audience::Anyone), u"credential-0"_s);
}

TEST_F(Secrets, CountsFromTheLastTimeThatAValueWasAdded)
{
    for (int i = 0; i < 64; ++i)
        secrets::addPersonal(u"buyer-%1"_s.arg(i));
    secrets::addPersonal(u"buyer-0"_s);
    secrets::addPersonal(u"buyer-64"_s);
    EXPECT_EQ(secrets::masked(u"buyer-0 buyer-64."_s, Audience::Anyone), u"*** ***."_s);
}

TEST_F(Secrets, EveryLevelOfALogMasksCredentialsAndAllButDebugMaskContacts)
{
    secrets::addCredential(u"token-value"_s);
    secrets::addPersonal(u"buyer@example.com"_s);
    const QString text = u"token-value buyer@example.com"_s;
    const LogCapture log;
    const auto* logger = Log4Qt::LogManager::logger(u"secrets"_s, QString());
    logger->debug(text);
    logger->debug("%1", text);
    logger->info("%1", text);
    logger->info("%1 %2", 1, text);
    logger->warn("%1", text);
    logger->error(text);
    logger->error("%1", text);
    logger->error("%1 %2 %3", text, 1, 2);
    EXPECT_EQ(log.lines(), QStringList({u"debug: *** buyer@example.com"_s, u"debug: *** buyer@example.com"_s,
                               u"info: *** ***"_s, u"info: 1 *** ***"_s, u"warn: *** ***"_s,
                               u"error: *** ***"_s, u"error: *** ***"_s, u"error: *** *** 1 2"_s}));
}

TEST_F(Secrets, LeaveWhatTheProgramItselfSays)
{
    secrets::addCredential(u"чека"_s);
    secrets::addPersonal(u"1008"_s);
    const LogCapture log;
    const auto* logger = Log4Qt::LogManager::logger(u"secrets"_s, QString());
    logger->debug("Открытие чека");
    logger->info("Закрытие чека");
    logger->warn("Отмена чека");
    logger->error("Сбой чека");
    logger->info("Закрытие чека %1", 1008);
    logger->info("Закрытие чека %1 (%2)", 1008, u"чека 1008"_s);
    logger->error("Сбой чека %1 %2 %3", 1008, u"чека"_s, u"x"_s);
    EXPECT_EQ(log.lines(), QStringList({u"debug: Открытие чека"_s, u"info: Закрытие чека"_s,
                               u"warn: Отмена чека"_s, u"error: Сбой чека"_s, u"info: Закрытие чека 1008"_s,
                               u"info: Закрытие чека 1008 (*** ***)"_s, u"error: Сбой чека 1008 *** x"_s}));
}

TEST_F(Secrets, AreSharedByThreads)
{
    std::vector<std::thread> threads;
    for (int n = 0; n < 4; ++n) {
        threads.emplace_back([n] {
            for (int i = 0; i < 50; ++i) {
                const QString value = u"value-%1-%2"_s.arg(n).arg(i);
                secrets::addCredential(value);
                EXPECT_EQ(secrets::masked(value + u'.', Audience::Anyone), u"***."_s);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
