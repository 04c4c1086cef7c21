#pragma once

#include "emulator/service/lists.h"
#include "emulator/values/json.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace emulator {

/// What a field holds.
enum class FieldKind
{
    Object,
    Array,
    Text,
    Timestamp,
    Inn,
    Phone,
    Money,
    Quantity,
    Integer,
    HexBytes,
    OneOf
};

enum class Need
{
    Required,
    Optional
};

/// What one field of a body must be.
struct FieldRule
{
    /// `receipt.items[].price`.
    std::string_view path;
    FieldKind kind;
    Need need;
    /// How much of it: characters, elements, kopecks, thousandths or bytes.
    std::int64_t low = 0;
    std::int64_t high = 0;
    std::vector<std::string> Lists::*names = nullptr;
};

/// Whether the value, which may be missing (null), is what the rule says.
[[nodiscard]] bool holds(const Json& value, const FieldRule& rule, const Lists& lists);

/// What the rule expects, in Russian.
[[nodiscard]] std::string expectation(const FieldRule& rule, const Lists& lists);

[[nodiscard]] bool isInn(const std::string& text);

} // namespace emulator
