#include "emulator/errors.h"
#include "tests/emulator/running.h"

#include <gmock/gmock.h>

#include <sys/socket.h>

using emulator::Json;
using namespace std::chrono_literals;
using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using End = RawClient::End;

namespace {

/// Every misbehaviour as it is on the wire, and what the service holds afterwards.
struct Misbehaviour : RunningEmulator
{
    Misbehaviour()
    {
        start();
        takeToken();
    }

    void set(const Json& fault)
    {
        const auto answer = post("/_emulator/faults", fault);
        ASSERT_EQ(answer.status, 200) << answer.body;
    }

    /// The whole of what one connection brings for a sell call.
    RawClient::Answer sellToTheEnd(const std::string& id, const std::chrono::milliseconds patience = 20s)
    {
        RawClient client(port());
        client.send(postRequest("/possystem/v4/group-1/sell", goodReceipt(id).dump(), tokenHeader()));
        return client.receiveAll(patience);
    }

    bool isRegistered(const std::string& id)
    {
        return get("/_emulator/expect?external_id=" + id).status == 200;
    }

    /// Status answer of the document that the service holds under the id.
    Json honestReport(const std::string& id)
    {
        const Json list = get("/_emulator/documents?external_id=" + id).json();
        return report(list["documents"][0]["uuid"]).json();
    }
};

struct Phased : Misbehaviour, testing::WithParamInterface<std::string>
{
    bool after() const { return GetParam() == "after"; }
};

constexpr auto shortWhile = 300ms;

} // namespace

TEST_P(Phased, AnErrorCodeOfTheTableIsAnsweredWithItsHttpStatus)
{
    for (const emulator::ServiceError& row : emulator::serviceErrors()) {
        for (const std::string endpoint : {"token", "sell", "report"}) {
            const std::string id = "e" + std::to_string(row.code) + endpoint;
            const std::string uuid = sell(goodReceipt(id + "-known")).json()["uuid"];
            set({{"endpoint", endpoint}, {"effect", "error"}, {"code", row.code}, {"phase", GetParam()},
                {"match", {{"next", 1}}}});
            const auto answer = endpoint == "token"  ? get("/possystem/v4/getToken?login=shop&pass=secret")
                                : endpoint == "sell" ? sell(goodReceipt(id))
                                                     : report(uuid);
            EXPECT_EQ(answer.status, row.httpStatus) << endpoint << " " << row.code;
            EXPECT_EQ(answer.json()["error"]["code"], row.code) << endpoint;
            EXPECT_EQ(answer.json()["error"]["type"], row.type) << endpoint << " " << row.code;
            EXPECT_EQ(isRegistered(id), endpoint == "sell" && after()) << endpoint << " " << row.code;
        }
    }
}

TEST_P(Phased, AnHtmlPageComesWithAnyStatus)
{
    for (const int status : {200, 404, 500, 502, 503}) {
        const std::string id = "h" + std::to_string(status);
        set({{"endpoint", "sell"}, {"effect", "html"}, {"status", status}, {"phase", GetParam()},
            {"match", {{"next", 1}}}});
        const auto answer = sell(goodReceipt(id));
        EXPECT_EQ(answer.status, status);
        EXPECT_THAT(answer.head, HasSubstr("Content-Type: text/html"));
        EXPECT_THAT(answer.body, StartsWith("<html>"));
        EXPECT_EQ(isRegistered(id), after());
    }
}

