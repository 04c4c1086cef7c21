#include "tests/emulator/support/running.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <sys/stat.h>

using emulator::Json;
using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

struct State : RunningEmulator
{
    void ready()
    {
        start();
        takeToken();
    }

    std::string registered(const std::string& id) { return sell(goodReceipt(id)).json()["uuid"]; }

    std::string status(const std::string& uuid)
    {
        const Json answer = report(uuid).json();
        const Json& error = answer["error"];
        return answer["status"].get<std::string>() + (error.is_null() ? "" : " " + error["code"].dump()) +
               (error.is_object() && answer["status"] == "fail" ? " " + error["type"].get<std::string>()
                                                                : "");
    }
};

struct StateInAFile : State
{
    StateInAFile()
    {
        options.database = testing::TempDir() + "fremulator-" + std::to_string(::getpid()) + ".db";
        removeFiles();
    }
    ~StateInAFile() override
    {
        stop();
        removeFiles();
    }
    // Database and journal.
    std::string bytesOfFiles() const
    {
        std::ostringstream bytes;
        for (const char* suffix : {"", "-wal"}) {
            std::ifstream file(options.database + suffix, std::ios::binary);
            if (file.peek() != std::ifstream::traits_type::eof())
                bytes << file.rdbuf();
        }
        return bytes.str();
    }
    void removeFiles() const
    {
        for (const char* suffix : {"", "-wal", "-shm"})
            std::remove((options.database + suffix).c_str());
    }
};

} // namespace

TEST_F(StateInAFile, SurvivesARestart)
{
    options.service.waits = 2;
    ready();
    const std::string uuid = registered("id-1");
    const std::string other = registered("id-2");
    EXPECT_EQ(status(uuid), "wait 34");

    start();
    EXPECT_EQ(status(uuid), "wait 34");
    const Json done = report(uuid).json();
    EXPECT_EQ(done["status"], "done");
    EXPECT_EQ(done["payload"]["fiscal_document_number"], 3);
    EXPECT_EQ(done["payload"]["ofd_receipt_url"], "http://127.0.0.1:" + std::to_string(port()) + "/#" + uuid);
    EXPECT_EQ(sell(goodReceipt("id-2")).json()["uuid"], other);
    EXPECT_EQ(get("/_emulator/expect?external_id=id-2&wire_requests=2").status, 200);
    options.service.waits = 0;
    start();
    const Json next = report(registered("id-3")).json()["payload"];
    EXPECT_EQ(next["fiscal_document_number"], 5);
    EXPECT_EQ(next["fiscal_receipt_number"], 3);
    EXPECT_EQ(next["shift_number"], 1);
}

TEST_F(StateInAFile, AddsRegistersAndKeepsTheExistingOnes)
{
    ready();
    EXPECT_EQ(report(registered("1")).json()["payload"]["fn_number"], "0000990700000001");
    options.service.groups.front().registers = 2;
    start();
    EXPECT_EQ(report(registered("2")).json()["payload"]["fn_number"], "0000990700000002");
    const Json payload = report(registered("3")).json()["payload"];
    EXPECT_EQ(payload["fn_number"], "0000990700000001");
    EXPECT_EQ(payload["fiscal_document_number"], 4);
}

TEST_F(StateInAFile, IsRejectedIfTheFileIsNotADatabase)
{
    std::ofstream(options.database) << std::string(4096, 'x');
    EXPECT_THROW(start(), emulator::sqlite::Error);
}

TEST_F(StateInAFile, LeavesAFileThatIsNotADatabaseAsItIs)
{
    for (const std::string content : {"x", "SQLite format 3?", "notes that everybody in the team reads"}) {
        std::ofstream(options.database) << content;
        ASSERT_EQ(::chmod(options.database.c_str(), 0664), 0);
        EXPECT_THROW(start(), std::runtime_error);
        struct stat file = {};
        ASSERT_EQ(::stat(options.database.c_str(), &file), 0);
        EXPECT_EQ(file.st_mode & 07777U, 0664U) << content;
        EXPECT_EQ(bytesOfFiles(), content);
    }
}

