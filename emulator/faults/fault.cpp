#include "emulator/faults/fault.h"

#include "emulator/values/jsonreader.h"

#include <algorithm>
#include <array>
#include <functional>

namespace emulator {

namespace {

constexpr std::array effectTable{
    EffectInfo{Effect::Error, "error", Phase::Before, "tsr", "code", "the service's error `code`", 50},
    EffectInfo{Effect::Html, "html", Phase::Before, "tsr", "status", "HTTP `status` with an HTML page", 502},
    EffectInfo{
        Effect::Empty, "empty", Phase::Before, "tsr", "status", "HTTP `status` with an empty body", 200},
    EffectInfo{Effect::Truncated, "truncated", Phase::After, "tsr", "", "half of the body, then closed"},
    EffectInfo{Effect::NotJson, "not-json", Phase::Before, "tsr", "", "a body that is no JSON"},
    EffectInfo{Effect::WrongLength, "wrong-length", Phase::After, "tsr", "bytes",
        "Content-Length wrong by `bytes`", 16},
    EffectInfo{Effect::Drip, "drip", Phase::After, "tsr", "milliseconds",
        "one byte of the answer every `milliseconds`", 100},
    EffectInfo{
        Effect::Delay, "delay", Phase::After, "tsr", "milliseconds", "the answer after `milliseconds`", 5000},
    EffectInfo{Effect::Silent, "silent", Phase::Before, "tsr", "", "no answer, connection held open"},
    EffectInfo{Effect::Close, "close", Phase::Before, "tsr", "", "no answer, connection closed"},
    EffectInfo{
        Effect::ResetBefore, "reset-before", Phase::Before, "tsr", "", "TCP reset instead of the answer"},
    EffectInfo{Effect::ResetDuring, "reset-during", Phase::After, "tsr", "", "TCP reset amid the answer"},
    EffectInfo{Effect::ResetAfter, "reset-after", Phase::After, "tsr", "", "the answer, then TCP reset"},
    EffectInfo{
        Effect::OtherDocument, "other-document", Phase::After, "sr", "", "the answer for another document"},
    EffectInfo{Effect::OldToken, "old-token", Phase::After, "t", "milliseconds",
        "a token that expires after `milliseconds`"},
    EffectInfo{Effect::WithoutKey, "without-key", Phase::After, "tsr", "key", "the answer without `key`"},
    EffectInfo{Effect::Fail, "fail", Phase::After, "sr", "type", "the register fails: error of that `type`"},
    EffectInfo{Effect::Never, "never", Phase::After, "sr", "", "never done"},
};

constexpr std::array failTable{
    FailType{"driver", 502, "Регистратор отклонил документ"},
    FailType{"agent", 2003, "Агент не смог передать документ регистратору"},
    FailType{"timeout", 1, "Документ ждал в очереди дольше 300 секунд"},
    FailType{"system", 1, "Не удалось обработать чек"},
    FailType{"unknown", 0, "Неизвестная ошибка"},
};

constexpr std::array<std::pair<Endpoint, std::string_view>, 3> endpointNames{
    {{Endpoint::Token, "token"}, {Endpoint::Sell, "sell"}, {Endpoint::Report, "report"}}};

const EffectInfo& infoOf(const Effect effect)
{
    return *std::ranges::find(effectTable, effect, &EffectInfo::effect);
}

template <class Table, class Name>
std::string namesOf(const Table& table, const Name name)
{
    std::string text;
    for (const auto& row : table)
        text += (text.empty() ? "" : ", ") + std::string(std::invoke(name, row));
    return text;
}

void readMatch(Fault& fault, const Json& json)
{
    constexpr std::int64_t many = 1'000'000'000;
    JsonReader match(json, "match");
    fault.login = match.text("login");
    fault.group = match.text("group");
    fault.externalId = match.text("external_id");
    fault.next = match.integer("next", 0, 1, many);
    fault.every = match.integer("every", 1, 1, many);
    fault.after = match.integer("after", 0, 0, many);
    match.refuseTheRest();
    if (fault.endpoint == Endpoint::Token && !(fault.group + fault.externalId).empty())
        throw JsonError("match.group and match.external_id can never hit a token call, which names neither");
}

void readParameter(Fault& fault, JsonReader& reader, const EffectInfo& info)
{
    if (info.parameter == "code")
        fault.code = static_cast<int>(reader.integer("code", info.usual, 0, 9999));
    if (info.parameter == "status")
        fault.status = static_cast<int>(reader.integer("status", info.usual, 200, 599));
    if (info.parameter == "bytes")
        fault.bytes = static_cast<int>(reader.integer("bytes", info.usual, -1'000'000, 1'000'000));
    if (info.parameter == "bytes" && fault.bytes == 0)
        throw JsonError("fault.bytes must not be 0, which is the true length");
    if (info.parameter == "milliseconds")
        fault.time = std::chrono::milliseconds(reader.integer("milliseconds", info.usual, 0, 600'000));
    if (info.parameter == "key") {
        fault.key = reader.text("key");
        if (fault.key.empty())
            throw JsonError("key must name what is left out, such as payload.fn_number");
    }
    if (info.parameter == "type") {
        fault.type = reader.text("type");
        if (fault.type.empty())
            fault.type = "driver";
        if (std::ranges::count(failTable, fault.type, &FailType::name) == 0)
            throw JsonError("type must be one of " + namesOf(failTable, &FailType::name));
        fault.code = static_cast<int>(
            reader.integer("code", std::ranges::find(failTable, fault.type, &FailType::name)->code, 0, 9999));
    }
}

Endpoint readEndpoint(const std::string& name)
{
    const auto* found = std::ranges::find(endpointNames, name, [](const auto& row) { return row.second; });
    if (found == endpointNames.end())
        throw JsonError("endpoint must be one of token, sell, report");
    return found->first;
}

Phase readPhase(const std::string& name, const Phase fallback)
{
    if (!name.empty() && name != "before" && name != "after")
        throw JsonError("phase must be before or after");
    return name.empty() ? fallback : (name == "before" ? Phase::Before : Phase::After);
}

} // namespace

std::span<const EffectInfo> effects()
{
    return effectTable;
}

std::span<const FailType> failTypes()
{
    return failTable;
}

std::string_view nameOf(const Endpoint endpoint)
{
    const auto* found = std::ranges::find(endpointNames, endpoint, [](const auto& row) { return row.first; });
    return found == endpointNames.end() ? "unknown" : found->second;
}

Fault readFault(const Json& json)
{
    Fault fault;
    JsonReader reader(json, "fault");
    fault.name = reader.text("name");
    fault.endpoint = readEndpoint(reader.text("endpoint"));
    const auto* info = std::ranges::find(effectTable, reader.text("effect"), &EffectInfo::name);
    if (info == effectTable.end())
        throw JsonError("effect must be one of " + namesOf(effectTable, &EffectInfo::name));
    if (info->endpoints.find(nameOf(fault.endpoint).front()) == std::string_view::npos)
        throw JsonError("effect " + std::string(info->name) + " makes no sense for endpoint " +
                        std::string(nameOf(fault.endpoint)));
    fault.effect = info->effect;
    fault.phase = readPhase(reader.text("phase"), info->phase);
    const bool needsTheDocument = fault.effect == Effect::Fail || fault.effect == Effect::Never;
    if (needsTheDocument && fault.endpoint == Endpoint::Sell && fault.phase == Phase::Before)
        throw JsonError(
            "effect " + std::string(info->name) + " of sell needs phase after: the document must be there");
    if (const Json* match = reader.take("match"))
        readMatch(fault, *match);
    readParameter(fault, reader, *info);
    reader.refuseTheRest();
    return fault;
}

Json toJson(const Fault& fault)
{
    const EffectInfo& info = infoOf(fault.effect);
    Json match = Json::object();
    for (const auto& [key, value] : {std::pair("login", fault.login), std::pair("group", fault.group),
             std::pair("external_id", fault.externalId)}) {
        if (!value.empty())
            match[key] = value;
    }
    if (fault.next > 0)
        match["next"] = fault.next;
    if (fault.every > 1)
        match["every"] = fault.every;
    if (fault.after > 0)
        match["after"] = fault.after;
    Json json{{"id", fault.id}, {"name", fault.name}, {"endpoint", nameOf(fault.endpoint)}, {"match", match},
        {"phase", fault.phase == Phase::Before ? "before" : "after"}, {"effect", info.name}};
    if (info.parameter == "code" || info.parameter == "type")
        json["code"] = fault.code;
    if (info.parameter == "type")
        json["type"] = fault.type;
    if (info.parameter == "status")
        json["status"] = fault.status;
    if (info.parameter == "bytes")
        json["bytes"] = fault.bytes;
    if (info.parameter == "milliseconds")
        json["milliseconds"] = fault.time.count();
    if (info.parameter == "key")
        json["key"] = fault.key;
    json["matched"] = fault.matched;
    json["hits"] = fault.hits;
    json["spent"] = fault.spent();
    return json;
}

} // namespace emulator
