#include "emulator/store/sqlite.h"
#include "tests/emulator/support/receiver.h"
#include "tests/emulator/support/running.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <stdexcept>
#include <unistd.h>

using emulator::Json;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

class Callbacks : public RunningEmulator
{
protected:
    Callbacks() { options.callbacks.emplace(); }

    void begin()
    {
        start();
        takeToken();
    }

    // Returns the uuid.
    std::string sellWith(const std::string& url, const std::string& id = "till-1")
    {
        Json receipt = goodReceipt();
        receipt["external_id"] = id;
        receipt["service"]["callback_url"] = url;
        const Json answer = sell(receipt).json();
        return answer["uuid"].get<std::string>();
    }

    // The recorded callback of that id, once there is one.
    Json callbackOf(const std::string& id = "till-1")
    {
        for (int tries = 0; tries < 3000; ++tries) {
            const Json all = get("/_emulator/exchanges?external_id=" + id).json()["exchanges"];
            for (const Json& one : all) {
                if (one["endpoint"] == "callback")
                    return one;
            }
            ::usleep(10'000);
        }
        throw std::runtime_error("no callback was recorded");
    }

    void useFile()
    {
        options.database = testing::TempDir() + "fremulator-callbacks-" + std::to_string(::getpid()) + ".db";
    }

    void removeFile()
    {
        stop();
        for (const char* suffix : {"", "-wal", "-shm"})
            std::remove((options.database + suffix).c_str());
    }

    void addFault(const Json& fault) { EXPECT_EQ(post("/_emulator/faults", fault).status, 200); }
};

std::string bodyOf(const std::string& request)
{
    return request.substr(request.find("\r\n\r\n") + 4);
}

} // namespace

TEST_F(Callbacks, PostTheStatusAnswerOfAFinishedReceipt)
{
    Receiver receiver;
    begin();
    for (const auto& [id, status] : {std::pair("good", "done"), std::pair("bad", "fail")}) {
        if (status == std::string("fail"))
            addFault({{"endpoint", "sell"}, {"effect", "fail"}});
        const std::string uuid = sellWith(receiver.url("127.0.0.1", "/done?till=1"), id);
        const std::string request = receiver.requests(status == std::string("done") ? 1 : 2).back();
        EXPECT_THAT(request, StartsWith("POST /done?till=1 HTTP/1.1\r\n"));
        EXPECT_THAT(request, HasSubstr("\r\nContent-Type: application/json; charset=utf-8\r\n"));
        EXPECT_EQ(bodyOf(request), report(uuid).body);
        EXPECT_EQ(Json::parse(bodyOf(request))["status"], status);

        const Json recorded = callbackOf(id);
        EXPECT_EQ(recorded["request"], request);
        EXPECT_THAT(recorded["answer"].get<std::string>(), EndsWith("\r\n\r\nOK"));
        EXPECT_EQ(recorded["status"], 200);
        EXPECT_EQ(recorded["uuid"], uuid);
        EXPECT_EQ(recorded["fault"], "");
    }
}

TEST_F(Callbacks, ReachLocalhostAndIpv6)
{
    Receiver receiver;
    Receiver wide("HTTP/1.1 204 No Content\r\n\r\n", true);
    begin();
    (void)sellWith(receiver.url("localhost"), "by-name");
    EXPECT_THAT(receiver.requests(1)[0],
        HasSubstr("\r\nHost: localhost:" + std::to_string(receiver.port()) + "\r\n"));
    (void)sellWith(wide.url("[::1]"), "wide");
    EXPECT_THAT(wide.requests(1)[0], HasSubstr("\r\nHost: [::1]:"));
    EXPECT_EQ(callbackOf("wide")["status"], 204);
}

TEST_F(Callbacks, GoToThisMachineOnly)
{
    begin();
    for (const std::string url :
        {"http://192.0.2.1/", "https://127.0.0.1/", "http://shop.example/done", "till"}) {
        (void)sellWith(url, url);
        const Json recorded = callbackOf(url);
        EXPECT_EQ(recorded["fault"], "not called: callback_url is not an http address of this machine");
        EXPECT_EQ(recorded["request"], "");
        EXPECT_EQ(recorded["status"], 0);
    }
}

TEST_F(Callbacks, FollowNoRedirects)
{
    Receiver other;
    Receiver receiver(
        "HTTP/1.1 307 Temporary Redirect\r\nLocation: " + other.url() + "\r\nContent-Length: 0\r\n\r\n");
    begin();
    (void)sellWith(receiver.url());
    EXPECT_EQ(callbackOf()["status"], 307);
    EXPECT_TRUE(other.requests(0).empty());
}

TEST_F(Callbacks, RecordWhyTheyFailed)
{
    options.callbacks->patience = std::chrono::milliseconds(50);
    Receiver silent("");
    Receiver garbage("What?\r\n\r\n");
    Receiver endless("HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n");
    std::string nobody;
    {
        const Receiver gone;
        nobody = gone.url();
    }
    begin();
    const std::pair<std::string, const char*> rows[] = {
        {silent.url(), "no valid answer: no answer within 50 ms"},
        {nobody, "cannot connect: Connection refused"}, {garbage.url(), "no valid answer: bad version"},
        {endless.url(), "no valid answer: body limit exceeded"}};
    for (const auto& [url, reason] : rows) {
        (void)sellWith(url, url);
        const Json recorded = callbackOf(url);
        EXPECT_EQ(recorded["fault"], reason);
        EXPECT_EQ(recorded["status"], 0);
        EXPECT_THAT(recorded["request"].get<std::string>(), StartsWith("POST /done "));
    }
}