TEST_P(Phased, AnEmptyBodyComesWithTheConnectionKept)
{
    set({{"endpoint", "sell"}, {"effect", "empty"}, {"phase", GetParam()}, {"match", {{"next", 1}}}});
    const auto answer = sellToTheEnd("id", shortWhile);
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, "");
    EXPECT_THAT(answer.head, HasSubstr("Content-Length: 0\r\n"));
    EXPECT_EQ(answer.end, End::Open);
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, ATruncatedBodyIsHalfOfWhatItsLengthSays)
{
    set({{"endpoint", "sell"}, {"effect", "truncated"}, {"phase", GetParam()}, {"match", {{"next", 1}}}});
    const auto answer = sellToTheEnd("id");
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.end, End::Closed);
    EXPECT_THAT(answer.body, AllOf(StartsWith(R"({"uuid":)"), Not(HasSubstr("timestamp"))));
    EXPECT_THAT(
        answer.head, Not(HasSubstr("Content-Length: " + std::to_string(answer.body.size()) + "\r\n")));
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, ABodyMayBeNoJson)
{
    set({{"endpoint", "sell"}, {"effect", "not-json"}, {"phase", GetParam()}, {"match", {{"next", 1}}}});
    const auto answer = sell(goodReceipt("id"));
    EXPECT_EQ(answer.status, 200);
    EXPECT_THAT(answer.head, HasSubstr("Content-Type: application/json"));
    EXPECT_FALSE(Json::accept(answer.body));
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, ALengthThatIsTooLongLeavesTheClientWaiting)
{
    set({{"endpoint", "sell"}, {"effect", "wrong-length"}, {"bytes", 7}, {"phase", GetParam()},
        {"match", {{"next", 1}}}});
    const auto answer = sellToTheEnd("id", shortWhile);
    EXPECT_TRUE(Json::accept(answer.body));
    EXPECT_THAT(answer.head, HasSubstr("Content-Length: " + std::to_string(answer.body.size() + 7) + "\r\n"));
    EXPECT_EQ(answer.end, End::Open);
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, ALengthThatIsTooShortCutsTheBody)
{
    set({{"endpoint", "sell"}, {"effect", "wrong-length"}, {"bytes", -7}, {"phase", GetParam()},
        {"match", {{"next", 1}}}});
    const auto answer = sellToTheEnd("id");
    EXPECT_THAT(answer.head, HasSubstr("Content-Length: " + std::to_string(answer.body.size() - 7) + "\r\n"));
    EXPECT_EQ(answer.end, End::Closed);
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, AnAnswerMayDripByteByByte)
{
    set({{"endpoint", "sell"}, {"effect", "drip"}, {"milliseconds", 1}, {"phase", GetParam()},
        {"match", {{"next", 1}}}});
    RawClient client(port());
    client.send(postRequest("/possystem/v4/group-1/sell", goodReceipt("id").dump(), tokenHeader()));
    const auto begin = std::chrono::steady_clock::now();
    const auto answer = client.receive();
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(answer.head.size()));
    EXPECT_EQ(answer.json()["status"], "wait");
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, AnAnswerMayBeLate)
{
    set({{"endpoint", "sell"}, {"effect", "delay"}, {"milliseconds", 200}, {"phase", GetParam()},
        {"match", {{"next", 1}}}});
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(sell(goodReceipt("id")).json()["status"], "wait");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 200ms);
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, AnAnswerMayNeverComeWithTheConnectionOpen)
{
    set({{"endpoint", "sell"}, {"effect", "silent"}, {"phase", GetParam()}, {"match", {{"next", 1}}}});
    const auto answer = sellToTheEnd("id", shortWhile);
    EXPECT_EQ(answer.head, "");
    EXPECT_EQ(answer.end, End::Open);
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, TheConnectionMayBeClosedAfterReading)
{
    set({{"endpoint", "sell"}, {"effect", "close"}, {"phase", GetParam()}, {"match", {{"next", 1}}}});
    const auto answer = sellToTheEnd("id");
    EXPECT_EQ(answer.head, "");
    EXPECT_EQ(answer.end, End::Closed);
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, AResetComesInsteadOfTheAnswer)
{
    set({{"endpoint", "sell"}, {"effect", "reset-before"}, {"phase", GetParam()}, {"match", {{"next", 1}}}});
    const auto answer = sellToTheEnd("id");
    EXPECT_EQ(answer.head, "");
    EXPECT_EQ(answer.end, End::Reset);
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, AResetComesAmidTheAnswer)
{
    set({{"endpoint", "sell"}, {"effect", "reset-during"}, {"phase", GetParam()}, {"match", {{"next", 1}}}});
    const auto answer = sellToTheEnd("id");
    EXPECT_EQ(answer.status, 200);
    EXPECT_FALSE(Json::accept(answer.body));
    EXPECT_EQ(answer.end, End::Reset);
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, AResetComesAfterTheWholeAnswer)
{
    set({{"endpoint", "sell"}, {"effect", "reset-after"}, {"phase", GetParam()}, {"match", {{"next", 1}}}});
    const auto answer = sellToTheEnd("id");
    EXPECT_EQ(answer.json()["status"], "wait");
    EXPECT_EQ(answer.end, End::Reset);
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, AnAnswerMayBeForAnotherDocument)
{
    set({{"endpoint", "sell"}, {"effect", "other-document"}, {"phase", GetParam()},
        {"match", {{"next", 1}}}});
    const std::string uuid = sell(goodReceipt("id")).json()["uuid"];
    EXPECT_EQ(report(uuid).json()["error"]["code"], 30);
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, AnAnswerMayLackAKey)
{
    set({{"endpoint", "sell"}, {"effect", "without-key"}, {"key", "uuid"}, {"phase", GetParam()},
        {"match", {{"next", 1}}}});
    const Json answer = sell(goodReceipt("id")).json();
    EXPECT_FALSE(answer.contains("uuid"));
    EXPECT_EQ(answer["status"], "wait");
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, ATokenThatIsNotGivenDoesNotWork)
{
    set({{"endpoint", "token"}, {"effect", "delay"}, {"milliseconds", 0}, {"phase", GetParam()}});
    takeToken();
    EXPECT_EQ(sell(goodReceipt()).status, after() ? 200 : 401);
}

