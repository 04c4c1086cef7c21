#pragma once

#include "emulator/rules/lists.h"
#include "emulator/values/json.h"

#include <cstdint>
#include <string>
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

/// All violations in the body of a register call, in the order of the rules. `inn` is the group's taxpayer
/// number; if empty, any is accepted.
[[nodiscard]] std::vector<Violation> checkReceipt(
    const Json& body, const Lists& lists, const std::string& inn);

/// The same for a correction, of which only envelope, company and payments are checked.
[[nodiscard]] std::vector<Violation> checkCorrection(
    const Json& body, const Lists& lists, const std::string& inn);

/// `kind: #/field, kind: #/field`, as the service names wrong fields. Names the same one once.
[[nodiscard]] std::string describe(const std::vector<Violation>& violations);

/// Sum of the payments, in kopecks, of a receipt or correction without violations.
[[nodiscard]] std::int64_t paidKopecks(const Json& receipt);

} // namespace emulator