TEST_F(Callbacks, AreBounded)
{
    const auto ids = {"1", "2", "3", "4"};
    options.callbacks = {.underWay = 2, .waiting = 4, .patience = std::chrono::milliseconds(300)};
    options.service.latencyLow = options.service.latencyHigh = std::chrono::milliseconds(20);
    Receiver silent("");
    begin();
    for (const std::string id : ids)
        (void)sellWith(silent.url(), id);
    // All of them are finished at once.
    passTime(std::chrono::seconds(1));
    for (const std::string id : ids)
        (void)callbackOf(id);
    EXPECT_EQ(silent.requests(4).size(), 4U);
    EXPECT_EQ(silent.mostAtOnce(), 2U);

    options.callbacks->waiting = 3;
    options.service.latencyLow = options.service.latencyHigh = std::chrono::hours(1);
    options.service.queueTimeout = std::chrono::hours(24);
    begin();
    for (const std::string id : ids)
        (void)sellWith(silent.url(), id);
    EXPECT_EQ(callbackOf("4")["fault"], "not called: too many callbacks are still to come");
}

TEST_F(Callbacks, RefuseALongAddress)
{
    Receiver receiver;
    begin();
    (void)sellWith(
        "http://127.0.0.1:" + std::string(70'000, '0') + std::to_string(receiver.port()) + "/", "long");
    EXPECT_EQ(callbackOf("long")["fault"], "not called: callback_url has over 2048 characters");
}

TEST_F(Callbacks, ForgetReceiptsThatTheStoreHasForgotten)
{
    options.callbacks->waiting = 2;
    options.service.waits = 1;
    options.keep = 1;
    Receiver receiver;
    begin();
    for (const std::string id : {"1", "2", "3", "4"})
        (void)sellWith(receiver.url(), id);
    EXPECT_EQ(report(sellWith(receiver.url(), "5")).json()["status"], "wait");
    EXPECT_EQ(Json::parse(bodyOf(receiver.requests(1)[0]))["external_id"], "5");
}

TEST_F(Callbacks, ForgetReceiptsThatAreDeleted)
{
    options.callbacks->waiting = 1;
    options.service.latencyLow = options.service.latencyHigh = std::chrono::milliseconds(20);
    Receiver receiver;
    begin();
    (void)sellWith(receiver.url(), "deleted");
    EXPECT_EQ(call("DELETE", "/_emulator/documents").status, 200);
    (void)sellWith(receiver.url(), "kept");
    passTime(std::chrono::seconds(1));
    EXPECT_EQ(Json::parse(bodyOf(receiver.requests(1)[0]))["external_id"], "kept");
}

TEST_F(Callbacks, LeaveTheEmulatorRunningWhenTheStoreFails)
{
    options.callbacks->underWay = 1;
    options.service.latencyLow = options.service.latencyHigh = std::chrono::milliseconds(20);
    for (const char* table : {"documents", "exchanges"}) {
        useFile();
        Receiver receiver;
        begin();
        (void)sellWith("http://192.0.2.1/", "not called");
        (void)sellWith(receiver.url());
        (void)sellWith(receiver.url(), "after a lost record");
        emulator::sqlite::Database(options.database, [table](emulator::sqlite::Database& database) {
            database.execute(("DROP TABLE " + std::string(table)).c_str());
        });
        passTime(std::chrono::seconds(1));
        if (table == std::string("exchanges"))
            EXPECT_EQ(receiver.requests(2).size(), 2U);
        else
            ::usleep(60'000); // until the timer has run out
        EXPECT_EQ(get("/_emulator/service").status, 200);
        removeFile();
    }
}

TEST_F(Callbacks, AreMadeOnceEvenIfTheAnswerWasLostAndTheCallRepeated)
{
    Receiver receiver;
    begin();
    addFault({{"endpoint", "sell"}, {"effect", "close"}, {"phase", "after"}, {"match", {{"next", 2}}}});
    Json receipt = goodReceipt();
    receipt["service"]["callback_url"] = receiver.url();
    for (int i = 0; i < 2; ++i) {
        RawClient client(port());
        client.send(postRequest(base + std::string("group-1/sell"), receipt.dump(), tokenHeader()));
        EXPECT_EQ(client.receiveAll().status, 0);
    }
    EXPECT_EQ(sell(receipt).json()["error"]["code"], 33);
    (void)sellWith(receiver.url(), "another");
    (void)callbackOf("another");
    EXPECT_EQ(receiver.requests(2).size(), 2U);
}

TEST_F(Callbacks, WaitUntilAStatusAnswerHasTheResult)
{
    options.service.waits = 1;
    Receiver receiver;
    begin();
    const std::string uuid = sellWith(receiver.url());
    (void)sellWith(receiver.url(), "never asked for");
    EXPECT_EQ(report(uuid).json()["status"], "wait");
    EXPECT_EQ(Json::parse(bodyOf(receiver.requests(1)[0]))["external_id"], "till-1");
}

TEST_F(Callbacks, AreMadeForReceiptsThatARestartInterrupted)
{
    useFile();
    options.service.latencyLow = options.service.latencyHigh = std::chrono::milliseconds(20);
    Receiver receiver;
    begin();
    const std::string uuid = sellWith(receiver.url());
    begin();
    EXPECT_TRUE(receiver.requests(0).empty());
    passTime(std::chrono::milliseconds(20));
    EXPECT_EQ(Json::parse(bodyOf(receiver.requests(1)[0]))["uuid"], uuid);
    removeFile();
}
