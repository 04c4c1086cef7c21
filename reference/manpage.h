#pragma once

#include "reference/commandtree.h"

#include <string>

namespace reference {

/// The sections NAME and SYNOPSIS of the program's man page.
[[nodiscard]] std::string manTitle(const Command& program);

/// The sections OPTIONS, COMMANDS and EXIT STATUS.
[[nodiscard]] std::string manOptions(const Command& program);

} // namespace reference
