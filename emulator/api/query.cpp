#include "emulator/api/query.h"

#include "emulator/values/jsonreader.h"

#include <algorithm>
#include <charconv>

namespace emulator {

std::optional<int> numberOf(const std::string& text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole ? std::optional(value) : std::nullopt;
}

int positiveParameter(const Request& request, const char* key, int fallback)
{
    const std::string text = request.parameter(key);
    if (text.empty())
        return fallback;
    const auto value = numberOf(text);
    if (!value || *value < 1)
        throw JsonError(std::string(key) + " must be a positive whole number");
    return *value;
}

int limitIn(const Request& request, int fallback)
{
    constexpr int most = 1000;
    const int limit = positiveParameter(request, "limit", fallback);
    if (limit > most)
        throw JsonError("limit must be at most " + std::to_string(most));
    return limit;
}

void rejectUnknownParameters(const Request& request, std::span<const char* const> known)
{
    for (const auto& [name, value] : request.query) {
        if (std::ranges::find(known, name) == known.end())
            throw JsonError(name + " is unknown; known parameters are " + joined(known));
    }
}

std::string joined(std::span<const char* const> names)
{
    std::string text;
    for (const char* name : names)
        text += (text.empty() ? "" : ", ") + std::string(name);
    return text;
}

} // namespace emulator
