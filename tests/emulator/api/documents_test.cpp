#include "tests/emulator/support/apicalls.h"

#include <gmock/gmock.h>

using emulator::Json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

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

TEST_F(ApiCalls, DeletesDocumentsButNotTheCountersOfTheRegister)
{
    registerReceipt("id-1");
    EXPECT_EQ(call("DELETE", "/_emulator/documents").status, 200);
    EXPECT_THAT(ids(""), IsEmpty());
    EXPECT_THAT(get("/_emulator/exchanges").json()["exchanges"], IsEmpty());
    verdict("external_id=id-1&count=0&wire_requests=0", 200);
    EXPECT_EQ(report(registerReceipt("id-1")).json()["payload"]["fiscal_document_number"], 4);
}

TEST_F(ApiCalls, NamesTheFieldsBecauseOfWhichADocumentFailed)
{
    options.service.groups.front().inn = "7700000000";
    start();
    takeToken();
    const auto fieldsOf = [this](const Json& body) {
        const std::string uuid = sell(body).json()["uuid"];
        return get("/_emulator/documents/" + uuid).json()["fields"];
    };
    const Json wrongSum = changed(goodReceipt("sum"), "/receipt/items/0/vat/sum", 20);
    EXPECT_EQ(fieldsOf(wrongSum), Json::array({{{"field", "receipt.items[0].vat.sum"},
                                      {"rule", "ожидается сумма НДС по ставке: 13.68"}}}));
    EXPECT_EQ(
        get("/_emulator/receipts").json()["receipts"][0]["first_field"]["field"], "receipt.items[0].vat.sum");
    const Json wrongInn = changed(goodCorrection("inn"), "/correction/company/inn", "7700000001");
    const auto corrected =
        exchange(postRequest("/possystem/v4/group-1/sell_correction", wrongInn.dump(), tokenHeader()));
    const std::string uuid = corrected.json()["uuid"];
    EXPECT_EQ(get("/_emulator/documents/" + uuid).json()["fields"],
        Json::array({{{"field", "correction.company.inn"}, {"rule", "ИНН не совпадает с ИНН группы"}}}));
    EXPECT_THAT(fieldsOf(goodReceipt("good")), IsEmpty());
    EXPECT_EQ(post("/_emulator/faults", {{"endpoint", "sell"}, {"effect", "fail"}}).status, 200);
    EXPECT_THAT(fieldsOf(changed(wrongSum, "/external_id", "fault")), IsEmpty());
}

TEST_F(ApiCalls, SumsUpTheVatAsPrintedOnAReceipt)
{
    const auto vatsOf = [this](const std::string& id, const Json& receipt) {
        const std::string uuid = sell(changed(goodReceipt(id), "/receipt", receipt)).json()["uuid"];
        return get("/_emulator/documents/" + uuid).json()["vats"].dump();
    };
    Json receipt = goodReceipt()["receipt"];
    const Json milk = receipt["items"][0];
    const auto line = [&milk](const char* type, double sum) {
        return changed(changed(milk, "/sum", sum), "/vat/type", type);
    };
    receipt["items"] = {line("vat10", 100.5), line("none", 20), line("vat10", 10), line("vat120", 20)};
    EXPECT_EQ(vatsOf("lines", receipt),
        R"([{"type":"vat10","sum":10.05},{"type":"none","sum":20.0},{"type":"vat120","sum":3.33}])");
    receipt["vats"] = {{{"type", "vat20"}, {"sum", 25.08}}};
    EXPECT_EQ(vatsOf("whole", receipt), R"([{"type":"vat20","sum":25.08}])");
    receipt.erase("vats");
    receipt["items"] = Json::array({changed(milk, "/vat", "absent")});
    EXPECT_EQ(vatsOf("without", receipt), "[]");
}