TEST_F(StateInAFile, IsReadableForItsOwnerOnly)
{
    const auto modes = [this] {
        std::string all;
        for (const char* suffix : {"", "-wal", "-shm"}) {
            struct stat file = {};
            EXPECT_EQ(::stat((options.database + suffix).c_str(), &file), 0) << suffix;
            std::ostringstream mode;
            mode << std::oct << (file.st_mode & 07777U);
            all += mode.str() + " ";
        }
        return all;
    };
    for (const mode_t mask : {0U, 0777U}) {
        removeFiles();
        const mode_t before = ::umask(mask);
        ready();
        registered("id-1");
        EXPECT_EQ(modes(), "600 600 600 ") << std::oct << mask;
        stop();
        ::umask(before);
    }
    // A file of an older emulator, left by a kill.
    for (const char* suffix : {"", "-wal", "-shm"}) {
        std::ofstream(options.database + suffix, std::ios::app);
        EXPECT_EQ(::chmod((options.database + suffix).c_str(), 0666), 0);
    }
    ready();
    EXPECT_EQ(modes(), "600 600 600 ");
}

TEST_F(StateInAFile, IsUsedByOneEmulatorOnly)
{
    ready();
    const std::string uuid = registered("id-1");
    try {
        const emulator::Emulator second(options);
        FAIL() << "the second emulator has started";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(error.what(), "cannot use " + options.database + ": another fremulator is using it");
    }
    EXPECT_EQ(status(uuid), "done");
    start();
    EXPECT_EQ(status(uuid), "done");
}

TEST_F(StateInAFile, HoldsNoToken)
{
    ready();
    EXPECT_THAT(registered("id-1"), testing::Not(""));
    const std::string header = tokenHeader();
    const std::string token = header.substr(7, header.size() - 9);
    EXPECT_THAT(bytesOfFiles(), AllOf(HasSubstr("id-1"), Not(HasSubstr(token))));
    start();
    EXPECT_EQ(sell(goodReceipt("id-2")).status, 200);
}

