#include "emulator/protocol/errors.h"
#include "tests/emulator/support/running.h"

#include <gmock/gmock.h>

#include <optional>

using emulator::Json;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::StartsWith;
using End = RawClient::End;

namespace {

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

    // Everything that a connection receives for a sell call.
    RawClient::Answer sellToTheEnd(const std::string& id, std::chrono::milliseconds patience = 20s)
    {
        RawClient client(port());
        client.send(postRequest("/possystem/v4/group-1/sell", goodReceipt(id).dump(), tokenHeader()));
        return client.receiveAll(patience);
    }

    bool isRegistered(const std::string& id)
    {
        return get("/_emulator/expect?external_id=" + id).status == 200;
    }

    // Status answer for the document registered with the id.
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

enum class Body
{
    None,
    Whole,
    Half,
    Html,
    Empty,
    NotJson
};

// What an effect looks like to the client, whatever the call.
struct WireCase
{
    const char* effect;
    const char* parameter;
    int status;
    Body body;
    End end;
    int lengthError = 0;
};

void PrintTo(const WireCase& row, std::ostream* out)
{
    *out << row.effect << row.parameter;
}

constexpr WireCase wireCases[] = {
    {"html", R"(,"status":200)", 200, Body::Html, End::Open},
    {"html", R"(,"status":404)", 404, Body::Html, End::Open},
    {"html", R"(,"status":503)", 503, Body::Html, End::Open},
    {"empty", "", 200, Body::Empty, End::Open},
    {"empty", R"(,"status":502)", 502, Body::Empty, End::Open},
    {"not-json", "", 200, Body::NotJson, End::Open},
    {"truncated", "", 200, Body::Half, End::Closed},
    {"wrong-length", R"(,"bytes":7)", 200, Body::Whole, End::Open, 7},
    {"wrong-length", R"(,"bytes":-7)", 200, Body::Whole, End::Closed, -7},
    {"drip", R"(,"milliseconds":1)", 200, Body::Whole, End::Open},
    {"delay", R"(,"milliseconds":20)", 200, Body::Whole, End::Open},
    {"silent", "", 0, Body::None, End::Open},
    {"close", "", 0, Body::None, End::Closed},
    {"reset-before", "", 0, Body::None, End::Reset},
    {"reset-during", "", 200, Body::Half, End::Reset},
    {"reset-after", "", 200, Body::Whole, End::Reset},
};

struct ErrorCase
{
    int code;
    int status;
    const char* type;
};

constexpr ErrorCase errorCases[] = {
    {0, 400, "unknown"},
    {1, 400, "system"},
    {10, 401, "system"},
    {11, 401, "system"},
    {12, 401, "system"},
    {13, 400, "system"},
    {14, 403, "system"},
    {20, 401, "system"},
    {21, 401, "system"},
    {30, 400, "system"},
    {31, 400, "system"},
    {32, 400, "system"},
    {33, 400, "system"},
    {34, 200, "system"},
    {40, 400, "system"},
    {41, 415, "system"},
    {50, 500, "system"},
};

using WireParameter = std::tuple<WireCase, std::string, std::string>;

std::string nameOf(const WireParameter& parameter)
{
    const auto& [row, endpoint, phase] = parameter;
    std::string name = std::string(row.effect) + row.parameter + "Of" + endpoint + phase;
    std::erase_if(name, [](unsigned char c) { return std::isalnum(c) == 0; });
    return (row.lengthError < 0 ? "tooShort" : "") + name;
}

// One effect at one endpoint in one phase.
struct WireEffect : Misbehaviour, testing::WithParamInterface<WireParameter>
{
    WireEffect()
    {
        options.service.waits = 1;
        start();
        takeToken();
    }

    const WireCase& row() const { return std::get<0>(GetParam()); }
    const std::string& endpoint() const { return std::get<1>(GetParam()); }
    bool after() const { return std::get<2>(GetParam()) == "after"; }

    std::string request(const std::string& uuid) const
    {
        if (endpoint() == "token")
            return getRequest("/possystem/v4/getToken?login=shop&pass=secret");
        if (endpoint() == "report")
            return getRequest("/possystem/v4/group-1/report/" + uuid, tokenHeader());
        return postRequest("/possystem/v4/group-1/sell", goodReceipt("id").dump(), tokenHeader());
    }

    // Whether the connection can carry another request.
    static bool isKept(RawClient& client)
    {
        client.send(getRequest("/_emulator/effects"));
        return client.receive().status == 200;
    }

    RawClient::Answer hit(const std::string& uuid)
    {
        RawClient client(port());
        client.send(request(uuid));
        if (row().end != End::Open)
            return client.receiveAll();
        if (row().body != Body::None && row().lengthError == 0) {
            auto answer = client.receive();
            answer.end = isKept(client) ? End::Open : End::Closed;
            return answer;
        }
        // The end of such an answer cannot be seen, but once the hit is counted all of it has been sent.
        while (get("/_emulator/faults").json()["faults"][0]["hits"] == 0) {
        }
        return client.receiveAll(200ms);
    }

