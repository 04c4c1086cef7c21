#pragma once

#include "emulator/service/lists.h"
#include "emulator/values/json.h"

#include <cstdint>
#include <string>
#include <vector>

namespace emulator {

/// A field that the service refuses.
struct Violation
{
    /// Where it is: `receipt.items[0].price`.
    std::string field{};
    /// What is expected there, in Russian.
    std::string rule{};
};

/// Everything that is wrong with the body of a register call, in the order of the rules; empty for a good
/// one. `inn` is the group's taxpayer number, empty when any will do.
[[nodiscard]] std::vector<Violation> checkReceipt(
    const Json& body, const Lists& lists, const std::string& inn);

/// The same for the body of a correction, of which only the envelope, company and payments are looked at.
[[nodiscard]] std::vector<Violation> checkCorrection(
    const Json& body, const Lists& lists, const std::string& inn);

/// `field: rule; field: rule`.
[[nodiscard]] std::string describe(const std::vector<Violation>& violations);

/// Sum of the payments of a receipt or correction that passed its check, in kopecks.
[[nodiscard]] std::int64_t paidKopecks(const Json& receipt);

} // namespace emulator
