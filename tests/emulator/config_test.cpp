#include "emulator/config.h"
#include "emulator/emulator.h"
#include "emulator/values/jsonreader.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <fstream>

using namespace emulator;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

struct ConfigFile : testing::Test
{
    ConfigFile()
        : file(testing::TempDir() + "fremulator-" + std::to_string(::getpid()) + ".json")
    {
    }
    ~ConfigFile() override { std::remove(file.c_str()); }

    Options read(const char* text)
    {
        std::ofstream(file) << text;
        Options options;
        readConfig(file, options);
        return options;
    }

    std::string complaint(const char* text)
    {
        try {
            read(text);
        } catch (const JsonError& error) {
            return error.what();
        }
        return "none";
    }

    const std::string file;
};

} // namespace

TEST_F(ConfigFile, RejectsJsonNestedTooDeeply)
{
    const std::string deep = R"({"faults": [)" + std::string(500'000, '[');
    EXPECT_THAT(complaint(deep.c_str()), HasSubstr("is nested too deeply"));
}

TEST_F(ConfigFile, DefinesGroupsUsersListsAndFaults)
{
    const Options options = read(R"({
        "groups": [{"code": "a", "inn": "7700000000", "registers": 3}, {"code": "b", "receiptUrl": false},
            {"code": "c", "protocolRefused": true}],
        "users": [{"login": "l", "password": "p", "groups": ["a", "b"]},
            {"login": "m", "password": "p", "blocked": true},
            {"login": "n", "password": "p", "protocolRefused": true}],
        "lists": {"vatTypes": ["vat22"]},
        "receiptsPerShift": 100,
        "fnsSite": "www.nalog.ru",
        "faults": [{"endpoint": "sell", "effect": "close"}]})");
    ASSERT_EQ(options.service.groups.size(), 3u);
    EXPECT_EQ(options.service.groups[0].inn, "7700000000");
    EXPECT_EQ(options.service.groups[0].registers, 3);
    EXPECT_TRUE(options.service.groups[0].receiptUrl);
    EXPECT_FALSE(options.service.groups[1].receiptUrl);
    EXPECT_TRUE(options.service.groups[2].protocolRefused);
    ASSERT_EQ(options.service.users.size(), 3u);
    EXPECT_THAT(options.service.users[0].groups, ElementsAre("a", "b"));
    EXPECT_TRUE(options.service.users[1].blocked);
    EXPECT_FALSE(options.service.users[1].protocolRefused);
    EXPECT_TRUE(options.service.users[2].protocolRefused);
    EXPECT_THAT(options.service.lists.vatTypes, ElementsAre("vat22"));
    EXPECT_EQ(options.service.lists.agentTypes, listsOf(newestRevision).agentTypes);
    EXPECT_EQ(options.service.receiptsPerShift, 100);
    EXPECT_EQ(options.service.fnsSite, "www.nalog.ru");
    ASSERT_EQ(options.faults.size(), 1u);
    EXPECT_EQ(options.faults[0].effect, Effect::Close);
}

TEST_F(ConfigFile, LeavesUnmentionedOptionsUnchanged)
{
    const Options options = read("{}");
    EXPECT_EQ(options.service.groups.front().code, "test");
    EXPECT_EQ(options.service.fnsSite, "www.nalog.gov.ru");
    EXPECT_EQ(options.service.users.front().login, "test");
    EXPECT_THAT(options.faults, IsEmpty());
}

TEST_F(ConfigFile, GivesUsersWithoutGroupsAccessToAllGroups)
{
    const Options unnamed = read(R"({"groups": [{"code": "a"}, {"code": "b"}]})");
    EXPECT_EQ(unnamed.service.users.front().login, "test");
    EXPECT_THAT(unnamed.service.users.front().groups, ElementsAre("a", "b"));

    const Options named = read(R"({"groups": [{"code": "a"}, {"code": "b"}], "users": [
        {"login": "l", "password": "p"}, {"login": "m", "password": "p", "groups": []}]})");
    EXPECT_THAT(named.service.users[0].groups, ElementsAre("a", "b"));
    EXPECT_THAT(named.service.users[1].groups, IsEmpty());
}

TEST_F(ConfigFile, IsRejectedWithTheReasonIfInvalid)
{
    EXPECT_THAT(complaint("{"), HasSubstr("is not JSON"));
    EXPECT_THAT(complaint(R"({"group": []})"), HasSubstr(".group is unknown; known keys are groups, users"));
    EXPECT_THAT(complaint(R"({"groups": [{"inn": "1"}]})"), HasSubstr("groups[0].code"));
    EXPECT_THAT(
        complaint(R"({"groups": [{"code": "a", "registers": 0}]})"), HasSubstr("groups[0].registers"));
    EXPECT_THAT(complaint(R"({"users": [{"login": "l", "password": "p", "groups": ["z"]}]})"),
        HasSubstr("users[0].groups names z"));
    EXPECT_THAT(complaint(R"({"lists": {"vatTypes": "vat20"}})"), HasSubstr("lists.vatTypes"));
    EXPECT_THAT(
        complaint(R"({"faults": [{"endpoint": "sell", "effect": "x"}]})"), HasSubstr("effect must be"));
    Options options;
    EXPECT_THROW(readConfig("/nowhere/config.json", options), JsonError);
}

TEST_F(ConfigFile, WithAPasswordHasItOnItsFirstLine)
{
    const auto password = [this](const std::string& content) {
        std::ofstream(file, std::ios::binary) << content;
        return readPassword(file);
    };
    EXPECT_EQ(password("secret"), "secret");
    EXPECT_EQ(password(" se cret \nrest\n"), " se cret ");
    EXPECT_EQ(password("secret\r\nrest"), "secret");
    EXPECT_THROW(password(""), JsonError);
    EXPECT_THROW(password("\nsecret"), JsonError);
    EXPECT_THROW(static_cast<void>(readPassword("/nowhere/password")), JsonError);
    EXPECT_THROW(static_cast<void>(readPassword(testing::TempDir())), JsonError);
}

TEST_F(ConfigFile, CannotHaveMoreFaultsThanTheEmulatorKeeps)
{
    std::string text = R"([{"endpoint": "sell", "effect": "close"})";
    for (int i = 0; i < 1000; ++i)
        text += R"(, {"endpoint": "sell", "effect": "close"})";
    std::ofstream(file) << text << "]";
    Options options;
    readFaults(file, options);
    EXPECT_THROW(Emulator{options}, JsonError);
}

TEST_F(ConfigFile, OfFaultsMustContainAnArray)
{
    std::ofstream(file) << R"([{"endpoint": "token", "effect": "old-token"}])";
    Options options;
    readFaults(file, options);
    EXPECT_EQ(options.faults.at(0).effect, Effect::OldToken);
    std::ofstream(file) << "{}";
    EXPECT_THROW(readFaults(file, options), JsonError);
}
