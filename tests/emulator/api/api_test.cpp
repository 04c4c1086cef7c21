#include "tests/emulator/support/apicalls.h"

#include <gmock/gmock.h>

using emulator::Json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

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

TEST_F(ApiCalls, ListsTheRulesInForceWithTheirSource)
{
    const auto rulesOf = [this] {
        std::vector<std::string> all;
        const Json rules = get("/_emulator/rules").json();
        for (const Json& one : rules["receipt"]) {
            if (one["field"] == "receipt.company.email" || !one.contains("required"))
                all.push_back(one["source"].get<std::string>() + " " + one["rule"].get<std::string>());
        }
        return all;
    };
    using testing::Contains;
    EXPECT_THAT(rulesOf(), Contains("o ожидается строка длиной от 1 до 64 символов"));
    EXPECT_THAT(rulesOf(), Not(Contains("d итог не равен сумме оплат")));
    options.service.edition.strict = true;
    start();
    EXPECT_THAT(rulesOf(), Contains("d ожидается строка длиной от 1 до 64 символов"));
    EXPECT_THAT(rulesOf(), Contains("d итог не равен сумме оплат"));
    EXPECT_EQ(get("/_emulator/rules").json()["correction"][0]["field"], "timestamp");
}

TEST_F(ApiCalls, ListsRevisionLateRulesAndNamesWithTheirSource)
{
    options.service.lists.vatTypes.push_back("vat25");
    start();
    const Json usual = get("/_emulator/rules").json();
    EXPECT_EQ(usual["revision"], "2025-12");
    EXPECT_EQ(usual["strict"], false);
    EXPECT_EQ(usual["later"], Json::parse(R"([
        {"field": "company.inn", "rule": "ИНН не совпадает с ИНН группы", "source": "r", "code": 2009,
            "type": "agent"},
        {"field": "items[].vat.sum", "rule": "ожидается сумма НДС по ставке", "source": "r", "code": 502,
            "type": "driver"}])"));
    const Json& names = usual["names"];
    EXPECT_EQ(names.size(), 6u);
    EXPECT_EQ(names["taxationSystems"][0], Json::parse(R"({"name": "osn", "source": "d"})"));
    EXPECT_EQ(names["paymentObjects"].back(), Json::parse(R"({"name": "casino_payment", "source": "?"})"));
    EXPECT_EQ(names["vatTypes"].back(), Json::parse(R"({"name": "vat25", "source": null})"));
    for (const char* kind : {"receipt", "correction"}) {
        for (const Json& rule : usual[kind])
            EXPECT_TRUE(rule.contains("field") && rule.contains("source")) << rule;
    }

    options.service.edition = {.revision = emulator::Revision::May2023, .strict = true};
    start();
    const Json older = get("/_emulator/rules").json();
    EXPECT_EQ(older["revision"], "2023-05");
    EXPECT_EQ(older["strict"], true);
    EXPECT_TRUE(older["later"].empty());
}
