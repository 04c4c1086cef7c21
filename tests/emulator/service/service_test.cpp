#include "tests/emulator/support/running.h"

#include <gmock/gmock.h>

using emulator::Json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

// HTTP status, error code (0 if there is no error) and status word.
struct Outline
{
    int http;
    int code;
    std::string word;
    bool operator==(const Outline&) const = default;
};

void PrintTo(const Outline& outline, std::ostream* out)
{
    *out << outline.http << " code " << outline.code << " status " << outline.word;
}

Outline outline(const RawClient::Answer& answer)
{
    const Json body = answer.json();
    const Json& error = body["error"];
    return {answer.status, error.is_null() ? 0 : error["code"].get<int>(), body.value("status", "")};
}

struct TokenCall : RunningEmulator
{
    TokenCall() { start(); }
    const std::string path = "/possystem/v4/getToken";
};

struct ServiceCalls : RunningEmulator
{
    ServiceCalls()
    {
        options.service.groups.push_back({.code = "foreign"});
        options.service.users.push_back(
            {.login = "blocked", .password = "secret", .groups = {"group-1"}, .blocked = true});
    }
    void ready()
    {
        start();
        takeToken();
    }
    const std::string sellPath = "/possystem/v4/group-1/sell";
};

} // namespace

TEST_F(TokenCall, ReturnsATokenForTheRightPassword)
{
    const auto answer = post(path, {{"login", "shop"}, {"pass", "secret"}});
    const Json body = answer.json();
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(body["token"].get<std::string>().size(), 128u);
    EXPECT_EQ(
        body, Json({{"error", nullptr}, {"token", body["token"]}, {"timestamp", "01.03.2026 03:00:00"}}));
    EXPECT_THAT(answer.head, HasSubstr("Content-Type: application/json; charset=utf-8\r\n"));
}

TEST_F(TokenCall, AcceptsCredentialsInTheQuery)
{
    const auto answer = get(path + "?login=shop&pass=secret");
    EXPECT_EQ(outline(answer), (Outline{200, 0, ""}));
    EXPECT_TRUE(answer.json().contains("token"));
}

TEST_F(TokenCall, RefusesAWrongPasswordAndAnUnknownLogin)
{
    EXPECT_EQ(outline(post(path, {{"login", "shop"}, {"pass", "Secret"}})), (Outline{401, 12, ""}));
    EXPECT_EQ(outline(post(path, {{"login", "nobody"}, {"pass", "secret"}})), (Outline{401, 12, ""}));
    EXPECT_EQ(outline(get(path + "?login=shop&pass=wrong")), (Outline{401, 12, ""}));
}

TEST_F(TokenCall, RefusesAnInvalidRequest)
{
    EXPECT_EQ(outline(post(path, {{"login", "shop"}})), (Outline{400, 13, ""}));
    EXPECT_EQ(outline(post(path, Json::array())), (Outline{400, 13, ""}));
    EXPECT_EQ(outline(exchange(postRequest(path, "{not json"))), (Outline{400, 13, ""}));
}

TEST_F(ServiceCalls, RefusesABlockedUser)
{
    start();
    EXPECT_EQ(outline(post("/possystem/v4/getToken", {{"login", "blocked"}, {"pass", "secret"}})),
        (Outline{403, 14, ""}));
}

TEST_F(ServiceCalls, RegistersAReceiptAndReportsItDone)
{
    ready();
    Json body = goodReceipt();
    body["service"]["callback_url"] = "http://shop.example/done";
    const auto sold = sell(body);
    const Json answer = sold.json();
    const std::string uuid = answer["uuid"];
    EXPECT_EQ(sold.status, 200);
    EXPECT_EQ(answer,
        Json({{"uuid", uuid}, {"status", "wait"}, {"error", nullptr}, {"timestamp", "01.03.2026 03:00:00"}}));

    passTime(std::chrono::seconds(5));
    const auto reported = report(uuid);
    EXPECT_EQ(reported.status, 200);
    Json done = reported.json();
    EXPECT_GT(done["payload"]["fiscal_document_attribute"].get<std::int64_t>(), 2147483647);
    EXPECT_EQ(done["payload"]["ofd_receipt_url"], "http://127.0.0.1:" + std::to_string(port()) + "/#" + uuid);
    done["payload"].erase("fiscal_document_attribute");
    done["payload"].erase("ofd_receipt_url");
    EXPECT_EQ(done, Json::parse(R"({"uuid": ")" + uuid + R"(", "error": null, "status": "done",
        "payload": {"total": 150.5, "ofd_inn": "7700000099", "fns_site": "www.nalog.gov.ru", "fn_number": "0000990700000001",
            "shift_number": 1, "receipt_datetime": "01.03.2026 03:00:00", "fiscal_receipt_number": 1,
            "fiscal_document_number": 3, "ecr_registration_number": "0000123400000001"},
        "warnings": null, "timestamp": "01.03.2026 03:00:05", "group_code": "group-1", "daemon_code": "fremulator",
        "device_code": "KKT000001", "external_id": "id-1",
        "callback_url": "http://shop.example/done"})"));
}

