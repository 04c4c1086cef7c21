#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/shop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;

const QStringList result{u"outcome"_s, u"recovered"_s};

constexpr auto renewed = "Срок действия токена истёк. Получаем новый токен";

TEST(ExpiredToken, IsRenewedBeforeTheSaleIsSentAgain)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"sell","effect":"error","code":11,"match":{"next":1})");
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({u"sell"_s, shop.receipts({u"r1"_s})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{u"registered -"_s});
    EXPECT_THAT(sold.err.toStdString(), HasSubstr(renewed));
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
    const Ran sold = shop.frhost({u"sell"_s, shop.receipts({u"r1"_s, u"r2"_s, u"r3"_s})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList(3, u"registered -"_s));
    EXPECT_EQ(emulator.calls().count(u"token"_s), 2);
    EXPECT_THAT(sold.err.toStdString(), HasSubstr(renewed));
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
