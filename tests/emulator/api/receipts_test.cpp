#include "tests/emulator/support/running.h"

#include <gmock/gmock.h>

using emulator::Json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

struct Receipts : RunningEmulator
{
    void ready()
    {
        start();
        takeToken();
    }

    [[nodiscard]] static Json wrongReceipt(const std::string& id)
    {
        Json body = goodReceipt(id);
        body["receipt"]["items"][0]["price"] = 33.333;
        body["receipt"]["company"].erase("inn");
        return body;
    }

    [[nodiscard]] Json list(const std::string& query = {}) const
    {
        return get("/_emulator/receipts" + query).json();
    }

    /// Status and id of each, newest first.
    [[nodiscard]] std::vector<std::string> rows(const std::string& query = {}) const
    {
        std::vector<std::string> all;
        const Json answer = list(query);
        for (const Json& one : answer["receipts"])
            all.push_back(one["status"].get<std::string>() + " " + one["external_id"].get<std::string>());
        return all;
    }

    [[nodiscard]] std::string counts(const std::string& query = {}) const
    {
        return list(query)["counts"].dump();
    }
};

} // namespace

TEST_F(Receipts, IncludeRefusedCallsWithTheirWrongFields)
{
    ready();
    EXPECT_EQ(sell(goodReceipt("good")).status, 200);
    passTime(std::chrono::seconds(1));
    EXPECT_EQ(sell(wrongReceipt("wrong")).status, 400);
    EXPECT_THAT(rows(), ElementsAre("refused wrong", "done good"));

    const Json row = list()["receipts"][0];
    EXPECT_EQ(row["group"], "group-1");
    EXPECT_EQ(row["operation"], "sell");
    EXPECT_EQ(row["total"], 150.5);
    EXPECT_EQ(row["code"], 32);
    EXPECT_EQ(row["http_status"], 400);
    EXPECT_EQ(row["wire_requests"], 1);
    EXPECT_EQ(row["first_field"]["field"], "receipt.company.inn");

    const Json whole = get("/_emulator/refusals/" + row["refusal"].dump()).json();
    std::vector<std::string> fields;
    for (const Json& field : whole["fields"])
        fields.push_back(field["field"]);
    EXPECT_THAT(fields, ElementsAre("receipt.company.inn", "receipt.items[0].price"));
    EXPECT_THAT(whole["fields"][0]["rule"].get<std::string>(), Not(IsEmpty()));
    EXPECT_THAT(whole["request"].get<std::string>(), HasSubstr("33.333"));
    EXPECT_THAT(whole["answer"].get<std::string>(), HasSubstr("receipt.company.inn"));
}

TEST_F(Receipts, DropARefusalOnceItsIdIsRegistered)
{
    ready();
    EXPECT_EQ(sell(wrongReceipt("id-1")).status, 400);
    EXPECT_EQ(sell(wrongReceipt("id-1")).status, 400);
    EXPECT_THAT(rows(), ElementsAre("refused id-1"));
    EXPECT_EQ(list()["receipts"][0]["wire_requests"], 2);
    EXPECT_EQ(sell(goodReceipt("id-1")).status, 200);
    EXPECT_THAT(rows(), ElementsAre("done id-1"));
    EXPECT_EQ(sell(wrongReceipt("id-1")).status, 400);
    EXPECT_THAT(rows(), ElementsAre("done id-1"));
}

TEST_F(Receipts, IncludeCallsThatWereRefusedBeforeTheirBodyWasChecked)
{
    start();
    EXPECT_EQ(sell(goodReceipt("no token")).status, 401);
    const Json row = list()["receipts"][0];
    EXPECT_EQ(row["code"], 10);
    EXPECT_TRUE(row["first_field"].is_null());

    const std::string post = "/possystem/v4/group-1/sell";
    takeToken();
    EXPECT_EQ(exchange(postRequest(post, "{not json", tokenHeader())).status, 400);
    EXPECT_EQ(exchange(postRequest(post, "[]", tokenHeader())).status, 400);
    EXPECT_THAT(rows(), ElementsAre("refused ", "refused ", "refused no token"));
    EXPECT_TRUE(list()["receipts"][0]["total"].is_null());
}

