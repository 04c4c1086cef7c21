#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/service.h"
#include "tests/e2e/support/shop.h"
#include "tests/e2e/tables/tokens.h"

#include <QElapsedTimer>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;

const QStringList result{u"outcome"_s, u"recovered"_s};

constexpr auto renewed = " info frdriver.atolonline_0: Срок действия токена истёк. Получаем новый токен";

// The log of a run at info level.
struct LogOf
{
    explicit LogOf(const Shop& shop)
        : file(shop.file(u"frhost.log"_s, {}))
    {
    }
    [[nodiscard]] std::string text() const
    {
        QFile log(file);
        EXPECT_TRUE(log.open(QIODevice::ReadOnly)) << log.errorString().toStdString();
        return log.readAll().toStdString();
    }

    QString file;
    QStringList arguments{u"--log-level"_s, u"info"_s, u"--log-file"_s, file};
};

TEST(ExpiredToken, IsRenewedBeforeTheSaleIsSentAgain)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"sell","effect":"error","code":11,"match":{"next":1})");
    const Shop shop(emulator.url());
    const LogOf log(shop);
    const Ran sold = shop.frhost(log.arguments + QStringList{u"sell"_s, shop.receipts({u"r1"_s})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{u"registered -"_s});
    EXPECT_THAT(log.text(), HasSubstr(renewed));
    EXPECT_EQ(emulator.calls(), u"token sell token sell report"_s);
}

TEST(ExpiredToken, IsRenewedWhileWaitingForTheReceipt)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"report","effect":"error","code":11,"match":{"next":2})");
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({u"sell"_s, shop.receipts({u"r1"_s})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{u"registered -"_s});
    // The driver does not renew the token at the first status request, but does at the repeated one.
    EXPECT_EQ(emulator.calls(), u"token sell report report token report"_s)
        << "an accepted receipt is not sent again";
}

TEST(ShortLivedToken, IsRenewedInTheMiddleOfABatch)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"token","effect":"old-token","milliseconds":1000,"match":{"next":1})");
    emulator.addFault(
        R"("endpoint":"report","effect":"delay","milliseconds":1100,"match":{"external_id":"r2","next":1})");
    const Shop shop(emulator.url());
    const LogOf log(shop);
    const Ran sold =
        shop.frhost(log.arguments + QStringList{u"sell"_s, shop.receipts({u"r1"_s, u"r2"_s, u"r3"_s})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList(3, u"registered -"_s));
    EXPECT_EQ(emulator.calls().count(u"token"_s), 2);
    EXPECT_THAT(log.text(), HasSubstr(renewed));
}

// The driver renews a rejected token without an end.
TEST(RejectedToken, IsRenewedAFewTimesAndEverMoreSlowly)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"sell","effect":"error","code":11)");
    const Shop shop(emulator.url());
    QElapsedTimer timer;
    timer.start();
    const Ran stopped = shop.frhost({u"sell"_s, shop.receipts({u"r1"_s, u"r2"_s})});
    EXPECT_EQ(stopped.exitCode, 4);
    EXPECT_EQ(stopped.columns({u"id"_s, u"outcome"_s}), QStringList{u"r1 unknown"_s});
    EXPECT_THAT(stopped.err.toStdString(), HasSubstr("Receipts not sent: 1."));
    EXPECT_EQ(emulator.calls(), u"token sell token sell token sell token sell token sell"_s);
    EXPECT_GE(timer.elapsed(), 7000) << "the pauses between them";
}

TEST(RejectedToken, IsRenewedAsSlowlyWhenADocumentIsAskedAbout)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"report","effect":"error","code":11)");
    const Shop shop(emulator.url());
    const Ran asked = shop.frhost({u"info"_s, u"u"_s});
    EXPECT_EQ(asked.exitCode, 4);
    EXPECT_TRUE(asked.lines().isEmpty());
    EXPECT_THAT(asked.err.toStdString(), HasSubstr("The service does not accept the tokens that it issues"));
    EXPECT_EQ(emulator.calls(), u"token report token report token report token report token report"_s);
}

TEST(RefusedToken, IsToldWithWhatToCheck)
{
    struct Row
    {
        const char* code;
        const char* advice;
        const char* next;
    };
    for (const Row& row : {Row{"40", "issues no token: t. Check url and proxy", "account"},
             Row{"50", "issues no token: t. Run the same file again. If it stays like this, ask the service.",
                 "rerun"},
             Row{"777", "issues no token: t. Try again later", "rerun"}}) {
        const QByteArray refusal =
            R"({"error":{"type":"system","text":"t","code":)" + QByteArray(row.code) + "}}";
        const Service service([&](Service::Request& request) { request.answer(400, refusal.constData()); });
        const Shop shop(service.url());
        const Ran ran = shop.frhost({u"sell"_s, shop.receipts({u"r1"_s})});
        EXPECT_EQ(ran.exitCode, 4) << row.code;
        EXPECT_THAT(ran.err.toStdString(), HasSubstr(row.advice));
        EXPECT_EQ(ran.lineWith(u"failure"_s).value(u"next"_s).toString(), QString::fromLatin1(row.next));
    }
}

// An answer to a request for a token that holds none.
TEST(AnswerWithoutToken, IsNoConnection)
{
    for (const char* answer : answersWithoutToken) {
        const Service service([&](Service::Request& request) { request.answer(200, answer); });
        const Shop shop(service.url());
        for (const QStringList& command :
            {QStringList{u"check"_s}, QStringList{u"sell"_s, shop.receipts({u"r1"_s})}}) {
            const Ran ran = shop.frhost(command);
            EXPECT_EQ(ran.exitCode, 4) << answer;
            EXPECT_EQ(ran.columns({u"connected"_s}),
                command.first() == u"check"_s ? QStringList{u"false"_s} : QStringList())
                << answer;
            EXPECT_EQ(ran.lineWith(u"failure"_s).value(u"next"_s).toString(),
                command.first() == u"check"_s ? QString() : u"rerun"_s)
                << answer;
            EXPECT_THAT(ran.err.toStdString(), HasSubstr("holds no token. Try again later; if it stays like "
                                                         "this, ask the service. No receipt was sent."))
                << answer;
        }
    }
}

TEST(Waits, AreCountedInStatusRequests)
{
    const EmulatorProcess emulator({u"--waits"_s, u"3"_s});
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({u"sell"_s, shop.receipts({u"r1"_s})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{u"registered -"_s});
    EXPECT_EQ(emulator.calls(), u"token sell report report report report"_s);
}

} // namespace
