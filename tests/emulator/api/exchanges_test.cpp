#include "tests/emulator/support/apicalls.h"

#include <gmock/gmock.h>

using emulator::Json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

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
