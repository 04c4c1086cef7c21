#include "emulator/faults/fault.h"

#include "emulator/values/jsonreader.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace emulator {

namespace {

template <class Row>
std::string joined(std::span<const Row> table, std::string_view Row::*name)
{
    std::string text;
    for (const Row& row : table)
        text += (text.empty() ? "" : ", ") + std::string(row.*name);
    return text;
}

// Every fault is kept, shown and compared with every call. An id of 128 characters has up to 512 bytes.
std::string shortText(JsonReader& reader, const char* key)
{
    constexpr std::size_t longest = 512;
    std::string text = reader.text(key);
    if (text.size() > longest)
        throw JsonError(std::string(key) + " may be " + std::to_string(longest) + " bytes long, not " +
                        std::to_string(text.size()));
    return text;
}

void readMatch(Fault& fault, const Json& json)
{
    constexpr std::int64_t many = 1'000'000'000;
    JsonReader match(json, "match");
    fault.login = shortText(match, "login");
    fault.group = shortText(match, "group");
    fault.externalId = shortText(match, "external_id");
    fault.next = match.integer("next", 0, 1, many);
    fault.every = match.integer("every", 1, 1, many);
    fault.after = match.integer("after", 0, 0, many);
    match.rejectUnknownKeys();
    if (fault.endpoint == Endpoint::Token && !(fault.group + fault.externalId).empty())
        throw JsonError("match.group and match.external_id do not apply to token calls, which have neither");
}

ErrorCode readCode(JsonReader& reader, int fallback)
{
    return ErrorCode{static_cast<int>(reader.integer("code", fallback, 0, 9999))};
}

int readBytes(JsonReader& reader, int fallback)
{
    const auto bytes = static_cast<int>(reader.integer("bytes", fallback, -1'000'000, 1'000'000));
    if (bytes == 0)
        throw JsonError("fault.bytes must not be 0, which is the correct length");
    return bytes;
}

std::string readKey(JsonReader& reader)
{
    std::string key = shortText(reader, "key");
    if (key.empty())
        throw JsonError("fault.key must name the key to leave out, such as payload.fn_number");
    return key;
}

Failure readFailure(JsonReader& reader)
{
    const std::string name = reader.text("type");
    if (name.empty())
        return Failure::Driver;
    const auto found = std::ranges::find(failures(), name, &FailureInfo::name);
    if (found == failures().end())
        throw JsonError("fault.type must be one of " + joined(failures(), &FailureInfo::name));
    return found->failure;
}

void readParameter(Fault& fault, JsonReader& reader, const EffectInfo& info)
{
    switch (info.parameter) {
    case Parameter::None:
        break;
    case Parameter::Code:
        fault.code = readCode(reader, info.defaultValue);
        break;
    case Parameter::Status:
        fault.status = static_cast<int>(reader.integer("status", info.defaultValue, 200, 599));
        break;
    case Parameter::Bytes:
        fault.bytes = readBytes(reader, info.defaultValue);
        break;
    case Parameter::Milliseconds:
        fault.time = std::chrono::milliseconds(reader.integer("milliseconds", info.defaultValue, 0, 600'000));
        break;
    case Parameter::Key:
        fault.key = readKey(reader);
        break;
    case Parameter::Type:
        fault.failure = readFailure(reader);
        fault.code = readCode(reader, toNumber(infoOf(fault.failure).code));
        break;
    }
}

Endpoint readEndpoint(const std::string& name)
{
    const Endpoint endpoint = endpointNamed(name);
    if (std::ranges::find(knownEndpoints, endpoint) == knownEndpoints.end())
        throw JsonError("fault.endpoint must be one of token, sell, report");
    return endpoint;
}

Phase readPhase(const std::string& name, Phase fallback)
{
    if (name.empty())
        return fallback;
    for (const Phase phase : {Phase::Before, Phase::After}) {
        if (nameOf(phase) == name)
            return phase;
    }
    throw JsonError("fault.phase must be before or after");
}

const EffectInfo& readEffect(const std::string& name, Endpoint endpoint)
{
    const auto info = std::ranges::find(effects(), name, &EffectInfo::name);
    if (info == effects().end())
        throw JsonError("fault.effect must be one of " + joined(effects(), &EffectInfo::name));
    if (!info->endpoints.contains(endpoint))
        throw JsonError("effect " + name + " cannot be used with endpoint " + std::string(nameOf(endpoint)));
    return *info;
}

Json matchOf(const Fault& fault)
{
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
    return match;
}

void writeParameter(Json& json, const Fault& fault, const EffectInfo& info)
{
    const std::string name(nameOf(info.parameter));
    switch (info.parameter) {
    case Parameter::None:
        break;
    case Parameter::Code:
        json[name] = toNumber(fault.code);
        break;
    case Parameter::Status:
        json[name] = fault.status;
        break;
    case Parameter::Bytes:
        json[name] = fault.bytes;
        break;
    case Parameter::Milliseconds:
        json[name] = fault.time.count();
        break;
    case Parameter::Key:
        json[name] = fault.key;
        break;
    case Parameter::Type:
        json["code"] = toNumber(fault.code);
        json[name] = infoOf(fault.failure).name;
        break;
    }
}

} // namespace

Fault readFault(const Json& json)
{
    Fault fault;
    JsonReader reader(json, "fault");
    fault.name = shortText(reader, "name");
    fault.endpoint = readEndpoint(reader.text("endpoint"));
    const std::string effect = reader.text("effect");
    const EffectInfo& info = readEffect(effect, fault.endpoint);
    fault.effect = info.effect;
    fault.phase = readPhase(reader.text("phase"), info.phase);
    const bool needsDocument = fault.effect == Effect::Fail || fault.effect == Effect::Never;
    if (needsDocument && fault.endpoint == Endpoint::Sell && fault.phase == Phase::Before)
        throw JsonError(
            "effect " + std::string(info.name) + " of sell needs phase after, as the document must exist");
    if (const Json* match = reader.take("match"))
        readMatch(fault, *match);
    readParameter(fault, reader, info);
    reader.rejectUnknownKeys();
    return fault;
}

Json toJson(const Fault& fault)
{
    const EffectInfo& info = infoOf(fault.effect);
    Json json{{"id", fault.id}, {"name", fault.name}, {"endpoint", nameOf(fault.endpoint)},
        {"match", matchOf(fault)}, {"phase", nameOf(fault.phase)}, {"effect", info.name}};
    writeParameter(json, fault, info);
    json["matched"] = fault.matched;
    json["hits"] = fault.hits;
    json["spent"] = fault.spent();
    return json;
}

} // namespace emulator