TEST_F(ServiceCalls, AcceptsOnlyKnownOperations)
{
    ready();
    const auto outcome = [this](const std::string& operation, const std::string& id) {
        return outline(exchange(
            postRequest("/possystem/v4/group-1/" + operation, goodReceipt(id).dump(), tokenHeader())));
    };
    EXPECT_EQ(outcome("sell_refund", "2"), (Outline{200, 0, "wait"}));
    EXPECT_EQ(outcome("buy", "3"), (Outline{200, 0, "wait"}));
    EXPECT_EQ(outcome("buy_refund", "4"), (Outline{200, 0, "wait"}));
    EXPECT_EQ(outcome("sell_correction", "5"), (Outline{400, 32, "fail"}));
    EXPECT_EQ(outcome("give", "6"), (Outline{400, 31, ""}));
}

TEST_F(ServiceCalls, ReadsOnlyTheObjectOfTheOperation)
{
    ready();
    Json correction = Json::parse(R"({"timestamp": "01.03.2026 03:00:00", "external_id": "c", "correction": {
        "company": {"inn": "7700000000", "payment_address": "shop.example"},
        "correction_info": {"type": "self"}, "vats": [{"type": "none", "sum": 0}],
        "payments": [{"type": 1, "sum": 20.5}]}, "receipt": null})");
    Json receipt = goodReceipt("r");
    receipt["correction"] = nullptr;
    const auto total = [this](const std::string& operation, const Json& body) {
        const Json taken =
            exchange(postRequest("/possystem/v4/group-1/" + operation, body.dump(), tokenHeader())).json();
        return report(taken["uuid"]).json()["payload"]["total"].get<double>();
    };
    EXPECT_EQ(total("sell_correction", correction), 20.5);
    EXPECT_EQ(total("sell", receipt), 150.5);
}

TEST_F(ServiceCalls, AnswersARepeatedExternalIdWithTheFirstUuid)
{
    ready();
    const std::string uuid = sell(goodReceipt()).json()["uuid"];
    Json other = goodReceipt();
    other["receipt"]["items"][0]["name"] = "something else";
    const auto again = sell(other);
    EXPECT_EQ(outline(again), (Outline{400, 33, "wait"}));
    EXPECT_EQ(again.json()["uuid"], uuid);
    EXPECT_NE(sell(goodReceipt("id-2")).json()["uuid"], uuid);
}

TEST_F(ServiceCalls, ReportsNotProcessedAsOftenAsConfigured)
{
    options.service.waits = 2;
    ready();
    const std::string uuid = sell(goodReceipt()).json()["uuid"];
    const auto waiting = report(uuid);
    EXPECT_EQ(outline(waiting), (Outline{200, 34, "wait"}));
    EXPECT_EQ(outline(report(uuid)), (Outline{200, 34, "wait"}));
    EXPECT_EQ(outline(report(uuid)), (Outline{200, 0, "done"}));
    EXPECT_EQ(outline(report(uuid)), (Outline{200, 0, "done"}));
}

TEST_F(ServiceCalls, RefusesAMissingAnUnknownAndAnExpiredToken)
{
    options.service.tokenLife = std::chrono::seconds(60);
    ready();
    EXPECT_EQ(outline(post(sellPath, goodReceipt())), (Outline{401, 10, ""}));
    EXPECT_EQ(outline(exchange(postRequest(sellPath, goodReceipt().dump(), "Token: abc\r\n"))),
        (Outline{401, 10, ""}));
    passTime(std::chrono::seconds(59));
    EXPECT_EQ(outline(sell(goodReceipt())), (Outline{200, 0, "wait"}));
    passTime(std::chrono::seconds(1));
    EXPECT_EQ(outline(sell(goodReceipt("id-2"))), (Outline{401, 11, ""}));
    EXPECT_EQ(outline(report("x")), (Outline{401, 11, ""}));
    takeToken();
    EXPECT_EQ(outline(sell(goodReceipt("id-2"))), (Outline{200, 0, "wait"}));
}

