#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/shop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;

const QStringList result{u"id"_s, u"outcome"_s, u"recovered"_s};

TEST(InterruptedSale, IsUnknownWhenItsAnswerIsLostAndThenRecovered)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"sell","effect":"close","phase":"after","match":{"next":1})");
    const Shop shop(emulator.url());
    const QStringList command{u"sell"_s, shop.receipts({u"r1"_s})};

    const Ran lost = shop.frhost(command);
    EXPECT_EQ(lost.exitCode, 4);
    EXPECT_EQ(lost.columns(result), QStringList{u"r1 unknown -"_s});
    EXPECT_EQ(lost.lines().first().value(u"error"_s).toObject(),
        (QJsonObject{{u"type"_s, u"FrWorkWithServiceException"_s},
            {u"message"_s, u"No answer from the service: the connection broke off"_s}}));
    EXPECT_THAT(lost.err.toStdString(), HasSubstr("Running the same file again is safe"));
    EXPECT_EQ(emulator.calls(), u"token sell"_s) << "nothing repeats a receipt by itself";

    const Ran again = shop.frhost(command);
    EXPECT_EQ(again.exitCode, 0) << again.err.toStdString();
    EXPECT_EQ(again.columns(result), QStringList{u"r1 registered true"_s});
}

TEST(InterruptedSale, IsAskedAboutAgainWhenStatusAnswersAreLost)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"report","effect":"close","match":{"next":2})");
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({u"sell"_s, shop.receipts({u"r1"_s})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{u"r1 registered -"_s});
    EXPECT_EQ(emulator.calls().count(u"sell"_s), 1);
}

TEST(InterruptedSale, IsUnknownWithItsUuidWhenEveryStatusAnswerIsLost)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"report","effect":"close")");
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({u"sell"_s, shop.receipts({u"r1"_s, u"r2"_s})});
    EXPECT_EQ(sold.exitCode, 4);
    EXPECT_EQ(sold.columns(result), QStringList{u"r1 unknown -"_s});
    EXPECT_FALSE(sold.lines().first().value(u"uuid"_s).toString().isEmpty());
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("Receipts not sent: 1."));
}

TEST(StoppedService, MeansThatNothingWasSent)
{
    EmulatorProcess emulator;
    const Shop shop(emulator.url());
    emulator.stop();
    for (const QStringList& command :
        {QStringList{u"check"_s}, QStringList{u"sell"_s, shop.receipts({u"r1"_s})}}) {
        const Ran stopped = shop.frhost(command);
        EXPECT_EQ(stopped.exitCode, 4);
        EXPECT_EQ(stopped.columns({u"connected"_s}),
            command.first() == u"check"_s ? QStringList{u"false"_s} : QStringList());
        EXPECT_THAT(stopped.err.toStdString(), HasSubstr("Cannot reach http://127.0.0.1:"));
        EXPECT_THAT(stopped.err.toStdString(),
            HasSubstr(": nobody accepts connections there. Check url, the network and the firewall. "
                      "No receipt was sent."));
    }
}

} // namespace
