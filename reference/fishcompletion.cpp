#include "reference/completions.h"

#include <sstream>

namespace reference {

namespace {

std::string quoted(const std::string& text)
{
    std::string out = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\')
            out += '\\';
        out += c == '\n' ? ' ' : c;
    }
    return out + "'";
}

std::string action(const Option& option)
{
    switch (option.value) {
    case Value::None:
        return {};
    case Value::File:
        return " -r -F";
    case Value::Folder:
        return " -x -a '(__fish_complete_directories)'";
    case Value::Choice: {
        std::string words;
        for (const std::string& choice : option.choices)
            words += (words.empty() ? "" : " ") + choice;
        return " -x -a " + quoted(words);
    }
    case Value::Text:
        break;
    }
    return " -x";
}

void write(std::ostream& out, const std::string& start, const Option& option)
{
    if (option.isArgument()) {
        if (option.value == Value::File)
            out << start << " -F\n";
        else if (option.value != Value::Text)
            out << start << action(option) << "\n";
        return;
    }
    out << start;
    for (const std::string& name : option.names)
        out << (name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1));
    out << action(option) << " -d " << quoted(option.description) << "\n";
}

void write(std::ostream& out, const std::string& program, const Command& command, const std::string& seen)
{
    std::string names;
    for (const Command& child : command.commands)
        names += " " + child.name;
    const std::string start = "complete -c " + program;
    const std::string here = seen.empty() ? std::string() : " -n '" + seen + "'";
    for (const Option& option : command.options)
        write(out, start + here, option);
    for (const Command& child : command.commands) {
        const std::string before = seen.empty() ? "" : seen + "; and ";
        out << start << " -n '" << before << "not __fish_seen_subcommand_from" << names << "' -a "
            << child.name << " -d " << quoted(child.description) << "\n";
        write(out, program, child, before + "__fish_seen_subcommand_from " + child.name);
    }
}

} // namespace

std::string fishCompletion(const Command& program)
{
    std::ostringstream out;
    out << "# Completion of " << program.name << " for fish.\ncomplete -c " << program.name << " -f\n";
    write(out, program.name, program, {});
    return out.str();
}

} // namespace reference