TEST_F(ServiceCalls, AcceptsATokenInTheQuery)
{
    ready();
    const std::string header = tokenHeader();
    const std::string token = header.substr(7, header.size() - 9);
    EXPECT_EQ(outline(post(sellPath + "?token=" + token, goodReceipt())), (Outline{200, 0, "wait"}));
}

TEST_F(ServiceCalls, RefusesAGroupThatTheTokenDoesNotCover)
{
    ready();
    for (const std::string group : {"foreign", "nowhere"}) {
        const std::string path = "/possystem/v4/" + group;
        EXPECT_EQ(outline(exchange(postRequest(path + "/sell", goodReceipt().dump(), tokenHeader()))),
            (Outline{401, 20, ""}));
        EXPECT_EQ(outline(exchange(getRequest(path + "/report/x", tokenHeader()))), (Outline{401, 20, ""}));
    }
}

TEST_F(ServiceCalls, RefusesAnUnknownUuidAndOneThatIsTooOld)
{
    options.service.tokenLife = std::chrono::days(100);
    ready();
    EXPECT_EQ(outline(report("00000000-0000-4000-8000-000000000000")), (Outline{400, 30, "fail"}));
    const std::string uuid = sell(goodReceipt()).json()["uuid"];
    passTime(std::chrono::days(32));
    EXPECT_EQ(outline(report(uuid)), (Outline{200, 0, "done"}));
    passTime(std::chrono::seconds(1));
    EXPECT_EQ(outline(report(uuid)), (Outline{400, 30, "fail"}));
}

