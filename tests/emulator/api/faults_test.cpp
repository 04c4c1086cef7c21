#include "tests/emulator/support/apicalls.h"

#include <gmock/gmock.h>

using emulator::Json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

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
