#include "emulator/config.h"

#include "emulator/values/jsonreader.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace emulator {

namespace {

Json readFile(const std::string& file)
{
    std::ifstream stream(file);
    if (!stream)
        throw JsonError("cannot read " + file);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (isTooDeep(text))
        throw JsonError(file + " is nested too deeply");
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        throw JsonError(file + " is not JSON: " + error.what());
    }
}

Group readGroup(const Json& json, const std::string& where)
{
    JsonReader reader(json, where);
    const Group defaults;
    Group group{.code = reader.text("code"),
        .inn = reader.text("inn"),
        .registers = static_cast<int>(reader.integer("registers", defaults.registers, 1, 99)),
        .receiptUrl = reader.boolean("receiptUrl", defaults.receiptUrl),
        .protocolRefused = reader.boolean("protocolRefused", defaults.protocolRefused)};
    reader.rejectUnknownKeys();
    if (group.code.empty())
        throw JsonError(where + ".code must not be empty");
    return group;
}

std::vector<std::string> codesOf(const std::vector<Group>& groups)
{
    std::vector<std::string> codes;
    for (const Group& group : groups)
        codes.push_back(group.code);
    return codes;
}

User readUser(const Json& json, const std::string& where, const std::vector<Group>& groups)
{
    JsonReader reader(json, where);
    User user{.login = reader.text("login"),
        .password = reader.text("password"),
        .groups = reader.texts("groups", codesOf(groups)),
        .blocked = reader.boolean("blocked", false),
        .protocolRefused = reader.boolean("protocolRefused", false)};
    reader.rejectUnknownKeys();
    if (user.login.empty() || user.password.empty())
        throw JsonError(where + " must have a login and a password");
    for (const std::string& code : user.groups) {
        if (std::ranges::count(groups, code, &Group::code) == 0)
            throw JsonError(where + ".groups names " + code + ", which is not one of the groups");
    }
    return user;
}

void readLists(const Json& json, Lists& lists)
{
    constexpr std::pair<const char*, std::vector<std::string> Lists::*> all[] = {
        {"operations", &Lists::operations}, {"taxationSystems", &Lists::taxationSystems},
        {"vatTypes", &Lists::vatTypes}, {"agentTypes", &Lists::agentTypes},
        {"paymentMethods", &Lists::paymentMethods}, {"paymentObjects", &Lists::paymentObjects}};
    JsonReader reader(json, "lists");
    for (const auto& [key, list] : all)
        lists.*list = reader.texts(key, lists.*list);
    reader.rejectUnknownKeys();
}

void addFaults(const Json& faults, Options& options)
{
    for (const Json& fault : faults)
        options.faults.push_back(readFault(fault));
}

std::string element(const char* array, std::size_t index)
{
    return std::string(array) + "[" + std::to_string(index) + "]";
}

} // namespace

void readConfig(const std::string& file, Options& options)
{
    const Json json = readFile(file);
    JsonReader reader(json, file);
    ServiceOptions& service = options.service;
    const Json& groups = reader.array("groups");
    const Json& users = reader.array("users");
    if (!groups.empty())
        service.groups.clear();
    for (std::size_t i = 0; i < groups.size(); ++i)
        service.groups.push_back(readGroup(groups[i], element("groups", i)));
    if (!users.empty())
        service.users.clear();
    for (User& user : service.users)
        user.groups = codesOf(service.groups);
    for (std::size_t i = 0; i < users.size(); ++i)
        service.users.push_back(readUser(users[i], element("users", i), service.groups));
    service.receiptsPerShift = static_cast<int>(reader.integer("receiptsPerShift", 0, 0, 1'000'000));
    if (const std::string site = reader.text("fnsSite"); !site.empty())
        service.fnsSite = site;
    if (const Json* lists = reader.take("lists"))
        readLists(*lists, service.lists);
    addFaults(reader.array("faults"), options);
    reader.rejectUnknownKeys();
}

std::string readPassword(const std::string& file)
{
    std::ifstream stream(file);
    std::string line;
    if (!stream || (!std::getline(stream, line) && !stream.eof()))
        throw JsonError("cannot read " + file);
    if (line.ends_with('\r'))
        line.pop_back();
    if (line.empty())
        throw JsonError(file + " has no password on its first line");
    return line;
}

bool othersMayRead(const std::string& file)
{
    using std::filesystem::perms;
    std::error_code unknown;
    const perms mode = std::filesystem::status(file, unknown).permissions();
    return !unknown && (mode & (perms::group_read | perms::others_read)) != perms::none;
}

void readFaults(const std::string& file, Options& options)
{
    const Json json = readFile(file);
    if (!json.is_array())
        throw JsonError(file + " must contain an array of faults");
    addFaults(json, options);
}

} // namespace emulator