INSTANTIATE_TEST_SUITE_P(BothPhases, Phased, testing::Values("before", "after"),
    [](const auto& parameter) { return parameter.param; });

TEST_F(Misbehaviour, OfAStatusCallCountsAsNoQuestionBefore)
{
    options.waits = 1;
    start();
    takeToken();
    const std::string uuid = sell(goodReceipt()).json()["uuid"];
    set({{"endpoint", "report"}, {"effect", "close"}, {"phase", "before"}, {"match", {{"next", 3}}}});
    for (int i = 0; i < 3; ++i) {
        RawClient client(port());
        client.send(getRequest("/possystem/v4/group-1/report/" + uuid, tokenHeader()));
        EXPECT_EQ(client.receiveAll().end, End::Closed);
    }
    EXPECT_EQ(report(uuid).json()["status"], "wait");
    EXPECT_EQ(report(uuid).json()["status"], "done");
}

TEST_F(Misbehaviour, HitsStatusCallsByTheIdOfTheirDocument)
{
    const std::string hit = sell(goodReceipt("till-1")).json()["uuid"];
    const std::string spared = sell(goodReceipt("desk-1")).json()["uuid"];
    set({{"endpoint", "report"}, {"effect", "html"}, {"match", {{"external_id", "till-*"}}}});
    EXPECT_EQ(report(hit).status, 502);
    EXPECT_EQ(report(spared).status, 200);
}

TEST_F(Misbehaviour, GivesATokenThatIsOlderThanItSeems)
{
    set({{"endpoint", "token"}, {"effect", "old-token"}, {"milliseconds", 1000}, {"match", {{"next", 1}}}});
    takeToken();
    EXPECT_EQ(sell(goodReceipt("1")).status, 200);
    passTime(1s);
    EXPECT_EQ(sell(goodReceipt("2")).json()["error"]["code"], 11);
    takeToken();
    passTime(1h);
    EXPECT_EQ(sell(goodReceipt("2")).status, 200);
}

TEST_F(Misbehaviour, LetsADocumentFailForGood)
{
    struct Row
    {
        const char* type;
        int code;
    };
    for (const Row& row :
        {Row{"driver", 502}, Row{"agent", 2003}, Row{"timeout", 1}, Row{"system", 1}, Row{"unknown", 0}}) {
        set({{"endpoint", "sell"}, {"effect", "fail"}, {"type", row.type}, {"match", {{"next", 1}}}});
        const std::string id = std::string("fail-") + row.type;
        EXPECT_EQ(sell(goodReceipt(id)).status, 200);
        for (int i = 0; i < 2; ++i) {
            const Json answer = honestReport(id);
            EXPECT_EQ(answer["status"], "fail");
            EXPECT_TRUE(answer["payload"].is_null());
            EXPECT_EQ(answer["error"]["type"], row.type);
            EXPECT_EQ(answer["error"]["code"], row.code);
        }
        EXPECT_EQ(sell(goodReceipt(id)).json()["error"]["code"], 33);
    }
}

