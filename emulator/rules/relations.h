#pragma once

#include "emulator/rules/revision.h"
#include "emulator/values/json.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace emulator {

/// A field that breaks a rule.
struct Violation
{
    /// For example `receipt.items[0].price`.
    std::string field{};
    /// What is expected, in Russian.
    std::string rule{};
    /// The service's word for what is wrong, such as `NumberTooSmall`.
    std::string kind{};
};

/// The object of a register call that a relation looks at.
struct Checked
{
    /// `receipt` or `correction`.
    std::string name;
    /// An empty object if the body has none.
    const Json& object;
    /// Taxpayer number of the group; empty if any will do.
    const std::string& inn;
};

/// A rule about several fields of a body.
struct Relation
{
    /// The field that the answer names, below the receipt or correction, such as `items[].vat`.
    std::string_view field;
    /// What it demands, in Russian.
    std::string_view rule;
    Scope scope;
    Source source;
    void (*check)(const Relation& relation, const Checked& checked, std::vector<Violation>& found);
};

/// Relations of every edition in the order in which violations are reported.
[[nodiscard]] std::span<const Relation> receiptRelations();
[[nodiscard]] std::span<const Relation> correctionRelations();

/// Sum of the `sum` of all elements of an array, in kopecks; nothing if there is no such array or one of its
/// elements has no valid sum.
[[nodiscard]] std::optional<std::int64_t> sumOf(const Json& object, const char* array);

/// What is settled by a receipt or correction without violations, in kopecks: its total, or the sum of its
/// payments if it has none.
[[nodiscard]] std::int64_t settledKopecks(const Json& object);

} // namespace emulator
