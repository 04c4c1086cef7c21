#include "tests/e2e/service.h"
#include "tests/e2e/shop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

using testing::HasSubstr;
using Call = Service::Call;
using namespace std::chrono_literals;

const QStringList result{QStringLiteral("outcome"), QStringLiteral("recovered")};

// An emulator whose tokens live for a second, behind a service that holds one call back until the token has
// expired.
class ShortToken : public testing::Test
{
protected:
    Ran sellWithExpiryBefore(Call call)
    {
        const EmulatorProcess emulator({QStringLiteral("--token-ttl"), QStringLiteral("1")});
        const Service service(
            [call](Service::Request& request, int number) {
                if (request.call() == call && number == 1)
                    std::this_thread::sleep_for(1100ms);
                request.pass();
            },
            emulator.url());
        const Shop shop(service.url());
        Ran sold = shop.frhost({QStringLiteral("sell"), shop.receipts({QStringLiteral("r1")})});
        tokens = service.count(Call::Token);
        sales = service.count(Call::Sell);
        return sold;
    }

    int tokens = 0;
    int sales = 0;
};

TEST_F(ShortToken, ThatExpiresBeforeTheSaleIsRenewed)
{
    const Ran sold = sellWithExpiryBefore(Call::Sell);
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{QStringLiteral("registered -")});
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("Срок действия токена истёк. Получаем новый токен"));
    EXPECT_EQ(tokens, 2);
    EXPECT_EQ(sales, 2);
}

TEST_F(ShortToken, ThatExpiresWhileTheReceiptIsWaitedForIsRenewed)
{
    const Ran sold = sellWithExpiryBefore(Call::Report);
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{QStringLiteral("registered -")});
    EXPECT_EQ(tokens, 2);
    EXPECT_EQ(sales, 1) << "a receipt that was accepted is not sent again";
}

TEST(Waits, AreCountedInQuestions)
{
    const EmulatorProcess emulator({QStringLiteral("--waits"), QStringLiteral("3")});
    const Service service([](Service::Request& request, int) { request.pass(); }, emulator.url());
    const Shop shop(service.url());
    const Ran sold = shop.frhost({QStringLiteral("sell"), shop.receipts({QStringLiteral("r1")})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{QStringLiteral("registered -")});
    EXPECT_EQ(service.count(Call::Report), 4);
}

} // namespace
