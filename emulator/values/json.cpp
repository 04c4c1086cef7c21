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

} // namespace emulator
