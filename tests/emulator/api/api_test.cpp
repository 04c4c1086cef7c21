#include "tests/emulator/support/running.h"

#include <gmock/gmock.h>

using emulator::Json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

struct ApiCalls : RunningEmulator
{
    ApiCalls()
    {
        start();
        takeToken();
    }

    std::string registerReceipt(const std::string& id, const std::string& name = "Молоко 3,2 %")
    {
        Json body = goodReceipt(id);
        body["receipt"]["items"][0]["name"] = name;
        return sell(body).json()["uuid"];
    }

    std::vector<std::string> ids(const std::string& query)
    {
        std::vector<std::string> all;
        const Json list = get("/_emulator/documents" + query).json();
        for (const Json& document : list["documents"])
            all.push_back(document["external_id"]);
        return all;
    }

    Json verdict(const std::string& query, int status)
    {
        const auto answer = get("/_emulator/expect?" + query);
        EXPECT_EQ(answer.status, status) << query << " " << answer.body;
        return answer.json();
    }
};

} // namespace

TEST_F(ApiCalls, ListsDocumentsNewestFirst)
{
    const std::string uuid = registerReceipt("id-1");
    registerReceipt("id-2");
    EXPECT_THAT(ids(""), ElementsAre("id-2", "id-1"));
    const Json list = get("/_emulator/documents?external_id=id-1").json();
    EXPECT_EQ(list, Json({{"documents", Json::array({{{"sequence", 1}, {"uuid", uuid}, {"group", "group-1"},
                                            {"external_id", "id-1"}, {"operation", "sell"}, {"login", "shop"},
                                            {"received_at", "2026-03-01T00:00:00.000Z"}, {"status", "done"},
                                            {"total", 150.5}, {"wire_requests", 1}}})}}));
}

TEST_F(ApiCalls, SearchesDocuments)
{
    registerReceipt("till-1", "Хлеб [ржаной]");
    registerReceipt("till-2");
    registerReceipt("desk[1]");
    EXPECT_THAT(ids("?external_id=till-*"), ElementsAre("till-2", "till-1"));
    EXPECT_THAT(ids("?external_id=desk[1]"), ElementsAre("desk[1]"));
    EXPECT_THAT(ids("?text=%D0%A5%D0%BB%D0%B5%D0%B1"), ElementsAre("till-1"));
    EXPECT_THAT(ids("?group=elsewhere"), IsEmpty());
    EXPECT_THAT(ids("?operation=sell_refund"), IsEmpty());
    EXPECT_THAT(ids("?limit=1"), ElementsAre("desk[1]"));
    EXPECT_THAT(ids("?limit=1&before=2"), ElementsAre("till-1"));
    EXPECT_EQ(get("/_emulator/documents?limit=all").status, 400);
}

TEST_F(ApiCalls, FindsTextHoweverTheClientEscapedIt)
{
    Json body = goodReceipt("escaped");
    body["receipt"]["items"][0]["name"] = "Хлеб";
    const std::string escaped = body.dump(2, ' ', true);
    ASSERT_THAT(escaped, HasSubstr("\\u0425\\u043b\\u0435\\u0431"));
    EXPECT_EQ(exchange(postRequest("/possystem/v4/group-1/sell", escaped, tokenHeader())).status, 200);
    EXPECT_THAT(ids("?text=%D0%A5%D0%BB%D0%B5%D0%B1"), ElementsAre("escaped"));
    EXPECT_EQ(get("/_emulator/expect?text=%D0%A5%D0%BB%D0%B5%D0%B1").status, 200);
}

TEST_F(ApiCalls, MatchesIdPatternsLikeFaults)
{
    registerReceipt("чек-1");
    registerReceipt("чек[1]");
    EXPECT_THAT(ids("?external_id=%3F%3F%3F-1"), ElementsAre("чек-1"));
    EXPECT_THAT(ids("?external_id=%3F%3F%3F%3F%3F"), ElementsAre("чек-1"));
    EXPECT_THAT(ids("?external_id=*[1]"), ElementsAre("чек[1]"));
}

