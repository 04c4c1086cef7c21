#include "emulator/values/jsonreader.h"

#include <algorithm>

namespace emulator {

JsonReader::JsonReader(const Json& json, std::string where)
    : object(json)
    , place(std::move(where))
{
    if (!object.is_object())
        throw JsonError(place + " must be an object");
}

std::string JsonReader::text(const char* key)
{
    const Json* value = take(key);
    if (value == nullptr)
        return {};
    if (!value->is_string())
        throw JsonError(place + "." + key + " must be a string");
    return value->get<std::string>();
}

std::int64_t JsonReader::integer(const char* key, std::int64_t fallback, std::int64_t low, std::int64_t high)
{
    const Json* value = take(key);
    if (value == nullptr)
        return fallback;
    const bool good = value->is_number_integer() && *value >= low && *value <= high;
    if (!good)
        throw JsonError(place + "." + key + " must be a whole number from " + std::to_string(low) + " to " +
                        std::to_string(high));
    return value->get<std::int64_t>();
}

bool JsonReader::boolean(const char* key, bool fallback)
{
    const Json* value = take(key);
    if (value == nullptr)
        return fallback;
    if (!value->is_boolean())
        throw JsonError(place + "." + key + " must be true or false");
    return value->get<bool>();
}

std::vector<std::string> JsonReader::texts(const char* key, std::vector<std::string> fallback)
{
    const Json* value = take(key);
    if (value == nullptr)
        return fallback;
    const bool good =
        value->is_array() && std::ranges::all_of(*value, [](const Json& e) { return e.is_string(); });
    if (!good)
        throw JsonError(place + "." + key + " must be an array of strings");
    return value->get<std::vector<std::string>>();
}

const Json& JsonReader::array(const char* key)
{
    static const Json none = Json::array();
    const Json* value = take(key);
    if (value == nullptr)
        return none;
    if (!value->is_array())
        throw JsonError(place + "." + key + " must be an array");
    return *value;
}

const Json* JsonReader::take(const char* key)
{
    taken.emplace_back(key);
    const auto found = object.find(key);
    return found == object.end() ? nullptr : &*found;
}

void JsonReader::rejectUnknownKeys() const
{
    for (const auto& [key, value] : object.items()) {
        if (std::ranges::count(taken, key) > 0)
            continue;
        std::string known;
        for (const std::string& name : taken)
            known += (known.empty() ? "" : ", ") + name;
        throw JsonError(place + "." + key + " is unknown; known keys are " + known);
    }
}

} // namespace emulator
