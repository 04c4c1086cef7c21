#include "tests/emulator/support/apicalls.h"

#include <gmock/gmock.h>

using emulator::Json;
using testing::IsEmpty;
using testing::StartsWith;

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