TEST_F(ApiCalls, ReturnsADocument)
{
    const std::string uuid = registerReceipt("id-1");
    const Json document = get("/_emulator/documents/" + uuid).json();
    EXPECT_EQ(document["request"], goodReceipt("id-1"));
    EXPECT_EQ(document["report"]["payload"]["fiscal_document_number"], 3);
    EXPECT_THAT(document["qr"].get<std::string>(),
        AllOf(StartsWith("t=20260301T0300&s=150.50&fn=0000990700000001&i=3&fp="), HasSubstr("&n=1")));
    EXPECT_EQ(get("/_emulator/documents/nothing").status, 404);
}

TEST_F(ApiCalls, DrawsTheQrCode)
{
    const std::string uuid = registerReceipt("id-1");
    const auto image = get("/_emulator/documents/" + uuid + "/qr.svg");
    EXPECT_THAT(image.head, HasSubstr("Content-Type: image/svg+xml"));
    EXPECT_THAT(image.body, StartsWith("<svg "));
}

TEST_F(ApiCalls, ShowsTheExchangesOfADocumentWithoutSecrets)
{
    const std::string uuid = registerReceipt("id-1");
    EXPECT_EQ(registerReceipt("id-1"), uuid);
    EXPECT_EQ(report(uuid).status, 200);
    const auto answer = get("/_emulator/documents/" + uuid + "/exchange");
    const Json exchanges = answer.json()["exchanges"];
    ASSERT_EQ(exchanges.size(), 3u);
    EXPECT_THAT(exchanges[0]["request"].get<std::string>(),
        AllOf(StartsWith("POST /possystem/v4/group-1/sell HTTP/1.1\r\n"), HasSubstr("\r\nToken: ***\r\n"),
            HasSubstr("Молоко 3,2 %")));
    EXPECT_THAT(exchanges[0]["answer"].get<std::string>(),
        AllOf(StartsWith("HTTP/1.1 200 OK\r\n"), HasSubstr(R"("status":"wait")")));
    EXPECT_EQ(exchanges[1]["code"], 33);
    EXPECT_EQ(exchanges[2]["endpoint"], "report");
}

TEST_F(ApiCalls, StoresNoPasswordOrToken)
{
    const std::string header = tokenHeader();
    const std::string token = header.substr(7, header.size() - 9);
    const std::string login = "/possystem/v4/getToken";
    EXPECT_EQ(get(login + "?login=shop&pass=secret").status, 200);
    EXPECT_EQ(get(login + "?pass=secret&login=shop").status, 200);
    EXPECT_EQ(exchange(postRequest(login, R"({"login":"shop","pass":"secret")")).status, 400);
    EXPECT_EQ(post("/possystem/v4/group-1/sell?token=" + token, goodReceipt()).status, 200);
    EXPECT_EQ(post("/_emulator/faults", {{"endpoint", "token"}, {"effect", "truncated"}}).status, 200);
    RawClient cut(port());
    cut.send(getRequest(login + "?login=shop&pass=secret"));
    const std::string half = cut.receiveAll().body;

    const std::string all = get("/_emulator/exchanges").body;
    EXPECT_THAT(all, AllOf(HasSubstr("/getToken?login=shop&pass=***"), HasSubstr("sell?token=***")));
    EXPECT_THAT(all, AllOf(Not(HasSubstr("secret")), Not(HasSubstr(token.substr(0, 20)))));
    EXPECT_THAT(all, Not(HasSubstr(half.substr(half.find("token") + 8, 20))));
}

TEST_F(ApiCalls, RecordsAnswersByteForByte)
{
    const auto recorded = [this] {
        return get("/_emulator/exchanges?limit=1").json()["exchanges"][0]["answer"].get<std::string>();
    };
    RawClient kept(port());
    kept.send(postRequest("/possystem/v4/group-1/sell", goodReceipt("1").dump(), tokenHeader()));
    const auto whole = kept.receive();
    EXPECT_THAT(whole.head, HasSubstr("Connection: keep-alive\r\n"));
    EXPECT_EQ(recorded(), whole.head + whole.body);

    RawClient closed(port());
    closed.send(postRequest(
        "/possystem/v4/group-1/sell", goodReceipt("2").dump(), tokenHeader() + "Connection: close\r\n"));
    const auto last = closed.receiveAll();
    EXPECT_THAT(last.head, HasSubstr("Connection: close\r\n"));
    EXPECT_EQ(recorded(), last.head + last.body);

    EXPECT_EQ(post("/_emulator/faults", {{"endpoint", "sell"}, {"effect", "truncated"}}).status, 200);
    RawClient cut(port());
    cut.send(postRequest("/possystem/v4/group-1/sell", goodReceipt("3").dump(), tokenHeader()));
    const auto half = cut.receiveAll();
    EXPECT_EQ(recorded(), half.head + half.body);
}

