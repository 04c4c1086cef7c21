#pragma once

#include "emulator/rules/revision.h"

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

/// A rate of VAT in percent; nothing if the name is not known.
[[nodiscard]] std::optional<int> vatRate(std::string_view vatType);

} // namespace emulator
