#pragma once

#include "reference/commandtree.h"

#include <string>

namespace reference {

// Completion of the program's command lines, to be installed where each shell finds it. Options of the
// program are offered after its commands, too.

[[nodiscard]] std::string bashCompletion(const Command& program);
[[nodiscard]] std::string zshCompletion(const Command& program);
[[nodiscard]] std::string fishCompletion(const Command& program);

} // namespace reference
