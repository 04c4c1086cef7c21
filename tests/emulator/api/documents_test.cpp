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