TEST_F(ApiCalls, RecordsUnknownCalls)
{
    EXPECT_EQ(get("/possystem/v4/group-1/status/x").status, 400);
    EXPECT_EQ(get("/possystem/v5/getToken?login=shop&pass=secret").status, 400);
    EXPECT_EQ(exchange(postRequest("/getToken", R"({"login":"shop","pass":"secret"})")).status, 400);
    EXPECT_EQ(call("PUT", "/possystem/v4/getToken").status, 400);
    const Json exchanges = get("/_emulator/exchanges?limit=4").json()["exchanges"];
    std::vector<std::string> lines;
    for (const Json& exchange : exchanges) {
        EXPECT_EQ(exchange["endpoint"], "unknown");
        EXPECT_EQ(exchange["code"], 40);
        const auto request = exchange["request"].get<std::string>();
        EXPECT_THAT(request, Not(HasSubstr("secret")));
        lines.push_back(request.substr(0, request.find('\r')));
    }
    EXPECT_THAT(lines, ElementsAre("PUT /possystem/v4/getToken HTTP/1.1", "POST /getToken HTTP/1.1",
                           "GET /possystem/v5/getToken?login=shop&pass=*** HTTP/1.1",
                           "GET /possystem/v4/group-1/status/x HTTP/1.1"));
}