TEST_F(Misbehaviour, TakesNoFiscalNumberForADocumentThatFails)
{
    const auto number = [this](const std::string& id) {
        EXPECT_EQ(sell(goodReceipt(id)).status, 200);
        return honestReport(id)["payload"]["fiscal_document_number"].get<int>();
    };
    EXPECT_EQ(number("1"), 3);
    set({{"endpoint", "sell"}, {"effect", "fail"}, {"match", {{"next", 1}}}});
    EXPECT_EQ(sell(goodReceipt("2")).status, 200);
    EXPECT_EQ(number("3"), 4);
}

TEST_F(Misbehaviour, OfTheStatusAnswerAloneLeavesTheDocumentDone)
{
    const std::string uuid = sell(goodReceipt()).json()["uuid"];
    set({{"endpoint", "report"}, {"effect", "fail"}, {"type", "agent"}, {"code", 2009},
        {"match", {{"next", 1}}}});
    EXPECT_EQ(report(uuid).json()["error"]["code"], 2009);
    set({{"endpoint", "report"}, {"effect", "never"}, {"match", {{"next", 2}}}});
    EXPECT_EQ(report(uuid).json()["error"]["code"], 34);
    EXPECT_EQ(report(uuid).json()["status"], "wait");
    EXPECT_EQ(report(uuid).json()["status"], "done");
}

TEST_F(Misbehaviour, LeavesADocumentUndoneForever)
{
    set({{"endpoint", "sell"}, {"effect", "never"}, {"match", {{"next", 1}}}});
    EXPECT_EQ(sell(goodReceipt("id")).status, 200);
    passTime(20h);
    EXPECT_EQ(honestReport("id")["status"], "wait");
}

TEST_F(Misbehaviour, LeavesOutAKeyOfThePayload)
{
    const std::string uuid = sell(goodReceipt()).json()["uuid"];
    set({{"endpoint", "report"}, {"effect", "without-key"}, {"key", "payload.fn_number"},
        {"match", {{"next", 1}}}});
    Json without = report(uuid).json();
    Json whole = report(uuid).json();
    EXPECT_TRUE(whole["payload"].contains("fn_number"));
    whole["payload"].erase("fn_number");
    EXPECT_EQ(without, whole);
}

TEST_F(Misbehaviour, AnswersAStatusCallForAnotherDocument)
{
    const std::string uuid = sell(goodReceipt()).json()["uuid"];
    set({{"endpoint", "report"}, {"effect", "other-document"}, {"match", {{"next", 1}}}});
    const Json other = report(uuid).json();
    EXPECT_EQ(other["status"], "done");
    EXPECT_NE(other["uuid"], uuid);
    EXPECT_EQ(other["external_id"], "another-document");
    EXPECT_EQ(other["payload"]["total"], 151.5);
}

