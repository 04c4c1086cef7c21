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

constexpr auto expired =
    R"({"uuid":"","status":"fail","error":{"error_id":"e","code":11,"text":"t","type":"system"}})";
constexpr auto renewed = "Срок действия токена истёк. Получаем новый токен";

// A service that takes the token for expired at the first calls of a kind, and else passes all on.
class ExpiredToken : public testing::Test
{
protected:
    Ran sellWithExpiryAt(Call call, int times)
    {
        const EmulatorProcess emulator;
        const Service service(
            [call, times](Service::Request& request, int number) {
                if (request.call() == call && number <= times)
                    request.answer(401, expired);
                else
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

TEST_F(ExpiredToken, IsRenewedBeforeTheSaleIsSentAgain)
{
    const Ran sold = sellWithExpiryAt(Call::Sell, 1);
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{QStringLiteral("registered -")});
    EXPECT_THAT(sold.err.toStdString(), HasSubstr(renewed));
    EXPECT_EQ(tokens, 2);
    EXPECT_EQ(sales, 2);
}

TEST_F(ExpiredToken, IsRenewedWhileTheReceiptIsWaitedFor)
{
    // The driver does not renew it at the first question; the second one, asked again, does.
    const Ran sold = sellWithExpiryAt(Call::Report, 2);
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList{QStringLiteral("registered -")});
    EXPECT_EQ(tokens, 2);
    EXPECT_EQ(sales, 1) << "a receipt that was accepted is not sent again";
}

TEST(ShortToken, RunsOutInTheMiddleOfABatch)
{
    const EmulatorProcess emulator({QStringLiteral("--token-ttl"), QStringLiteral("1")});
    const Service service(
        [](Service::Request& request, int number) {
            if (request.call() == Call::Sell && number == 2)
                std::this_thread::sleep_for(1100ms);
            request.pass();
        },
        emulator.url());
    const Shop shop(service.url());
    const Ran sold = shop.frhost({QStringLiteral("sell"),
        shop.receipts({QStringLiteral("r1"), QStringLiteral("r2"), QStringLiteral("r3")})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(result), QStringList(3, QStringLiteral("registered -")));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr(renewed));
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
