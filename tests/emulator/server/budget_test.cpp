#include "emulator/server/budget.h"
#include "tests/emulator/support/running.h"

#include <gmock/gmock.h>

#include <list>
#include <sys/resource.h>

using emulator::Budget;
using emulator::Json;
using emulator::Limits;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::size_t uncounted = 16 * 1024;

// Connections whose names are noted when they are closed.
struct Shares : testing::Test
{
    Budget::Account& open(const std::string& name, Budget::Peer peer = 1)
    {
        Budget::Account& account = accounts.emplace_back(budget, peer);
        account.setCloser([this, name] { closed.push_back(name); });
        return account;
    }

    Budget budget{Limits{.connections = 4, .connectionsOfPeer = 3, .memory = 100, .memoryOfPeer = 70}};
    std::list<Budget::Account> accounts;
    std::vector<std::string> closed;
};

struct Connections : RunningEmulator
{
    static bool isAnswered(RawClient& client)
    {
        client.send(getRequest("/_emulator/faults"));
        return client.receive().status == 200;
    }

    static bool isClosed(RawClient& client)
    {
        return client.receiveAll(std::chrono::milliseconds(200)).end != RawClient::End::Open;
    }
};

const std::string half =
    "POST /_emulator/faults HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 200000\r\n\r\n" +
    std::string(100'000, ' ');

} // namespace

TEST_F(Shares, CloseTheStalestConnectionForAnotherOne)
{
    Budget::Account& a = open("a", 1);
    open("b", 2);
    open("c", 2);
    open("d", 1);
    a.progress();
    EXPECT_TRUE(open("e", 3).isOpen());
    EXPECT_THAT(closed, ElementsAre("b"));
    EXPECT_TRUE(open("f", 3).isOpen());
    EXPECT_THAT(closed, ElementsAre("b", "c"));
}

TEST_F(Shares, CloseConnectionsOfTheSamePeerIfItHasTooMany)
{
    open("other", 2);
    open("a");
    open("b");
    open("c");
    EXPECT_TRUE(open("d").isOpen());
    EXPECT_THAT(closed, ElementsAre("a"));
}

TEST_F(Shares, LeaveBusyConnectionsAlone)
{
    for (const char* name : {"a", "b", "c"})
        open(name).setBusy(true);
    EXPECT_FALSE(open("d").isOpen());
    EXPECT_TRUE(open("e", 2).isOpen());
    EXPECT_THAT(closed, IsEmpty());
    accounts.front().setBusy(false);
    EXPECT_TRUE(open("f").isOpen());
    EXPECT_THAT(closed, ElementsAre("a"));
}

TEST_F(Shares, CloseTheStalestConnectionsThatHoldMemory)
{
    open("idle").hold(uncounted);
    Budget::Account& a = open("a");
    Budget::Account& b = open("b");
    a.hold(uncounted + 40);
    b.hold(uncounted + 30);
    EXPECT_THAT(closed, IsEmpty());
    b.hold(uncounted + 31);
    EXPECT_THAT(closed, ElementsAre("a"));
    b.hold(uncounted + 70);
    EXPECT_THAT(closed, ElementsAre("a"));
    EXPECT_FALSE(a.isOpen());
    Budget::Account& other = open("other", 2);
    other.hold(uncounted + 30);
    EXPECT_THAT(closed, ElementsAre("a"));
    other.hold(uncounted + 31);
    EXPECT_THAT(closed, ElementsAre("a", "b"));
    open("late", 3).hold(uncounted + 69);
    EXPECT_THAT(closed, ElementsAre("a", "b"));
}

TEST_F(Shares, AreReturnedAtTheEnd)
{
    for (int i = 0; i < 100; ++i) {
        open("a").hold(uncounted + 70);
        open("b", 2);
        accounts.clear();
    }
    EXPECT_THAT(closed, IsEmpty());
    open("a").hold(uncounted + 50);
    accounts.front().hold(0);
    open("b").hold(uncounted + 70);
    EXPECT_THAT(closed, IsEmpty());
}

TEST_F(Connections, CloseTheOldestIdleOneForAnother)
{
    options.limits.connections = 2;
    start();
    RawClient first(port());
    RawClient second(port());
    EXPECT_TRUE(isAnswered(second));
    EXPECT_TRUE(isAnswered(first));
    RawClient third(port());
    EXPECT_TRUE(isAnswered(third));
    EXPECT_TRUE(isClosed(second));
    EXPECT_TRUE(isAnswered(first));
}

TEST_F(Connections, OfAnotherAddressStay)
{
    options.limits.connectionsOfPeer = 2;
    start();
    RawClient other(port(), "127.0.0.2");
    EXPECT_TRUE(isAnswered(other));
    std::list<RawClient> crowd;
    for (int i = 0; i < 10; ++i)
        EXPECT_TRUE(isAnswered(crowd.emplace_back(port())));
    EXPECT_TRUE(isAnswered(other));
    EXPECT_TRUE(isClosed(crowd.front()));
    EXPECT_TRUE(isAnswered(crowd.back()));
}

