#include "tests/e2e/support/shop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

const QStringList result{QStringLiteral("id"), QStringLiteral("outcome"), QStringLiteral("recovered")};

TEST(InterruptedSale, WhoseAnswerIsLostIsUnknownAndThenRecovered)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"sell","effect":"close","phase":"after","match":{"next":1})");
    const Shop shop(emulator.url());
    const QStringList command{QStringLiteral("sell"), shop.receipts({QStringLiteral("r1")})};

    const Ran lost = shop.frhost(command);
    EXPECT_EQ(lost.exitCode, 4);
    EXPECT_EQ(lost.columns(result), QStringList{QStringLiteral("r1 unknown -")});
    EXPECT_EQ(lost.lines().first().value(QStringLiteral("error")).toObject(),
        (QJsonObject{{QStringLiteral("type"), QStringLiteral("FrWorkWithServiceException")},
            {QStringLiteral("message"), QStringLiteral("Нет связи с ФР")}}));
    EXPECT_THAT(lost.err.toStdString(), HasSubstr("Running the same file again is safe"));
    EXPECT_EQ(emulator.calls(), QStringLiteral("token sell"))
        << "nobody repeats a receipt without being told";

    const Ran again = shop.frhost(command);
    EXPECT_EQ(again.exitCode, 0) << again.err.toStdString();
    EXPECT_EQ(again.columns(result), QStringList{QStringLiteral("r1 registered true")});
}

TEST(InterruptedSale, WhoseStatusAnswersAreLostIsAskedAbout)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"report","effect":"close","match":{"next":2})");
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({QStringLiteral("sell"), shop.receipts({QStringLiteral("r1")})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{QStringLiteral("r1 registered -")});
    EXPECT_EQ(emulator.calls().count(QStringLiteral("sell")), 1);
}

TEST(InterruptedSale, ThatTheServiceAcceptedAndNeverSpeaksOfIsUnknownWithItsIdentifier)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"report","effect":"close")");
    const Shop shop(emulator.url());
    const Ran sold =
        shop.frhost({QStringLiteral("sell"), shop.receipts({QStringLiteral("r1"), QStringLiteral("r2")})});
    EXPECT_EQ(sold.exitCode, 4);
    EXPECT_EQ(sold.columns(result), QStringList{QStringLiteral("r1 unknown -")});
    EXPECT_FALSE(sold.lines().first().value(QStringLiteral("uuid")).toString().isEmpty());
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("Receipts not sent: 1."));
}

TEST(StoppedService, MeansThatNothingWasSent)
{
    EmulatorProcess emulator;
    const Shop shop(emulator.url());
    emulator.stop();
    for (const QStringList& command : {QStringList{QStringLiteral("check")},
             QStringList{QStringLiteral("sell"), shop.receipts({QStringLiteral("r1")})}}) {
        const Ran stopped = shop.frhost(command);
        EXPECT_EQ(stopped.exitCode, 4);
        EXPECT_EQ(stopped.out, QString());
        EXPECT_THAT(
            stopped.err.toStdString(), HasSubstr("No connection with the service at http://127.0.0.1:"));
        EXPECT_THAT(stopped.err.toStdString(), HasSubstr("Нет связи с ФР. Nothing was sent."));
    }
}

} // namespace