    void expectBody(const RawClient::Answer& answer) const
    {
        const std::string begin = endpoint() == "token" ? R"({"error":null,"token":")" : R"({"uuid":")";
        switch (row().body) {
        case Body::None:
            EXPECT_EQ(answer.head, "");
            break;
        case Body::Whole:
            EXPECT_THAT(answer.body, StartsWith(begin));
            EXPECT_TRUE(Json::accept(answer.body));
            break;
        case Body::Half:
            EXPECT_FALSE(Json::accept(answer.body));
            EXPECT_THAT(answer.body, StartsWith(begin.substr(0, 5)));
            EXPECT_EQ(lengthIn(answer) / 2, answer.body.size());
            break;
        case Body::Html:
            EXPECT_THAT(answer.head, HasSubstr("Content-Type: text/html"));
            EXPECT_THAT(answer.body, StartsWith("<html>"));
            break;
        case Body::Empty:
            EXPECT_EQ(answer.body, "");
            break;
        case Body::NotJson:
            EXPECT_THAT(answer.head, HasSubstr("Content-Type: application/json"));
            EXPECT_FALSE(answer.body.empty() || Json::accept(answer.body));
            break;
        }
    }

    static std::size_t lengthIn(const RawClient::Answer& answer)
    {
        const std::string name = "Content-Length: ";
        return std::stoul(answer.head.substr(answer.head.find(name) + name.size()));
    }

    // Whether the call took effect. Nothing if that cannot be seen because the token was lost.
    std::optional<bool> tookEffect(const std::string& uuid, const RawClient::Answer& answer)
    {
        if (endpoint() == "sell")
            return isRegistered("id");
        if (endpoint() == "report")
            return report(uuid).json()["status"] == "done";
        if (row().body != Body::Whole)
            return std::nullopt;
        const std::string token = answer.json()["token"];
        return exchange(postRequest("/possystem/v4/group-1/sell", goodReceipt("by-token").dump(),
                            "Token: " + token + "\r\n"))
                   .status == 200;
    }
};

} // namespace

TEST_P(WireEffect, LooksAsDocumentedAndTakesEffectInPhaseAfterOnly)
{
    const std::string uuid = sell(goodReceipt("known")).json()["uuid"];
    set(Json::parse(R"({"endpoint":")" + endpoint() + R"(","phase":")" + std::get<2>(GetParam()) +
                    R"(","match":{"next":1},"effect":")" + row().effect + '"' + row().parameter + "}"));
    const auto answer = hit(uuid);
    EXPECT_EQ(answer.status, row().status);
    EXPECT_EQ(answer.end, row().end);
    expectBody(answer);
    if (row().body != Body::None && row().body != Body::Half) {
        EXPECT_EQ(
            static_cast<int>(lengthIn(answer)), static_cast<int>(answer.body.size()) + row().lengthError);
    }
    EXPECT_EQ(tookEffect(uuid, answer).value_or(after()), after());
    EXPECT_EQ(get("/_emulator/faults").json()["faults"][0]["hits"], 1);
}

INSTANTIATE_TEST_SUITE_P(EveryEffect, WireEffect,
    testing::Combine(testing::ValuesIn(wireCases), testing::Values("token", "sell", "report"),
        testing::Values("before", "after")),
    [](const auto& instance) { return nameOf(instance.param); });

TEST_P(Phased, ErrorCodesComeWithTheirHttpStatus)
{
    ASSERT_EQ(emulator::serviceErrors().size(), std::size(errorCases));
    for (const ErrorCase& row : errorCases) {
        for (const std::string endpoint : {"token", "sell", "report"}) {
            const std::string id = "e" + std::to_string(row.code) + endpoint;
            const std::string uuid = sell(goodReceipt(id + "-known")).json()["uuid"];
            set({{"endpoint", endpoint}, {"effect", "error"}, {"code", row.code}, {"phase", GetParam()},
                {"match", {{"next", 1}}}});
            const auto answer = endpoint == "token"  ? get("/possystem/v4/getToken?login=shop&pass=secret")
                                : endpoint == "sell" ? sell(goodReceipt(id))
                                                     : report(uuid);
            EXPECT_EQ(answer.status, row.status) << endpoint << " " << row.code;
            EXPECT_EQ(answer.json()["error"]["code"], row.code) << endpoint;
            EXPECT_EQ(answer.json()["error"]["type"], row.type) << endpoint << " " << row.code;
            EXPECT_EQ(isRegistered(id), endpoint == "sell" && after()) << endpoint << " " << row.code;
        }
    }
}

TEST_P(Phased, SendsTheAnswerByteByByte)
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

TEST_P(Phased, DelaysTheAnswer)
{
    set({{"endpoint", "sell"}, {"effect", "delay"}, {"milliseconds", 200}, {"phase", GetParam()},
        {"match", {{"next", 1}}}});
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(sell(goodReceipt("id")).json()["status"], "wait");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 200ms);
    EXPECT_EQ(isRegistered("id"), after());
}

TEST_P(Phased, IssuesAWorkingTokenInPhaseAfterOnly)
{
    set({{"endpoint", "token"}, {"effect", "delay"}, {"milliseconds", 0}, {"phase", GetParam()}});
    takeToken();
    EXPECT_EQ(sell(goodReceipt()).status, after() ? 200 : 401);
}