TEST_F(Receipts, IncludeCallsThatAFaultKeptFromTheService)
{
    ready();
    EXPECT_EQ(post("/_emulator/faults", {{"endpoint", "sell"}, {"effect", "html"}, {"match", {{"next", 1}}}})
                  .status,
        200);
    EXPECT_EQ(sell(goodReceipt("lost")).status, 502);
    const Json row = list()["receipts"][0];
    EXPECT_EQ(row["status"], "refused");
    EXPECT_TRUE(row["code"].is_null());
    EXPECT_EQ(row["http_status"], 502);
    EXPECT_EQ(row["fault"], "before html");
}

TEST_F(Receipts, AreCountedAndFilteredByStatus)
{
    options.service.latencyLow = options.service.latencyHigh = std::chrono::seconds(5);
    ready();
    EXPECT_EQ(sell(goodReceipt("first")).status, 200);
    passTime(std::chrono::seconds(5));
    EXPECT_EQ(post("/_emulator/faults", {{"endpoint", "sell"}, {"effect", "fail"}, {"match", {{"next", 1}}}})
                  .status,
        200);
    EXPECT_EQ(sell(goodReceipt("failing")).status, 200);
    passTime(std::chrono::seconds(5));
    EXPECT_EQ(sell(wrongReceipt("wrong")).status, 400);
    passTime(std::chrono::seconds(1));
    EXPECT_EQ(sell(goodReceipt("last")).status, 200);

    EXPECT_EQ(counts(), R"({"done":1,"wait":1,"fail":1,"refused":1})");
    EXPECT_THAT(rows("?status=done"), ElementsAre("done first"));
    EXPECT_THAT(rows("?status=wait"), ElementsAre("wait last"));
    EXPECT_THAT(rows("?status=fail"), ElementsAre("fail failing"));
    EXPECT_THAT(rows("?status=refused"), ElementsAre("refused wrong"));
    EXPECT_EQ(counts("?status=refused"), counts());
    EXPECT_THAT(rows("?limit=2"), ElementsAre("wait last", "refused wrong"));
    EXPECT_EQ(counts("?text=33.333"), R"({"done":0,"wait":0,"fail":0,"refused":1})");
    EXPECT_THAT(rows("?external_id=w*"), ElementsAre("refused wrong"));
    EXPECT_THAT(rows("?group=elsewhere"), IsEmpty());
    EXPECT_THAT(rows("?operation=sell_refund"), IsEmpty());
}

TEST_F(Receipts, CannotBeAskedForInAnUnknownWay)
{
    start();
    const auto complaint = [this](const std::string& query) {
        const auto answer = get("/_emulator/receipts?" + query);
        EXPECT_EQ(answer.status, 400) << query;
        return answer.json()["error"].get<std::string>();
    };
    EXPECT_EQ(complaint("status=Done"), "status must be one of done, wait, fail, refused");
    EXPECT_EQ(complaint("before=2"),
        "before is unknown; known parameters are status, group, external_id, operation, text, limit");
    EXPECT_EQ(complaint("limit=0"), "limit must be a positive whole number");
    EXPECT_EQ(get("/_emulator/receipts?status=&limit=1000").status, 200);
    for (const std::string list : {"receipts", "documents", "exchanges", "exchanges?external_id=1"}) {
        const std::string path = "/_emulator/" + list + (list.find('?') == std::string::npos ? "?" : "&");
        EXPECT_EQ(get(path + "limit=1000").status, 200) << list;
        const auto answer = get(path + "limit=1001");
        EXPECT_EQ(answer.status, 400) << list;
        EXPECT_EQ(answer.json()["error"], "limit must be at most 1000");
    }
}

TEST_F(Receipts, AreForgottenWithTheirExchanges)
{
    options.keep = 1;
    ready();
    for (const char* id : {"1", "2", "3", "4", "5", "6"})
        EXPECT_EQ(sell(wrongReceipt(id)).status, 400);
    EXPECT_THAT(rows(), ElementsAre("refused 6", "refused 5", "refused 4", "refused 3"));
    EXPECT_EQ(call("DELETE", "/_emulator/documents").status, 200);
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_EQ(get("/_emulator/refusals/6").status, 404);
    EXPECT_EQ(get("/_emulator/refusals/six").status, 404);
}

TEST_F(Receipts, NameTheAccountsWithoutPasswords)
{
    start();
    const auto answer = get("/_emulator/service");
    EXPECT_EQ(answer.json()["users"][0]["login"], "shop");
    EXPECT_EQ(answer.json()["groups"][0]["code"], "group-1");
    EXPECT_EQ(answer.json()["operations"][0], "sell");
    for (const auto& user : options.service.users)
        EXPECT_THAT(answer.body, Not(HasSubstr(user.password)));
}
