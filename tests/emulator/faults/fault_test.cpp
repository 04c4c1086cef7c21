#include "emulator/faults/faultbox.h"
#include "emulator/values/jsonreader.h"

#include <gmock/gmock.h>

using namespace emulator;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

Fault fault(const char* json)
{
    return readFault(Json::parse(json));
}

std::string complaint(const char* json)
{
    try {
        return "accepted: " + toJson(readFault(Json::parse(json))).dump();
    } catch (const JsonError& error) {
        return error.what();
    }
}

// Which of `count` sell calls with this id are hit.
std::vector<bool> hits(FaultBox& box, int count, const std::string& externalId = "id")
{
    std::vector<bool> all;
    for (int i = 0; i < count; ++i)
        all.push_back(
            box.take({.endpoint = Endpoint::Sell, .group = "g", .login = "l", .externalId = externalId}) !=
            nullptr);
    return all;
}

} // namespace

TEST(FaultBox, HitsEveryCallOfItsEndpointByDefault)
{
    FaultBox box;
    box.add({fault(R"({"endpoint":"sell","effect":"close"})")});
    EXPECT_THAT(hits(box, 3), ElementsAre(true, true, true));
    EXPECT_EQ(box.take({.endpoint = Endpoint::Token}), nullptr);
}

TEST(FaultBox, HitsOnlyTheNextCalls)
{
    FaultBox box;
    box.add({fault(R"({"endpoint":"sell","effect":"close","match":{"next":2}})")});
    EXPECT_THAT(hits(box, 4), ElementsAre(true, true, false, false));
    EXPECT_TRUE(box.all().front().spent());
}

TEST(FaultBox, HitsEveryNthCall)
{
    FaultBox box;
    box.add({fault(R"({"endpoint":"sell","effect":"close","match":{"every":3}})")});
    EXPECT_THAT(hits(box, 7), ElementsAre(false, false, true, false, false, true, false));
}

TEST(FaultBox, SparesTheFirstCalls)
{
    FaultBox box;
    box.add({fault(R"({"endpoint":"sell","effect":"close","match":{"after":2,"every":2,"next":1}})")});
    EXPECT_THAT(hits(box, 6), ElementsAre(false, false, false, true, false, false));
}

TEST(FaultBox, MatchesLoginGroupAndExternalId)
{
    FaultBox box;
    box.add({fault(
        R"({"endpoint":"sell","effect":"close","match":{"login":"l","group":"g","external_id":"a-*"}})")});
    EXPECT_THAT(hits(box, 1, "a-1"), ElementsAre(true));
    EXPECT_THAT(hits(box, 1, "b-1"), ElementsAre(false));
    EXPECT_EQ(
        box.take({.endpoint = Endpoint::Sell, .group = "g", .login = "x", .externalId = "a-1"}), nullptr);
    EXPECT_EQ(
        box.take({.endpoint = Endpoint::Sell, .group = "x", .login = "l", .externalId = "a-1"}), nullptr);
}

TEST(FaultBox, AppliesTheFirstMatchingFaultUntilItIsRemoved)
{
    FaultBox box;
    const int first = box.add({fault(R"({"endpoint":"sell","effect":"close","name":"one"})")}).front().id;
    box.add({fault(R"({"endpoint":"sell","effect":"silent","name":"two"})")});
    EXPECT_EQ(box.take({.endpoint = Endpoint::Sell})->name, "one");
    EXPECT_TRUE(box.remove(first));
    EXPECT_FALSE(box.remove(first));
    EXPECT_EQ(box.take({.endpoint = Endpoint::Sell})->name, "two");
}

TEST(Fault, SurvivesARoundTripThroughJson)
{
    Json json =
        Json::parse(R"({"name":"n","endpoint":"sell","match":{"login":"l","group":"g","external_id":"*",
        "next":1,"every":2,"after":3},"phase":"after","effect":"fail","code":7,"type":"agent"})");
    Json written = toJson(readFault(json));
    for (const char* key : {"id", "matched", "hits", "spent"})
        written.erase(key);
    EXPECT_EQ(written, json);
}

TEST(Fault, IsRejectedWithTheReasonIfInvalid)
{
    EXPECT_EQ(complaint("[]"), "fault must be an object");
    EXPECT_THAT(complaint(R"({"endpoint":"buy","effect":"close"})"), HasSubstr("token, sell, report"));
    EXPECT_THAT(complaint(R"({"endpoint":"sell","effect":"explode"})"), HasSubstr("reset-before"));
    EXPECT_THAT(complaint(R"({"endpoint":"sell","effect":"old-token"})"), HasSubstr("cannot be used"));
    EXPECT_THAT(
        complaint(R"({"endpoint":"sell","effect":"close","phase":"amid"})"), HasSubstr("before or after"));
    EXPECT_THAT(complaint(R"({"endpoint":"sell","effect":"never","phase":"before"})"),
        HasSubstr("needs phase after"));
    EXPECT_THAT(
        complaint(R"({"endpoint":"sell","effect":"close","match":{"next":0}})"), HasSubstr("match.next"));
    EXPECT_THAT(
        complaint(R"({"endpoint":"sell","effect":"close","match":{"id":"x"}})"), HasSubstr("match.id"));
    EXPECT_THAT(
        complaint(R"({"endpoint":"sell","effect":"close","code":5})"), HasSubstr("fault.code is unknown"));
    EXPECT_THAT(complaint(R"({"endpoint":"sell","effect":"html","status":42})"), HasSubstr("fault.status"));
    EXPECT_THAT(
        complaint(R"({"endpoint":"sell","effect":"fail","type":"fire"})"), HasSubstr("driver, agent"));
    EXPECT_THAT(complaint(R"({"endpoint":"sell","effect":"without-key"})"), HasSubstr("key"));
    EXPECT_THAT(
        complaint(R"({"endpoint":"sell","effect":"wrong-length","bytes":0})"), HasSubstr("must not be 0"));
    for (const char* key : {"group", "external_id"}) {
        const std::string fault =
            R"({"endpoint":"token","effect":"close","match":{")" + std::string(key) + R"(":"x"}})";
        EXPECT_THAT(complaint(fault.c_str()), HasSubstr("do not apply to token calls"));
    }
}
