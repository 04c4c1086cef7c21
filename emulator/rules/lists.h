#pragma once

#include "emulator/rules/revision.h"
#include "emulator/values/json.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace emulator {

/// The names that the service accepts. They can be configured because the law changes them now and then.
struct Lists
{
    std::vector<std::string> operations{};
    std::vector<std::string> taxationSystems{};
    std::vector<std::string> vatTypes{};
    std::vector<std::string> agentTypes{};
    std::vector<std::string> paymentMethods{};
    std::vector<std::string> paymentObjects{};
};

/// The names that are accepted in a revision.
[[nodiscard]] Lists listsOf(Revision revision);

/// Every list with its names: objects with `name` and `source`, which is null for a configured name that the
/// service is not known to have.
[[nodiscard]] Json listed(const Lists& lists);

/// The tax included in a sum; nothing if the name is not known.
[[nodiscard]] std::optional<std::int64_t> vatIn(std::string_view vatType, std::int64_t kopecks);

} // namespace emulator