TEST_F(ApiCalls, StoresNoSecretSentInAnUnusualWay)
{
    const std::string path = "/possystem/v4/getToken";
    const auto sendRaw = [this](const std::string& head, const std::string& body) {
        return exchange(
            head + "Host: 127.0.0.1\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
    };
    EXPECT_EQ(get(path + "?pass=secret&pass=secret&%70ass=secret&login=shop").status, 200);
    EXPECT_EQ(get("/possystem/v4/group-1/report/x?token=secret&token=secret").status, 401);
    EXPECT_EQ(sendRaw("POST " + path + " HTTP/1.1\r\n", "login=shop&pass=secret").status, 400);
    EXPECT_EQ(sendRaw("POST " + path + "/x HTTP/1.1\r\n", R"({"pass": "secret"})").status, 401);
    EXPECT_EQ(sendRaw("POST /elsewhere HTTP/1.1\r\n", R"({"pass": "secret)").status, 400);
    EXPECT_EQ(
        sendRaw("POST " + path + " HTTP/1.1\r\nToken: a\r\n secret\r\ntoken: secret\r\n", "{}").status, 400);
    EXPECT_EQ(sendRaw("POST " + path + " HTTP/1.1\r\nAuthorization: Basic secret\r\n", "{}").status, 400);
    const std::string all = get("/_emulator/exchanges").body;
    EXPECT_THAT(all, Not(HasSubstr("secret")));
    EXPECT_THAT(all, HasSubstr("?pass=***&pass=***&%70ass=***&login=shop HTTP/1.1"));
}

TEST_F(ApiCalls, RecordsTheRestOfARequestUnchanged)
{
    const std::string sent =
        "POST /possystem/v4/group-1/sell?a=1&b HTTP/1.1\r\nHost: 127.0.0.1\r\nX: a\r\n b\r\n"
        "Token: ***\r\nContent-Length: 2\r\n\r\n{}";
    EXPECT_EQ(exchange(sent).status, 401);
    EXPECT_EQ(get("/_emulator/exchanges?limit=1").json()["exchanges"][0]["request"], sent);
}

TEST_F(ApiCalls, ShowsTheNewestExchangesOfADocumentAndEarlierOnesOnRequest)
{
    const std::string uuid = registerReceipt("id-1");
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(report(uuid).status, 200);
    const auto sequences = [&](const std::string& query) {
        std::vector<int> all;
        const Json list = get("/_emulator/documents/" + uuid + "/exchange" + query).json();
        for (const Json& one : list["exchanges"])
            all.push_back(one["sequence"]);
        return all;
    };
    EXPECT_THAT(sequences(""), ElementsAre(2, 3, 4, 5, 6));
    EXPECT_THAT(sequences("?limit=2"), ElementsAre(5, 6));
    EXPECT_THAT(sequences("?limit=2&before=5"), ElementsAre(3, 4));
    EXPECT_THAT(sequences("?after=4"), ElementsAre(5, 6));
    EXPECT_EQ(get("/_emulator/documents/" + uuid + "/exchange?after=x").status, 400);
}

TEST_F(ApiCalls, ShowsALostAnswerAsEmpty)
{
    EXPECT_EQ(post("/_emulator/faults",
                  {{"endpoint", "sell"}, {"effect", "close"}, {"phase", "after"}, {"name", "lost"}})
                  .status,
        200);
    RawClient client(port());
    client.send(postRequest("/possystem/v4/group-1/sell", goodReceipt("id").dump(), tokenHeader()));
    EXPECT_EQ(client.receiveAll().head, "");
    const Json document = get("/_emulator/documents?external_id=id").json()["documents"][0];
    const Json exchange = get("/_emulator/exchanges?group=group-1&external_id=id").json()["exchanges"][0];
    EXPECT_EQ(exchange["uuid"], document["uuid"]);
    EXPECT_EQ(exchange["status"], 0);
    EXPECT_EQ(exchange["answer"], "");
    EXPECT_EQ(exchange["fault"], "lost (after close)");
}

TEST_F(ApiCalls, ShowsBytesThatAreNotText)
{
    EXPECT_EQ(
        exchange(postRequest("/possystem/v4/%ff/sell", "{\"external_id\":\"\xff\"}", tokenHeader())).status,
        401);
    const auto answer = get("/_emulator/exchanges?limit=1");
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.json()["exchanges"][0]["group"], "\xEF\xBF\xBD");
    EXPECT_EQ(get("/_emulator/documents/%ff").status, 404);
}

TEST_F(ApiCalls, ShowsCallsThatRegisteredNothing)
{
    Json body = goodReceipt("bad");
    body["receipt"].erase("total");
    EXPECT_EQ(sell(body).status, 400);
    const Json exchanges = get("/_emulator/exchanges?group=group-1&external_id=bad").json()["exchanges"];
    ASSERT_EQ(exchanges.size(), 1u);
    EXPECT_EQ(exchanges[0]["code"], 32);
}

TEST_F(ApiCalls, ShowsTheExchangesOfAGroupAndOfAnIdInAnyGroup)
{
    options.service.groups = {{.code = "a"}, {.code = "b"}};
    options.service.users = {{.login = "shop", .password = "secret", .groups = {"a", "b"}}};
    start();
    takeToken();
    for (const std::string group : {"a", "b"}) {
        for (const std::string id : {"1", "2"}) {
            EXPECT_EQ(exchange(postRequest(
                                   "/possystem/v4/" + group + "/sell", goodReceipt(id).dump(), tokenHeader()))
                          .status,
                200);
        }
    }
    const auto shown = [this](const std::string& query) {
        std::vector<std::string> all;
        const Json list = get("/_emulator/exchanges" + query).json();
        for (const Json& one : list["exchanges"])
            all.push_back(one["group"].get<std::string>() + one["external_id"].get<std::string>());
        return all;
    };
    EXPECT_THAT(shown("?external_id=1"), ElementsAre("a1", "b1"));
    EXPECT_THAT(shown("?external_id=1&group=b"), ElementsAre("b1"));
    EXPECT_THAT(shown("?group=a"), ElementsAre("a2", "a1"));
    EXPECT_THAT(shown("?group=a&limit=1"), ElementsAre("a2"));
    EXPECT_THAT(shown("?group=c"), IsEmpty());
    EXPECT_THAT(shown(""), ElementsAre("b2", "b1", "a2", "a1", ""));
}

TEST_F(ApiCalls, DeletesDocumentsButNotTheCountersOfTheRegister)
{
    registerReceipt("id-1");
    EXPECT_EQ(call("DELETE", "/_emulator/documents").status, 200);
    EXPECT_THAT(ids(""), IsEmpty());
    EXPECT_THAT(get("/_emulator/exchanges").json()["exchanges"], IsEmpty());
    verdict("external_id=id-1&count=0&wire_requests=0", 200);
    EXPECT_EQ(report(registerReceipt("id-1")).json()["payload"]["fiscal_document_number"], 4);
}

TEST_F(ApiCalls, AddsListsAndRemovesFaults)
{
    const Json close{{"endpoint", "sell"}, {"effect", "close"}, {"match", {{"external_id", "no-such"}}}};
    EXPECT_EQ(post("/_emulator/faults", close).json()["faults"][0]["id"], 1);
    EXPECT_EQ(post("/_emulator/faults", Json::array({close, close})).json()["faults"][1]["id"], 3);
    EXPECT_EQ(call("DELETE", "/_emulator/faults/2").json()["faults"].size(), 2u);
    EXPECT_EQ(call("DELETE", "/_emulator/faults/2").status, 404);
    EXPECT_EQ(get("/_emulator/faults").json()["faults"][1]["id"], 3);
    EXPECT_THAT(call("DELETE", "/_emulator/faults").json()["faults"], IsEmpty());
}

TEST_F(ApiCalls, DeletesNothingForAnEmptyId)
{
    registerReceipt("id-1");
    EXPECT_EQ(post("/_emulator/faults", {{"endpoint", "token"}, {"effect", "close"}}).status, 200);
    for (const std::string path :
        {"documents/", "documents//", "documents/x", "faults/", "faults//", "faults/x"})
        EXPECT_EQ(call("DELETE", "/_emulator/" + path).status, 404) << path;
    EXPECT_THAT(ids(""), ElementsAre("id-1"));
    EXPECT_EQ(get("/_emulator/faults").json()["faults"].size(), 1u);
    EXPECT_EQ(get("/_emulator/documents/").status, 404);
}

TEST_F(ApiCalls, AddsNoFaultIfOneIsInvalid)
{
    const Json good{{"endpoint", "sell"}, {"effect", "close"}};
    const auto answer =
        post("/_emulator/faults", Json::array({good, {{"endpoint", "sell"}, {"effect", "x"}}}));
    EXPECT_EQ(answer.status, 400);
    EXPECT_THAT(
        answer.json()["error"].get<std::string>(), StartsWith("fault.effect must be one of error, html"));
    EXPECT_THAT(get("/_emulator/faults").json()["faults"], IsEmpty());
    EXPECT_EQ(exchange(postRequest("/_emulator/faults", "{")).status, 400);
}

TEST_F(ApiCalls, RefusesMoreFaultsThanItKeeps)
{
    const Json close{{"endpoint", "sell"}, {"effect", "close"}, {"match", {{"external_id", "no-such"}}}};
    EXPECT_EQ(post("/_emulator/faults", Json(999, close)).status, 200);
    const auto answer = post("/_emulator/faults", Json(2, close));
    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(
        answer.json()["error"], "at most 1000 faults are kept, and there are 999 already; delete some first");
    EXPECT_EQ(get("/_emulator/faults").json()["faults"].size(), 999u);
    EXPECT_EQ(post("/_emulator/faults", close).status, 200);
    EXPECT_EQ(post("/_emulator/faults", close).status, 400);
    EXPECT_EQ(call("DELETE", "/_emulator/faults/7").status, 200);
    EXPECT_EQ(post("/_emulator/faults", close).status, 200);
}

TEST_F(ApiCalls, RefusesFaultsWithLongTexts)
{
    const std::string text(512, 'x');
    const auto set = [this](const std::string& pointer, const std::string& value) {
        Json fault{
            {"endpoint", "sell"}, {"effect", "without-key"}, {"key", "uuid"}, {"match", Json::object()}};
        fault[Json::json_pointer(pointer)] = value;
        return post("/_emulator/faults", fault);
    };
    for (const std::string pointer :
        {"/name", "/key", "/match/login", "/match/group", "/match/external_id"}) {
        EXPECT_EQ(set(pointer, text).status, 200) << pointer;
        const auto refused = set(pointer, text + "x");
        EXPECT_EQ(refused.status, 400) << pointer;
        EXPECT_THAT(refused.json()["error"].get<std::string>(), HasSubstr("may be 512 bytes long"));
    }
}

TEST_F(ApiCalls, RejectsFaultsNestedTooDeeply)
{
    EXPECT_EQ(exchange(postRequest("/_emulator/faults", std::string(500'000, '['))).status, 400);
    const std::string closed = std::string(500'000, '[') + std::string(500'000, ']');
    EXPECT_EQ(exchange(postRequest("/_emulator/faults", closed)).status, 400);
    EXPECT_EQ(get("/_emulator/faults").status, 200);
}

TEST_F(ApiCalls, CountsMatchesAndHitsOfAFault)
{
    const Json match{{"external_id", "id-*"}, {"after", 1}, {"next", 1}};
    EXPECT_EQ(
        post("/_emulator/faults", {{"endpoint", "sell"}, {"effect", "html"}, {"match", match}}).status, 200);
    EXPECT_EQ(sell(goodReceipt("id-1")).status, 200);
    EXPECT_EQ(sell(goodReceipt("other")).status, 200);
    EXPECT_EQ(sell(goodReceipt("id-2")).status, 502);
    EXPECT_EQ(sell(goodReceipt("id-3")).status, 200);
    const Json fault = get("/_emulator/faults").json()["faults"][0];
    EXPECT_EQ(fault["matched"], 2);
    EXPECT_EQ(fault["hits"], 1);
    EXPECT_EQ(fault["spent"], true);
}

TEST_F(ApiCalls, ListsTheEffects)
{
    const Json effects = get("/_emulator/effects").json()["effects"];
    EXPECT_EQ(
        effects[0], Json::parse(R"({"effect":"error","phase":"before","endpoints":["token","sell","report"],
        "parameter":"code","meaning":"the service's error `code`","default":50})"));
    EXPECT_EQ(effects.size(), 18u);
    for (const Json& effect : effects) {
        if (effect["effect"] == "fail") {
            EXPECT_EQ(effect["types"][1], Json({{"type", "agent"}, {"code", 2003}}));
        }
    }
}

TEST_F(ApiCalls, ListsTheDefaultPhaseAndParameterOfEveryEffect)
{
    const Json effects = get("/_emulator/effects").json()["effects"];
    for (const Json& effect : effects) {
        Json fault{{"endpoint", effect["endpoints"][0]}, {"effect", effect["effect"]}};
        if (effect["parameter"] == "key")
            fault["key"] = "uuid";
        const Json set = post("/_emulator/faults", fault).json()["faults"][0];
        EXPECT_EQ(set["phase"], effect["phase"]) << effect;
        if (effect.contains("default")) {
            EXPECT_EQ(set[effect["parameter"].get<std::string>()], effect["default"]) << effect;
        }
    }
}

TEST_F(ApiCalls, ChecksExpectations)
{
    verdict("count=0", 200);
    EXPECT_EQ(verdict("external_id=id-1", 417)["reason"], "receipts: 0, not 1");
    registerReceipt("id-1");
    EXPECT_EQ(verdict("external_id=id-1&total=150.50&wire_requests=1&status=done", 200),
        Json({{"pass", true}, {"reason", "receipts: 1, all as expected"}}));
    EXPECT_EQ(verdict("external_id=id-1&total=150.51", 417)["reason"], "total of id-1 is 150.50, not 150.51");
    EXPECT_EQ(verdict("external_id=id-1&status=fail", 417)["reason"], "status of id-1 is done, not fail");
    registerReceipt("id-1");
    EXPECT_EQ(verdict("external_id=id-1&wire_requests=1&count=2", 417)["reason"],
        "receipts: 1, not 2; requests for id-1: 2, not 1");
    registerReceipt("id-2");
    verdict("external_id=id-*&count=2&operation=sell", 200);
    EXPECT_EQ(verdict("external_id=none&count=0&wire_requests=1", 417)["reason"], "requests: 0, not 1");
}

TEST_F(ApiCalls, RejectsAnInvalidExpectation)
{
    EXPECT_THAT(verdict("id=1", 400)["error"].get<std::string>(),
        StartsWith("id is unknown; known parameters are group"));
    verdict("count=many", 400);
    verdict("total=1.234", 400);
    verdict("total=nan", 400);
    EXPECT_EQ(verdict("status=Done", 400)["error"], "status must be one of wait, done, fail");
    EXPECT_EQ(verdict("count=1&count=2", 400)["error"], "count is given twice");
    EXPECT_THAT(verdict("text=x&wire_requests=1", 400)["error"].get<std::string>(),
        StartsWith("wire_requests cannot"));
}

TEST_F(ApiCalls, RejectsAnEmptyExpectation)
{
    registerReceipt("id-1");
    for (const std::string name :
        {"group", "external_id", "operation", "text", "count", "total", "status", "wire_requests"}) {
        EXPECT_EQ(verdict(name + "=", 400)["error"], name + " is empty; leave it out to accept any value");
        EXPECT_EQ(verdict("external_id=id-1&" + name, 400)["error"].get<std::string>().substr(0, name.size()),
            name);
    }
}

// A text that is cut at a zero byte would make an expectation about one id pass for another.
TEST_F(ApiCalls, RejectsQueryValuesWithBytesThatAreNotText)
{
    registerReceipt("a");
    for (const std::string path : {"expect", "documents", "exchanges"}) {
        for (const std::string value : {"a%00zzz", "a%00", "%00", "a%0A", "a%7F", "a%ff", "%c1%a1",
                 "%ed%a0%80", "%f5%80%80%80", "a%c3"}) {
            const auto answer = get("/_emulator/" + path + "?external_id=" + value);
            EXPECT_EQ(answer.status, 400) << path << " " << value << " " << answer.body;
            EXPECT_EQ(answer.json()["error"], "external_id must be text in UTF-8 without control characters");
        }
        EXPECT_EQ(get("/_emulator/" + path + "?a%00=b").status, 400) << path;
    }
    verdict("external_id=a", 200);
}

// Clients can send ids that hold a zero byte.
TEST_F(ApiCalls, TellsIdsApartThatDifferOnlyAfterAZeroByte)
{
    registerReceipt(std::string("a\0zzz", 5));
    EXPECT_THAT(ids("?external_id=a"), IsEmpty());
    verdict("external_id=a&count=0&wire_requests=0", 200);
    verdict("external_id=a*&count=1&wire_requests=1", 200);
}

TEST_F(ApiCalls, CountsWireRequestsPerOperation)
{
    registerReceipt("id-1");
    const auto refund =
        exchange(postRequest("/possystem/v4/group-1/sell_refund", goodReceipt("id-1").dump(), tokenHeader()));
    EXPECT_EQ(refund.json()["error"]["code"], 33);
    verdict("external_id=id-1&wire_requests=2", 200);
    verdict("external_id=id-1&operation=sell&wire_requests=1", 200);
    verdict("external_id=id-1&operation=sell_refund&count=0&wire_requests=1", 200);
    verdict("external_id=id-1&operation=buy&count=0&wire_requests=0", 200);
}

TEST_F(ApiCalls, RejectsUnknownCalls)
{
    EXPECT_EQ(get("/_emulator/").status, 404);
    EXPECT_EQ(call("PUT", "/_emulator/documents").status, 404);
    EXPECT_EQ(get("/_emulator/documents/x/y/z").status, 404);
}

TEST_F(ApiCalls, SendsAnEventForEveryCall)
{
    RawClient page(port());
    page.send(getRequest("/_emulator/events"));
    EXPECT_THAT(page.receive().head, HasSubstr("Content-Type: text/event-stream"));
    const std::string uuid = registerReceipt("id-1");
    const std::string call = page.receiveUntil("\n\ndata: ", "\n\n");
    EXPECT_EQ(Json::parse(call)["kind"], "call");
    EXPECT_EQ(Json::parse(call)["document"]["uuid"], uuid);
    EXPECT_EQ(post("/_emulator/faults", {{"endpoint", "sell"}, {"effect", "close"}}).status, 200);
    EXPECT_EQ(Json::parse(page.receiveUntil("data: ", "\n\n")), Json({{"kind", "faults"}}));
}

TEST_F(ApiCalls, SendsTheDocumentOfARefusedCall)
{
    const std::string uuid = registerReceipt("id-1");
    RawClient page(port());
    page.send(getRequest("/_emulator/events"));
    EXPECT_EQ(page.receive().status, 200);
    Json body = goodReceipt("id-1");
    body["receipt"].erase("total");
    EXPECT_EQ(sell(body).json()["error"]["code"], 32);
    const Json event = Json::parse(page.receiveUntil("data: ", "\n\n"));
    EXPECT_EQ(event["document"]["uuid"], uuid);
    EXPECT_EQ(event["document"]["wire_requests"], 2);
}

TEST_F(ApiCalls, RefusesAForeignHost)
{
    EXPECT_EQ(call("GET", "/_emulator/faults", "", "shop.example").status, 403);
    EXPECT_EQ(call("GET", "/_emulator/faults", "", "127.0.0.1.shop.example:80").status, 403);
    EXPECT_EQ(call("GET", "/_emulator/faults", "", "localhost:1").status, 200);
    EXPECT_EQ(call("GET", "/_emulator/faults", "", "[::1]:1").status, 200);
    EXPECT_EQ(call("POST", "/possystem/v4/getToken", "", "shop.example").status, 403);
}

TEST_F(ApiCalls, RefusesAHostThatIsNotExactlyANameAndAPort)
{
    for (const std::string host :
        {"127.0.0.1:1@shop.example", "127.0.0.1:80:80", "127.0.0.1:", "127.0.0.1:x", "127.0.0.1:-1",
            "127.0.0.1:65536", "127.0.0.1:000080", "127.0.0.1/x", "127.0.0.1 shop.example", "localhost.",
            "user@localhost", "[::1]x", "[::1]:", "[::1]1", "x[::1]", "", "127.0.0.1,shop.example"})
        EXPECT_EQ(call("GET", "/_emulator/faults", "", host).status, 403) << host;
    EXPECT_EQ(call("GET", "/_emulator/faults", "", "127.0.0.1:65535").status, 200);
    EXPECT_EQ(call("GET", "/_emulator/faults", "Host: shop.example\r\n", "127.0.0.1").status, 403);
    EXPECT_EQ(call("GET", "/_emulator/faults", "Host: 127.0.0.1\r\n", "127.0.0.1").status, 403);
    const std::string own = "127.0.0.1:" + std::to_string(port());
    EXPECT_EQ(
        call("GET", "/_emulator/faults", "Origin: http://" + own + "\r\nOrigin: http://shop.example\r\n", own)
            .status,
        403);
}

TEST_F(ApiCalls, RefusesAForeignOrigin)
{
    const std::string own = "127.0.0.1:" + std::to_string(port());
    EXPECT_EQ(call("DELETE", "/_emulator/documents", "Origin: http://shop.example\r\n", own).status, 403);
    EXPECT_EQ(call("DELETE", "/_emulator/documents", "Origin: http://127.0.0.1:1\r\n", own).status, 403);
    EXPECT_EQ(call("DELETE", "/_emulator/documents", "Origin: null\r\n", own).status, 403);
    EXPECT_EQ(call("DELETE", "/_emulator/documents", "Origin: http://" + own + "\r\n", own).status, 200);
}

TEST_F(ApiCalls, RefusesRequestsOfForeignPages)
{
    const auto status = [this](const std::string& site, const std::string& mode, const std::string& path,
                            const std::string& method = "GET") {
        return call(method, path, "Sec-Fetch-Site: " + site + "\r\nSec-Fetch-Mode: " + mode + "\r\n").status;
    };
    for (const std::string site : {"cross-site", "same-site"}) {
        for (const std::string path : {"/_emulator/events", "/_emulator/documents", "/slip.js", "/",
                 "/possystem/v4/getToken?login=shop&pass=secret"})
            EXPECT_EQ(status(site, "no-cors", path), 403) << site << " " << path;
        EXPECT_EQ(status(site, "navigate", "/"), 200) << site;
        EXPECT_EQ(status(site, "navigate", "/index.html"), 200) << site;
        EXPECT_EQ(status(site, "navigate", "/", "POST"), 403) << site;
        EXPECT_EQ(status(site, "navigate", "/_emulator/documents"), 403) << site;
        EXPECT_EQ(status(site, "navigate", "/possystem/v4/getToken?login=shop&pass=secret"), 403) << site;
    }
    EXPECT_EQ(status("same-origin", "cors", "/_emulator/documents"), 200);
    EXPECT_EQ(status("none", "navigate", "/_emulator/documents"), 200);
}

TEST_F(ApiCalls, AcceptsAnAllowedHost)
{
    options.allowedHosts = {"cloud.test"};
    start();
    EXPECT_EQ(call("GET", "/_emulator/faults", "", "cloud.test:1").status, 200);
}
