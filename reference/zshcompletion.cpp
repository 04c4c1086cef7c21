#include "reference/completions.h"

#include <sstream>

namespace reference {

namespace {

std::string escaped(const std::string& text, const char* special)
{
    std::string out;
    for (const char c : text) {
        if (c == '\'')
            out += "'\\'";
        else if (std::string(special).find(c) != std::string::npos)
            out += '\\';
        out += c == '\n' ? ' ' : c;
    }
    return out;
}

std::string action(const Option& option)
{
    switch (option.value) {
    case Value::None:
        return {};
    case Value::File:
        return ":" + option.placeholder + ":_files";
    case Value::Folder:
        return ":" + option.placeholder + ":_files -/";
    case Value::Choice: {
        std::string words;
        for (const std::string& choice : option.choices)
            words += (words.empty() ? "" : " ") + choice;
        return ":" + option.placeholder + ":(" + words + ")";
    }
    case Value::Text:
        break;
    }
    return ":" + option.placeholder + ": ";
}

void write(std::ostream& out, const std::vector<Option>& options)
{
    for (const Option& option : options) {
        if (option.isArgument())
            out << " \\\n        '" << (option.isRepeatable ? "*" : "1") << action(option) << "'";
        for (const std::string& name : option.names)
            out << " \\\n        '" << name << "[" << escaped(option.description, "[]:\\") << "]"
                << action(option) << "'";
    }
}

void write(std::ostream& out, const Command& program, const Command& command, const std::string& function)
{
    for (const Command& child : command.commands)
        write(out, program, child, function + "_" + child.name);
    out << function << "() {\n    local curcontext=$curcontext state line\n    _arguments -C";
    write(out, program.options);
    if (&program != &command)
        write(out, command.options);
    if (command.commands.empty()) {
        out << "\n}\n";
        return;
    }
    out << " \\\n        '1:command:((";
    for (const Command& child : command.commands)
        out << child.name << "\\:\"" << escaped(child.description, "\\\":") << "\" ";
    out << "))' \\\n        '*::argument:->argument'\n    [[ $state == argument ]] || return\n    case "
           "$words[1] in\n";
    for (const Command& child : command.commands)
        out << "        " << child.name << ") " << function << "_" << child.name << " ;;\n";
    out << "    esac\n}\n";
}

} // namespace

std::string zshCompletion(const Command& program)
{
    std::ostringstream out;
    const std::string function = "_" + program.name;
    out << "#compdef " << program.name << "\n";
    write(out, program, program, function);
    out << function << " \"$@\"\n";
    return out.str();
}

} // namespace reference