TEST_F(Misbehaviour, LeavesARefusalAsItIsAndWaitsForACallThatItCanHit)
{
    struct Row
    {
        const char* endpoint;
        const char* effect;
        const char* key = nullptr;
    };
    const std::string uuid = sell(goodReceipt("there")).json()["uuid"];
    for (const Row& row : {Row{"report", "never"}, Row{"report", "fail"}, Row{"report", "other-document"},
             Row{"sell", "never"}, Row{"sell", "fail"}, Row{"sell", "other-document"},
             Row{"report", "without-key", "payload.fn_number"}, Row{"sell", "without-key", "uuid"},
             Row{"token", "old-token"}, Row{"token", "without-key", "token"}}) {
        Json fault{{"endpoint", row.endpoint}, {"effect", row.effect}, {"match", {{"next", 1}}}};
        if (row.key != nullptr)
            fault["key"] = row.key;
        EXPECT_EQ(call("DELETE", "/_emulator/faults").status, 200);
        set(fault);
        const std::string what = std::string(row.endpoint) + " " + row.effect;
        const std::string endpoint = row.endpoint;
        const auto refused = endpoint == "token"    ? get("/possystem/v4/getToken?login=shop&pass=wrong")
                             : endpoint == "report" ? get("/possystem/v4/group-1/report/" + uuid)
                                                    : post("/possystem/v4/group-1/sell", goodReceipt(what));
        EXPECT_EQ(refused.status, 401) << what;
        EXPECT_EQ(refused.json()["error"]["code"], endpoint == "token" ? 12 : 10) << what;
        EXPECT_FALSE(refused.json().contains("uuid")) << what;
        EXPECT_EQ(get("/_emulator/faults").json()["faults"][0]["hits"], 0) << what;
        EXPECT_EQ(get("/_emulator/exchanges?limit=1").json()["exchanges"][0]["fault"], "") << what;

        const auto hit = endpoint == "token"    ? get("/possystem/v4/getToken?login=shop&pass=secret")
                         : endpoint == "report" ? report(uuid)
                                                : sell(goodReceipt(what));
        EXPECT_EQ(hit.status, 200) << what;
        EXPECT_EQ(get("/_emulator/faults").json()["faults"][0]["hits"], 1) << what;
    }
}

TEST_F(Misbehaviour, WithoutAKeyThatIsNotThereIsNoHitAndTakesNothingBack)
{
    set({{"endpoint", "sell"}, {"effect", "without-key"}, {"key", "payload.total"}, {"phase", "before"}});
    EXPECT_EQ(sell(goodReceipt("id")).status, 200);
    EXPECT_TRUE(isRegistered("id"));
    EXPECT_EQ(get("/_emulator/faults").json()["faults"][0]["hits"], 0);
}

TEST_F(Misbehaviour, NamesNoDocumentThatWasTakenBack)
{
    set({{"endpoint", "sell"}, {"effect", "error"}, {"code", 33}, {"phase", "before"},
        {"match", {{"next", 1}}}});
    const Json answer = sell(goodReceipt("id")).json();
    EXPECT_EQ(answer["error"]["code"], 33);
    EXPECT_FALSE(answer.contains("uuid"));
    const std::string uuid = sell(goodReceipt("id")).json()["uuid"];
    set({{"endpoint", "sell"}, {"effect", "error"}, {"code", 33}, {"phase", "before"},
        {"match", {{"next", 1}}}});
    EXPECT_EQ(sell(goodReceipt("id")).json()["uuid"], uuid);
}

TEST_F(Misbehaviour, BeforeIsNoQuestionForThePaceEither)
{
    options.pace = true;
    start();
    takeToken();
    const std::string uuid = sell(goodReceipt()).json()["uuid"];
    set({{"endpoint", "report"}, {"effect", "html"}, {"phase", "before"}, {"match", {{"next", 1}}}});
    EXPECT_EQ(report(uuid).status, 502);
    EXPECT_EQ(report(uuid).status, 200);
    EXPECT_EQ(report(uuid).status, 429);
}

TEST_F(Misbehaviour, ThatLosesTheAnswerIsFollowedByCode33WithTheFirstUuid)
{
    set({{"endpoint", "sell"}, {"effect", "close"}, {"phase", "after"}, {"match", {{"next", 1}}}});
    EXPECT_EQ(sellToTheEnd("id").end, End::Closed);
    const Json again = sell(goodReceipt("id")).json();
    EXPECT_EQ(again["error"]["code"], 33);
    EXPECT_EQ(report(again["uuid"]).json()["status"], "done");
    EXPECT_EQ(get("/_emulator/expect?external_id=id&wire_requests=2&total=150.50&status=done").status, 200);
}

TEST_F(Misbehaviour, ThatComesBeforeLeavesTheIdFree)
{
    set({{"endpoint", "sell"}, {"effect", "close"}, {"phase", "before"}, {"match", {{"next", 1}}}});
    EXPECT_EQ(sellToTheEnd("id").end, End::Closed);
    EXPECT_EQ(get("/_emulator/expect?external_id=id&count=0&wire_requests=1").status, 200);
    EXPECT_EQ(sell(goodReceipt("id")).status, 200);
}
