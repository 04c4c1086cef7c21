#pragma once

#include "emulator/rules/lists.h"
#include "emulator/values/json.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace emulator {

/// The type of a field.
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

/// What a field of a body must look like.
struct FieldRule
{
    /// For example `receipt.items[].price`.
    std::string_view path;
    FieldKind kind;
    Need need;
    /// Limits in characters, elements, kopecks, thousandths or bytes, depending on the kind.
    std::int64_t low = 0;
    std::int64_t high = 0;
    /// Permitted values of OneOf.
    std::vector<std::string> Lists::*names = nullptr;
};

/// Whether the value satisfies the rule.
[[nodiscard]] bool holds(const Json& value, const FieldRule& rule, const Lists& lists);

/// The service's word for what is wrong with a value that does not satisfy the rule.
[[nodiscard]] std::string_view violationOf(const Json& value, const FieldRule& rule);

/// The rule in Russian.
[[nodiscard]] std::string expectation(const FieldRule& rule, const Lists& lists);

[[nodiscard]] bool isInn(const std::string& text);

} // namespace emulator
