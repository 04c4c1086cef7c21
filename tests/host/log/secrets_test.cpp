#include "host/log/log4qt.h"
#include "host/log/secrets.h"
#include "tests/support/logcapture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <gtest/gtest.h>

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
    const QString json = QString::fromUtf8(QJsonDocument({{u"k"_s, value}}).toJson(QJsonDocument::Compact));
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