TEST_F(ServiceCalls, RefusesOtherContentTypes)
{
    const auto typed = [this](const std::string& type, const std::string& id) {
        const std::string body = goodReceipt(id).dump();
        return outline(
            exchange("POST " + sellPath + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + type + tokenHeader() +
                     "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body));
    };
    const Outline taken{200, 0, "wait"};
    const Outline refused{415, 41, ""};
    for (const bool strict : {false, true}) {
        options.service.edition.strict = strict;
        ready();
        EXPECT_EQ(typed("Content-Type: text/plain\r\n", "1"), refused);
        EXPECT_EQ(typed("Content-Type: application/json; charset=windows-1251\r\n", "2"), refused);
        EXPECT_EQ(typed("Content-Type: application/json\r\n", "3"), strict ? refused : taken);
        EXPECT_EQ(typed("Content-Type: Application/JSON\r\n", "4"), strict ? refused : taken);
        EXPECT_EQ(typed("", "5"), strict ? refused : taken);
        EXPECT_EQ(typed("content-type: Application/JSON;charset=UTF-8\r\n", "6"), taken);
    }
}

TEST_F(ServiceCalls, TakeASlashAtTheEndUnlessStrict)
{
    for (const bool strict : {false, true}) {
        options.service.edition.strict = strict;
        ready();
        const std::string service = "/possystem/v4/";
        const Outline refused{400, 40, ""};
        EXPECT_EQ(outline(get(service + "getToken/?login=shop&pass=secret")),
            strict ? refused : (Outline{200, 0, ""}));
        EXPECT_EQ(outline(exchange(postRequest(sellPath + "/", goodReceipt("1").dump(), tokenHeader()))),
            strict ? refused : (Outline{200, 0, "wait"}));
        const std::string uuid = sell(goodReceipt("2")).json()["uuid"];
        EXPECT_EQ(outline(exchange(getRequest(service + "group-1/report/" + uuid + "/", tokenHeader()))),
            strict ? refused : (Outline{200, 0, "done"}));
        EXPECT_EQ(
            outline(exchange(postRequest(sellPath + "//", goodReceipt("3").dump(), tokenHeader()))), refused);
    }
}

TEST_F(ServiceCalls, NamesEveryWrongFieldOfAReceipt)
{
    ready();
    Json body = goodReceipt();
    body["receipt"]["client"] = Json::object();
    body["receipt"]["items"][0]["vat"]["type"] = "vat18";
    const auto answer = sell(body);
    EXPECT_EQ(outline(answer), (Outline{400, 32, "fail"}));
    const Json error = answer.json()["error"];
    EXPECT_THAT(error["text"].get<std::string>(),
        HasSubstr(" : NotInEnumeration: #/receipt.items[0].vat.type, PropertyRequired: #/receipt.client"));
    EXPECT_EQ(error["type"], "system");
    EXPECT_FALSE(answer.json().contains("uuid"));
}

TEST_F(ServiceCalls, RefusesInvalidJsonAndUnknownPaths)
{
    ready();
    EXPECT_EQ(outline(exchange(postRequest(sellPath, "{", tokenHeader()))), (Outline{400, 40, ""}));
    EXPECT_EQ(outline(get("/possystem/v4/group-1")), (Outline{400, 40, ""}));
    EXPECT_EQ(outline(get(sellPath)), (Outline{400, 40, ""}));
}

TEST_F(ServiceCalls, RefusesABodyNestedTooDeeply)
{
    ready();
    const auto nested = [](std::size_t depth) {
        Json body = goodReceipt();
        body["\\[[[\""] = Json::parse(std::string(depth, '[') + std::string(depth, ']'));
        return body;
    };
    EXPECT_EQ(outline(sell(nested(63))), (Outline{200, 0, "wait"}));
    EXPECT_EQ(outline(sell(nested(64))), (Outline{400, 40, ""}));
    EXPECT_EQ(outline(exchange(postRequest(sellPath, std::string(900'000, '['), tokenHeader()))),
        (Outline{400, 40, ""}));
}

TEST_F(ServiceCalls, SharesTheRegistersOfAGroupAndNumbersTheirDocumentsSeparately)
{
    options.service.groups.front().registers = 2;
    ready();
    const auto document = [this](const std::string& id) {
        const Json payload = report(sell(goodReceipt(id)).json()["uuid"]).json()["payload"];
        return payload["fn_number"].get<std::string>() + " " + payload["fiscal_document_number"].dump();
    };
    EXPECT_THAT((std::vector{document("1"), document("2"), document("3"), document("4")}),
        ElementsAre("0000990700000001 3", "0000990700000002 3", "0000990700000001 4", "0000990700000002 4"));
}

TEST_F(ServiceCalls, AnswersPipelinedCallsInOrder)
{
    ready();
    RawClient client(port());
    client.send(postRequest(sellPath, goodReceipt("1").dump(), tokenHeader()) +
                postRequest(sellPath, goodReceipt("1").dump(), tokenHeader()) +
                getRequest("/possystem/v4/group-1/report/x", tokenHeader()));
    EXPECT_EQ(outline(client.receive()), (Outline{200, 0, "wait"}));
    EXPECT_EQ(outline(client.receive()), (Outline{400, 33, "wait"}));
    EXPECT_EQ(outline(client.receive()), (Outline{400, 30, "fail"}));
}

TEST_F(ServiceCalls, AcceptsARequestInPieces)
{
    ready();
    const std::string request = postRequest(sellPath, goodReceipt().dump(), tokenHeader());
    RawClient client(port());
    for (std::size_t i = 0; i < request.size(); i += 7)
        client.send(request.substr(i, 7));
    EXPECT_EQ(outline(client.receive()), (Outline{200, 0, "wait"}));
}

TEST_F(ServiceCalls, RefusesRequestsThatAreTooLargeOrNotHttp)
{
    start();
    RawClient large(port());
    large.send("POST / HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 2000000\r\n\r\n");
    EXPECT_EQ(large.receive().status, 413);
    RawClient header(port());
    header.send("GET / HTTP/1.1\r\nX: " + std::string(20000, 'x') + "\r\n\r\n");
    EXPECT_EQ(header.receive().status, 431);
    RawClient garbage(port());
    garbage.send("garbage\r\n\r\n");
    EXPECT_EQ(garbage.receive().status, 400);
}

TEST_F(ServiceCalls, ClosesTheConnectionWhenAsked)
{
    start();
    RawClient client(port());
    client.send(getRequest("/possystem/v4/getToken", "Connection: close\r\n"));
    const auto answer = client.receiveAll();
    EXPECT_EQ(answer.end, RawClient::End::Closed);
    EXPECT_THAT(answer.head, HasSubstr("Connection: close\r\n"));
}

TEST_F(ServiceCalls, AnswersAnExpectationOf100Continue)
{
    ready();
    const std::string body = goodReceipt().dump();
    RawClient client(port());
    client.send("POST " + sellPath + " HTTP/1.1\r\nHost: 127.0.0.1\r\nExpect: 100-continue\r\n" +
                tokenHeader() + "Content-Type: application/json; charset=utf-8\r\nContent-Length: " +
                std::to_string(body.size()) + "\r\n\r\n");
    EXPECT_THAT(client.receive().head, StartsWith("HTTP/1.1 100"));
    client.send(body);
    EXPECT_EQ(outline(client.receive()), (Outline{200, 0, "wait"}));
}