TEST_F(Connections, ThatAwaitADelayedAnswerStay)
{
    options.limits.connections = 1;
    start();
    EXPECT_EQ(
        post("/_emulator/faults", {{"endpoint", "token"}, {"effect", "delay"}, {"milliseconds", 600}}).status,
        200);
    RawClient delayed(port());
    delayed.send(getRequest("/possystem/v4/getToken?login=shop&pass=secret"));
    EXPECT_FALSE(isClosed(delayed));
    RawClient another(port());
    EXPECT_TRUE(isClosed(another));
    EXPECT_EQ(delayed.receive().status, 200);
}

TEST_F(Connections, ThatAFaultHoldsOpenAreClosedForOthers)
{
    options.limits.connections = 1;
    options.faults = {emulator::readFault(Json{{"endpoint", "token"}, {"effect", "silent"}})};
    start();
    RawClient held(port());
    held.send(getRequest("/possystem/v4/getToken?login=shop&pass=secret"));
    EXPECT_FALSE(isClosed(held));
    RawClient another(port());
    EXPECT_TRUE(isAnswered(another));
    EXPECT_TRUE(isClosed(held));
}

TEST_F(Connections, WithHalfSentBodiesAreClosedForOthers)
{
    options.limits.memoryOfPeer = 1'000'000;
    start();
    RawClient idle(port());
    EXPECT_TRUE(isAnswered(idle));
    std::list<RawClient> clients;
    for (int i = 0; i < 20; ++i) {
        clients.emplace_back(port()).send(half);
        // A later answer means that the half has arrived.
        EXPECT_TRUE(isAnswered(idle));
    }
    std::size_t open = 0;
    for (RawClient& client : clients)
        open += client.receiveAll(std::chrono::milliseconds(20)).end == RawClient::End::Open ? 1U : 0U;
    EXPECT_GE(open, 1U);
    EXPECT_LE(open, 5U);
    EXPECT_TRUE(isClosed(clients.front()));
    clients.back().send(std::string(100'000, ' '));
    EXPECT_EQ(clients.back().receive().status, 400);
    EXPECT_TRUE(isAnswered(idle));
}

TEST_F(Connections, WhoseAnswersNobodyReadsAreClosedForOthers)
{
    options.limits.memoryOfPeer = 6'000'000;
    start();
    takeToken();
    Json body = goodReceipt();
    body["more"] = std::string(1'000'000, 'x');
    EXPECT_EQ(sell(body).status, 200);
    const std::string path = "/_emulator/documents/";
    const std::string uuid = get("/_emulator/documents?limit=1").json()["documents"][0]["uuid"];
    std::list<RawClient> clients;
    for (int i = 0; i < 6; ++i) {
        std::string requests;
        // More than the system takes from a sender when nobody reads.
        for (int n = 0; n < 12; ++n)
            requests += getRequest(path + uuid);
        clients.emplace_back(port()).send(requests);
    }
    RawClient last(port());
    EXPECT_TRUE(isAnswered(last));
    EXPECT_NE(clients.front().receiveAll().end, RawClient::End::Open);
}

TEST_F(Connections, FollowEventsUpToALimit)
{
    options.limits.followers = 2;
    start();
    std::list<RawClient> pages;
    for (int i = 0; i < 5; ++i) {
        pages.emplace_back(port()).send(getRequest("/_emulator/events"));
        EXPECT_EQ(pages.back().receiveUntil(": hel", "\n\n"), "lo");
    }
    EXPECT_EQ(post("/_emulator/faults", {{"endpoint", "sell"}, {"effect", "close"}}).status, 200);
    std::vector<bool> follows;
    for (RawClient& page : pages)
        follows.push_back(!isClosed(page));
    EXPECT_THAT(follows, ElementsAre(false, false, false, true, true));
}

TEST_F(Connections, ServeAThousandClientsAtOnce)
{
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = limit.rlim_max;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    ASSERT_GT(limit.rlim_max, 2100u) << "this machine does not allow enough descriptors";

    start();
    takeToken();
    std::list<RawClient> clients;
    for (int i = 0; i < 1000; ++i)
        clients.emplace_back(port());
    for (int round = 0; round < 2; ++round) {
        int id = round * 1000;
        for (const RawClient& client : clients)
            client.send(postRequest("/possystem/v4/group-1/sell",
                goodReceipt("id-" + std::to_string(++id)).dump(), tokenHeader()));
        for (RawClient& client : clients)
            ASSERT_EQ(client.receive().status, 200);
    }
    EXPECT_EQ(get("/_emulator/expect?count=2000&wire_requests=1").status, 200);
}
