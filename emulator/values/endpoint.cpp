#include "emulator/values/endpoint.h"

#include <algorithm>
#include <utility>

namespace emulator {

namespace {

using Row = std::pair<Endpoint, std::string_view>;

constexpr std::array<Row, 5> names{{{Endpoint::Token, "token"}, {Endpoint::Sell, "sell"},
    {Endpoint::Report, "report"}, {Endpoint::Callback, "callback"}, {Endpoint::Unknown, "unknown"}}};

} // namespace

std::string_view nameOf(Endpoint endpoint)
{
    return std::ranges::find(names, endpoint, &Row::first)->second;
}

Endpoint endpointNamed(std::string_view name)
{
    const auto* found = std::ranges::find(names, name, &Row::second);
    return found == names.end() ? Endpoint::Unknown : found->first;
}

} // namespace emulator
