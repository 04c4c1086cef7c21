#include "reference/reference.h"

#include "reference/commandtree.h"
#include "reference/completions.h"
#include "reference/manpage.h"

#include <stdexcept>

namespace reference {

namespace {

std::string names(const Command& command, const std::string& path)
{
    std::string text = path + "\n";
    for (const Option& option : command.options) {
        for (const std::string& name : option.names)
            text.append(path).append(" ").append(name).append("\n");
    }
    for (const Command& child : command.commands)
        text += names(child, path + " " + child.name);
    return text;
}

} // namespace

std::string made(const CLI::App& app, const std::string& format)
{
    const Command program = commandTree(app);
    if (format == "title")
        return manTitle(program);
    if (format == "options")
        return manOptions(program);
    if (format == "bash")
        return bashCompletion(program);
    if (format == "zsh")
        return zshCompletion(program);
    if (format == "fish")
        return fishCompletion(program);
    if (format == "names")
        return names(program, program.name);
    throw std::invalid_argument("unknown format: " + format);
}

} // namespace reference
