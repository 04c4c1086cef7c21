#include "reference/commandtree.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>

namespace reference {

namespace {

// A name of a type may be followed by what is allowed: TEXT:{a,b}.
std::vector<std::string> choicesIn(const std::string& type)
{
    const std::size_t open = type.find(":{");
    const std::size_t close = type.find('}', open);
    if (open == std::string::npos || close == std::string::npos)
        return {};
    return CLI::detail::split(type.substr(open + 2, close - open - 2), ',');
}

std::string placeholderOf(const CLI::Option& option)
{
    if (option.get_positional())
        return option.get_name(true);
    if (!option.get_option_text().empty())
        return option.get_option_text();
    const std::string type = option.get_type_name();
    return type.substr(0, type.find(':'));
}

Value valueOf(const Option& option)
{
    if (!option.choices.empty())
        return Value::Choice;
    if (option.placeholder == "FILE")
        return Value::File;
    return option.placeholder == "DIR" ? Value::Folder : Value::Text;
}

Option read(const CLI::Option& from)
{
    Option option;
    for (const std::string& name : from.get_snames())
        option.names.push_back("-" + name);
    for (const std::string& name : from.get_lnames())
        option.names.push_back("--" + name);
    option.description = from.get_description();
    option.initial = from.get_default_str();
    option.isRequired = from.get_required();
    option.isRepeatable = from.get_positional() && from.get_items_expected_max() > 1;
    if (from.get_items_expected_max() == 0)
        return option;
    option.placeholder = placeholderOf(from);
    option.choices = choicesIn(from.get_type_name());
    option.value = valueOf(option);
    return option;
}

// Where a description begins with an example, an empty line ends that.
void readDescription(const std::string& text, Command& command)
{
    const std::size_t end = text.rfind("\n\n");
    command.description = end == std::string::npos ? text : text.substr(end + 2);
    const std::size_t line = end == std::string::npos ? end : text.find('\n');
    if (line < end)
        command.example = CLI::detail::trim_copy(text.substr(line, end - line));
}

bool isNamedIn(const std::vector<Option>& options, const Option& option)
{
    return !option.isArgument() && std::any_of(options.begin(), options.end(),
                                       [&](const Option& other) { return other.names == option.names; });
}

Command read(const CLI::App& app, const std::vector<Option>& ofProgram)
{
    Command command;
    command.name = app.get_name();
    command.footer = app.get_footer();
    readDescription(app.get_description(), command);
    // An empty group hides what is in it.
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_group().empty())
            continue;
        const Option found = read(*option);
        if (!isNamedIn(ofProgram, found))
            command.options.push_back(found);
    }
    const std::vector<Option>& known = ofProgram.empty() ? command.options : ofProgram;
    for (const CLI::App* child : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (!child->get_group().empty())
            command.commands.push_back(read(*child, known));
    }
    return command;
}

} // namespace

Command commandTree(const CLI::App& app)
{
    return read(app, {});
}

} // namespace reference
