#include "emulator/values/json.h"

namespace emulator {

bool isTooDeep(std::string_view json)
{
    constexpr int deepest = 64;
    int depth = 0;
    bool inText = false;
    for (std::size_t i = 0; i < json.size() && depth <= deepest; ++i) {
        if (json[i] == '"')
            inText = !inText;
        else if (inText)
            i += json[i] == '\\' ? 1U : 0U;
        else if (json[i] == '[' || json[i] == '{')
            ++depth;
        else if (json[i] == ']' || json[i] == '}')
            --depth;
    }
    return depth > deepest;
}

Json parseShallow(std::string_view json)
{
    return isTooDeep(json) ? Json(Json::value_t::discarded) : Json::parse(json, nullptr, false);
}

const Json& valueOf(const Json& object, const char* key)
{
    static const Json none;
    const auto found = object.is_object() ? object.find(key) : object.end();
    return found != object.end() ? *found : none;
}

const Json& objectOf(const Json& parent, const char* key)
{
    static const Json empty = Json::object();
    const Json& value = valueOf(parent, key);
    return value.is_object() ? value : empty;
}

std::string textOf(const Json& object, const char* key)
{
    const Json& value = valueOf(object, key);
    return value.is_string() ? value.get<std::string>() : std::string();
}

} // namespace emulator
