#include "host/records/fiscaldocument.h"
#include "host/records/frpayment.h"
#include "tests/driver/wire/wireclient.h"
#include "tests/support/sleeplessdriver.h"
#include "tests/support/wire/rawserver.h"

#include <gtest/gtest.h>

#include <csignal>
#include <thread>
#include <vector>

namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int registers = 20;
constexpr int receiptsEach = 5;

// Accepts a receipt with its external id as uuid, and reports that as the number of its fiscal storage.
void serve(Peer& peer, const std::string& request)
{
    const auto between = [&](const std::string& from, char to) {
        const std::size_t begin = request.find(from) + from.size();
        return request.substr(begin, request.find(to, begin) - begin);
    };
    if (request.starts_with("GET "))
        peer.answer(
            200, R"({"status":"done","payload":{"fn_number":")" + between("/report/", ' ') + R"("}})");
    else if (request.find("getToken") != std::string::npos)
        peer.answer(200, R"({"token":"T-shared-by-all"})");
    else
        peer.answer(200, R"({"uuid":")" + between(R"("external_id":")", '"') + R"("})");
}

// Sells the receipts of one register; returns what the service reported for each.
QStringList sell(unsigned number, const std::string& address)
{
    AtolOnlineSettings settings;
    settings.setDeviceId(number);
    settings.setUrl(QString::fromStdString(address));
    settings.setGroupCode(u"g"_s);
    SleeplessDriver driver(&settings);
    driver.connect();
    QStringList sold;
    for (int i = 0; i < receiptsEach; ++i) {
        FiscalDocument document;
        document.setInternalIdentifier(u"%1-%2"_s.arg(number).arg(i));
        driver.checkOpen(document);
        driver.setRequisite(FdRequisite(EFrDriver::BuyerContact, u"buyer%1@example.com"_s.arg(number)));
        driver.checkAddPosition(FrPosition());
        driver.checkPay(FrPayment(1, 10));
        driver.checkClose(document);
        sold << driver.getFiscalInfo(0, true).fnNumber;
    }
    return sold;
}

class Threads : public testing::TestWithParam<bool>
{
};

TEST_P(Threads, GiveEachOfTwentyRegistersItsOwnReceipts)
{
    const Defaults defaults(trusting());
    const RawServer server(&serve, GetParam() ? authority().server() : SslContext());
    const std::string address = server.url() + "/v4/";
    std::vector<QStringList> sold(registers);
    std::vector<std::thread> threads;
    for (int i = 0; i < registers; ++i)
        threads.emplace_back(
            [&, i] { sold[static_cast<std::size_t>(i)] = sell(static_cast<unsigned>(i), address); });
    for (std::thread& thread : threads)
        thread.join();
    for (int i = 0; i < registers; ++i) {
        QStringList own;
        for (int k = 0; k < receiptsEach; ++k)
            own << u"%1-%2"_s.arg(i).arg(k);
        EXPECT_EQ(sold[static_cast<std::size_t>(i)], own);
    }
    EXPECT_EQ(server.requests().size(), std::size_t(registers * (1 + 2 * receiptsEach)));
}

INSTANTIATE_TEST_SUITE_P(
    Wire, Threads, testing::Bool(), [](const auto& run) { return std::string(run.param ? "Tls" : "Plain"); });

TEST(Signals, AreLeftToTheHostProgram)
{
    std::vector<struct sigaction> before(32);
    const auto read = [](std::vector<struct sigaction>& actions) {
        for (std::size_t i = 1; i < actions.size(); ++i)
            ::sigaction(static_cast<int>(i), nullptr, &actions[i]);
    };
    read(before);
    const RawServer server([&](Peer& peer, const std::string&) {
        std::vector<struct sigaction> during(32);
        read(during);
        for (std::size_t i = 1; i < before.size(); ++i)
            EXPECT_EQ(during[i].sa_handler, before[i].sa_handler) << "signal " << i;
        peer.answer(200, R"({"token":"T"})");
    });
    WireClient client(server.url() + "/v4/");
    EXPECT_EQ(client.run(Operation::Token), u"returned"_s);
}

} // namespace
