#pragma once

#include <string>

namespace CLI {
class App;
}

namespace reference {

/// What is installed beside a program about its options, made from the options themselves: "title"
/// and "options" (sections of the man page), "bash", "zsh", "fish" or "names" (each
/// command and option on a line of its own). Throws std::invalid_argument for any other format.
[[nodiscard]] std::string made(const CLI::App& app, const std::string& format);

} // namespace reference