TEST_P(Phased, AnswersForAnotherDocument)
{
    for (const std::string endpoint : {"sell", "report"}) {
        const std::string real = sell(goodReceipt(endpoint + "-known")).json()["uuid"];
        set({{"endpoint", endpoint}, {"effect", "other-document"}, {"phase", GetParam()},
            {"match", {{"next", 1}}}});
        const Json answer = (endpoint == "sell" ? sell(goodReceipt(endpoint)) : report(real)).json();
        EXPECT_EQ(report(answer["uuid"]).json()["error"]["code"], 30) << endpoint;
        EXPECT_EQ(isRegistered(endpoint), endpoint == "sell" && after());
    }
}

TEST_P(Phased, LeavesOutAKey)
{
    const std::string real = sell(goodReceipt("known")).json()["uuid"];
    for (const auto& [endpoint, key] : {std::pair("token", "token"), std::pair("sell", "uuid"),
             std::pair("report", "status"), std::pair("report", "timestamp")}) {
        const std::string id = std::string("lacks-") + key;
        set({{"endpoint", endpoint}, {"effect", "without-key"}, {"key", key}, {"phase", GetParam()},
            {"match", {{"next", 1}}}});
        const std::string where = endpoint;
        const auto answer = where == "token"  ? get("/possystem/v4/getToken?login=shop&pass=secret")
                            : where == "sell" ? sell(goodReceipt(id))
                                              : report(real);
        EXPECT_EQ(answer.status, 200) << key;
        EXPECT_FALSE(answer.json().contains(key)) << key;
        EXPECT_TRUE(answer.json().contains("error")) << key;
        EXPECT_EQ(isRegistered(id), where == "sell" && after()) << key;
    }
}

TEST_P(Phased, ReportsAFailureOrNoResult)
{
    options.service.waits = 1;
    start();
    takeToken();
    for (const auto& [effect, word, code] :
        {std::tuple("fail", "fail", 502), std::tuple("never", "wait", 34)}) {
        const std::string uuid = sell(goodReceipt(effect)).json()["uuid"];
        set({{"endpoint", "report"}, {"effect", effect}, {"phase", GetParam()}, {"match", {{"next", 1}}}});
        const Json answer = report(uuid).json();
        EXPECT_EQ(answer["status"], word);
        EXPECT_EQ(answer["error"]["code"], code);
        EXPECT_EQ(answer.contains("payload"), word == std::string("fail"));
        EXPECT_EQ(report(uuid).json()["status"], after() ? "done" : "wait");
    }
}

TEST_P(Phased, IssuesAnExpiredTokenOrNone)
{
    set({{"endpoint", "token"}, {"effect", "old-token"}, {"milliseconds", 1000}, {"phase", GetParam()}});
    takeToken();
    EXPECT_EQ(sell(goodReceipt()).status, after() ? 200 : 401);
    passTime(1s);
    EXPECT_EQ(sell(goodReceipt()).json()["error"]["code"], 11);
}

INSTANTIATE_TEST_SUITE_P(BothPhases, Phased, testing::Values("before", "after"),
    [](const auto& parameter) { return parameter.param; });

TEST_F(Misbehaviour, InPhaseBeforeDoesNotCountAsAStatusCall)
{
    options.service.waits = 1;
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

TEST_F(Misbehaviour, IssuesATokenThatExpiresEarly)
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

TEST_F(Misbehaviour, FailsADocumentForGood)
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

TEST_F(Misbehaviour, AssignsNoFiscalNumberToAFailedDocument)
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

TEST_F(Misbehaviour, OfAStatusAnswerLeavesTheDocumentDone)
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

TEST_F(Misbehaviour, NeverFinishesADocument)
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

TEST_F(Misbehaviour, LeavesRefusalsAloneAndWaitsForACallThatItCanHit)
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

TEST_F(Misbehaviour, ThatLeavesOutAMissingKeyIsNotAHitAndUndoesNothing)
{
    set({{"endpoint", "sell"}, {"effect", "without-key"}, {"key", "payload.total"}, {"phase", "before"}});
    EXPECT_EQ(sell(goodReceipt("id")).status, 200);
    EXPECT_TRUE(isRegistered("id"));
    EXPECT_EQ(get("/_emulator/faults").json()["faults"][0]["hits"], 0);
}

TEST_F(Misbehaviour, NamesNoUndoneDocument)
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

TEST_F(Misbehaviour, InPhaseBeforeDoesNotCountTowardsThePace)
{
    options.service.pace = true;
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

TEST_F(Misbehaviour, InPhaseBeforeLeavesTheIdFree)
{
    set({{"endpoint", "sell"}, {"effect", "close"}, {"phase", "before"}, {"match", {{"next", 1}}}});
    EXPECT_EQ(sellToTheEnd("id").end, End::Closed);
    EXPECT_EQ(get("/_emulator/expect?external_id=id&count=0&wire_requests=1").status, 200);
    EXPECT_EQ(sell(goodReceipt("id")).status, 200);
}
