#pragma once

#include "emulator/rules/lists.h"
#include "emulator/rules/revision.h"
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
    Boolean,
    Text,
    Timestamp,
    TimestampOrIso,
    Inn,
    Phone,
    AgentPhone,
    Money,
    Thousandths,
    Millionths,
    Integer,
    HexBytes,
    MarkingCode,
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
    Scope scope;
    Source source;
    /// Limits in characters, elements, bytes, or the parts that the kind counts in: kopecks, thousandths.
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

} // namespace emulator
