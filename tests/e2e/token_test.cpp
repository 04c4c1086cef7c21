#include "tests/e2e/support/shop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

const QStringList result{QStringLiteral("outcome"), QStringLiteral("recovered")};

constexpr auto renewed = "Срок действия токена истёк. Получаем новый токен";

TEST(ExpiredToken, IsRenewedBeforeTheSaleIsSentAgain)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"sell","effect":"error","code":11,"match":{"next":1})");
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({QStringLiteral("sell"), shop.receipts({QStringLiteral("r1")})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{QStringLiteral("registered -")});
    EXPECT_THAT(sold.err.toStdString(), HasSubstr(renewed));
    EXPECT_EQ(emulator.calls(), QStringLiteral("token sell token sell report"));
}

TEST(ExpiredToken, IsRenewedWhileTheReceiptIsWaitedFor)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"report","effect":"error","code":11,"match":{"next":2})");
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({QStringLiteral("sell"), shop.receipts({QStringLiteral("r1")})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{QStringLiteral("registered -")});
    // The driver does not renew it at the first question; the second one, asked again, does.
    EXPECT_EQ(emulator.calls(), QStringLiteral("token sell report report token report"))
        << "a receipt that was accepted is not sent again";
}

TEST(ShortToken, RunsOutInTheMiddleOfABatch)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"token","effect":"old-token","milliseconds":1000,"match":{"next":1})");
    emulator.addFault(
        R"("endpoint":"report","effect":"delay","milliseconds":1100,"match":{"external_id":"r2","next":1})");
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({QStringLiteral("sell"),
        shop.receipts({QStringLiteral("r1"), QStringLiteral("r2"), QStringLiteral("r3")})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList(3, QStringLiteral("registered -")));
    EXPECT_EQ(emulator.calls().count(QStringLiteral("token")), 2);
    EXPECT_THAT(sold.err.toStdString(), HasSubstr(renewed));
}

TEST(Waits, AreCountedInQuestions)
{
    const EmulatorProcess emulator({QStringLiteral("--waits"), QStringLiteral("3")});
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({QStringLiteral("sell"), shop.receipts({QStringLiteral("r1")})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{QStringLiteral("registered -")});
    EXPECT_EQ(emulator.calls(), QStringLiteral("token sell report report report report"));
}

} // namespace