TEST_F(StateInAFile, KeepsTheTokensOfAnOlderEmulatorButNotReadable)
{
    const std::string token = "0123456789abcdef-token-of-an-older-emulator";
    const std::string large(100'000, 'x');
    {
        emulator::sqlite::Database old(options.database, [](emulator::sqlite::Database& database) {
            database.execute("PRAGMA journal_mode = WAL; CREATE TABLE tokens(sequence INTEGER PRIMARY KEY,"
                             " token TEXT UNIQUE, login TEXT, expires_at INTEGER)");
        });
        emulator::sqlite::Statement insert(old, "INSERT INTO tokens VALUES(NULL, ?, 'shop', 9000000000000)");
        insert.run(token);
        insert.run(token + large);
        ASSERT_THAT(bytesOfFiles(), HasSubstr(token));
    }
    for (int starts = 0; starts < 2; ++starts) {
        start();
        EXPECT_EQ(exchange(getRequest("/possystem/v4/group-1/report/x", "Token: " + token + "\r\n"))
                      .json()["error"]["code"],
            30);
        EXPECT_THAT(bytesOfFiles(), AllOf(HasSubstr("CREATE TABLE"), Not(HasSubstr(token))));
        stop();
        EXPECT_THAT(bytesOfFiles(), AllOf(HasSubstr("CREATE TABLE"), Not(HasSubstr(token))));
    }
}

TEST_F(StateInAFile, OfANewerEmulatorIsRefused)
{
    ready();
    stop();
    emulator::sqlite::Database(options.database,
        [](emulator::sqlite::Database& database) { database.execute("PRAGMA user_version = 2"); });
    try {
        start();
        FAIL() << "it has started";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(error.what(), "cannot use " + options.database + ": a newer fremulator wrote it");
    }
}

TEST_F(State, KeepsOnlyTheNewestDocuments)
{
    options.keep = 3;
    ready();
    const std::string first = registered("id-1");
    for (int i = 2; i <= 30; ++i)
        registered("id-" + std::to_string(i));
    EXPECT_EQ(get("/_emulator/documents").json()["documents"].size(), 3u);
    EXPECT_EQ(get("/_emulator/exchanges").json()["exchanges"].size(), 12u);
    EXPECT_EQ(get("/_emulator/expect?external_id=id-1&count=0&wire_requests=0").status, 200);
    EXPECT_EQ(status(first), "fail 30 system");
}

TEST_F(State, KeepsTokensHoweverFewDocumentsItKeeps)
{
    options.keep = 1;
    ready();
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(post("/possystem/v4/getToken", {{"login", "shop"}, {"pass", "secret"}}).status, 200);
    EXPECT_EQ(sell(goodReceipt()).status, 200);
}

TEST_F(State, TruncatesLongExchanges)
{
    ready();
    Json body = goodReceipt("long");
    body["more"] = std::string(500'000, 'x');
    EXPECT_EQ(sell(body).status, 200);
    const Json exchange = get("/_emulator/exchanges?group=group-1&external_id=long").json()["exchanges"][0];
    const std::string request = exchange["request"];
    EXPECT_LT(request.size(), 70'000u);
    EXPECT_THAT(request, testing::EndsWith(" bytes more)"));
    EXPECT_EQ(sell(goodReceipt(std::string(500'000, 'y'))).json()["error"]["code"], 32);
    const Json refused = get("/_emulator/exchanges?limit=1").json()["exchanges"][0];
    EXPECT_EQ(refused["external_id"].get<std::string>().size(), 1024u);
    const Json stranger{{"login", std::string(500'000, 'z')}, {"pass", "x"}};
    EXPECT_EQ(post("/possystem/v4/getToken", stranger).json()["error"]["code"], 32);
    const Json unknown = get("/_emulator/exchanges?limit=1").json()["exchanges"][0];
    EXPECT_EQ(unknown["login"].get<std::string>().size(), 1024u);
}

TEST_F(State, CountsRepeatedRequestsOfAnId)
{
    options.keep = 1;
    ready();
    for (int i = 0; i < 20; ++i)
        EXPECT_FALSE(registered("same").empty());
    EXPECT_EQ(get("/_emulator/expect?external_id=same&wire_requests=20").status, 200);
}

TEST_F(State, FinishesADocumentAfterTheLatency)
{
    options.service.latencyLow = options.service.latencyHigh = 5s;
    ready();
    const std::string uuid = registered("id-1");
    EXPECT_EQ(status(uuid), "wait 34");
    passTime(4999ms);
    EXPECT_EQ(status(uuid), "wait 34");
    passTime(1ms);
    EXPECT_EQ(report(uuid).json()["payload"]["receipt_datetime"], "01.03.2026 03:00:00");
}

TEST_F(State, TakesATimeWithinTheLatencyRange)
{
    options.service.latencyLow = 4s;
    options.service.latencyHigh = 6s;
    options.service.groups.front().registers = 50;
    ready();
    for (int i = 0; i < 50; ++i) {
        const std::string uuid = registered("id-" + std::to_string(i));
        const std::string ready = get("/_emulator/documents/" + uuid).json()["ready_at"];
        EXPECT_THAT(ready,
            testing::AllOf(testing::Ge("2026-03-01T00:00:04.000Z"), testing::Le("2026-03-01T00:00:06.000Z")));
    }
}

TEST_F(State, ProcessesTheQueueOfARegisterOneByOne)
{
    options.service.latencyLow = options.service.latencyHigh = 5s;
    ready();
    const std::string first = registered("id-1");
    const std::string second = registered("id-2");
    passTime(5s);
    EXPECT_THAT((std::vector{status(first), status(second)}), ElementsAre("done", "wait 34"));
    passTime(5s);
    EXPECT_EQ(status(second), "done");
}

TEST_F(State, FailsADocumentThatWaitsTooLongForItsRegister)
{
    options.service.latencyLow = options.service.latencyHigh = 200s;
    ready();
    registered("id-1");
    registered("id-2");
    const std::string third = registered("id-3");
    passTime(299s);
    EXPECT_EQ(status(third), "wait 34");
    passTime(1s);
    EXPECT_EQ(status(third), "fail 1 timeout");
    EXPECT_EQ(sell(goodReceipt("id-3")).json()["error"]["code"], 33);
}

TEST_F(State, LimitsThePaceOfStatusCallsIfConfigured)
{
    options.service.pace = true;
    options.service.groups.front().registers = 2;
    ready();
    const std::string uuid = registered("id-1");
    EXPECT_EQ(report(uuid).status, 200);
    EXPECT_EQ(report(uuid).status, 200);
    EXPECT_EQ(report(uuid).status, 429);
    passTime(1s);
    EXPECT_EQ(report(uuid).status, 200);
}

TEST_F(State, RefusesAGroupWithAnotherProtocol)
{
    options.service.groups.front().protocolRefused = true;
    ready();
    const auto answer = sell(goodReceipt());
    EXPECT_EQ(answer.status, 401);
    EXPECT_EQ(answer.json()["error"]["code"], 21);
}

TEST_F(State, RequiresTheTaxpayerNumberOfTheGroup)
{
    options.service.groups.front().inn = "7711111111";
    options.service.edition.strict = true;
    ready();
    EXPECT_EQ(sell(goodReceipt()).json()["error"]["code"], 32);
}
