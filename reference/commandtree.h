#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace reference {

/// What follows an option or a command.
enum class Value
{
    /// Nothing: a flag.
    None,
    Text,
    File,
    Folder,
    /// One of the option's choices.
    Choice,
};

struct Option
{
    /// With their dashes; none for an argument that stands for itself.
    std::vector<std::string> names;
    Value value = Value::None;
    /// What stands for the value, FILE for example; empty for a flag.
    std::string placeholder;
    std::vector<std::string> choices;
    std::string description;
    /// Empty when there is none.
    std::string initial;
    bool isRequired = false;
    bool isRepeatable = false;

    [[nodiscard]] bool isArgument() const { return names.empty(); }
};

/// A program or one of its commands.
struct Command
{
    std::string name;
    std::string description;
    /// A command line; empty when the program names none.
    std::string example;
    /// What the help ends with.
    std::string footer;
    std::vector<Option> options;
    std::vector<Command> commands;
};

/// Everything that the program's help shows, command by command. Commands are without the options that the
/// program has, too.
[[nodiscard]] Command commandTree(const CLI::App& app);

} // namespace reference
