#include "reference/completions.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>
#include <sstream>

namespace reference {

namespace {

void forEach(const Command& command, const std::string& path,
    const std::function<void(const Command&, const std::string&)>& visit)
{
    visit(command, path);
    for (const Command& child : command.commands)
        forEach(child, path + " " + child.name, visit);
}

std::string joined(const std::vector<std::string>& words, const char* separator)
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : separator) + word;
    return text;
}

std::string wordsFor(Value value, const std::vector<std::string>& choices)
{
    switch (value) {
    case Value::File:
        return "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$word\")";
    case Value::Folder:
        return "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- \"$word\")";
    case Value::Choice:
        return "mapfile -t COMPREPLY < <(compgen -W \"" + joined(choices, " ") + R"~(" -- "$word"))~";
    case Value::None:
    case Value::Text:
        break;
    }
    return ":";
}

// What may be said at one place: the options of the program and of the command, and its commands.
std::string wordsAt(const Command& program, const Command& command)
{
    std::vector<std::string> words;
    std::vector<Option> options = program.options;
    if (&program != &command)
        options.insert(options.end(), command.options.begin(), command.options.end());
    for (const Option& option : options)
        words.insert(words.end(), option.names.begin(), option.names.end());
    for (const Command& child : command.commands)
        words.push_back(child.name);
    return joined(words, " ");
}

// Several commands have options of the same name; the first decides, as in a "case" of the shell.
std::vector<std::string> unseen(const std::vector<std::string>& names, std::set<std::string>& seen)
{
    std::vector<std::string> result;
    std::copy_if(names.begin(), names.end(), std::back_inserter(result),
        [&](const std::string& name) { return seen.insert(name).second; });
    return result;
}

const Option* argumentOf(const Command& command)
{
    for (const Option& option : command.options) {
        if (option.isArgument())
            return &option;
    }
    return nullptr;
}

} // namespace

std::string bashCompletion(const Command& program)
{
    std::ostringstream values;
    std::ostringstream commands;
    std::ostringstream places;
    std::vector<std::string> withValue;
    std::set<std::string> seen;
    forEach(program, program.name, [&](const Command& command, const std::string& path) {
        for (const Option& option : command.options) {
            if (option.isArgument() || option.value == Value::None)
                continue;
            const std::vector<std::string> names = unseen(option.names, seen);
            if (names.empty())
                continue;
            withValue.insert(withValue.end(), names.begin(), names.end());
            values << "        " << joined(names, " | ") << ") " << wordsFor(option.value, option.choices)
                   << "; return ;;\n";
        }
        if (&command != &program)
            commands << "            \"" << path << "\") path=\"" << path << "\" ;;\n";
        const Option* argument = argumentOf(command);
        places << "        \"" << path << "\")\n            words=\"" << wordsAt(program, command) << "\"\n";
        if (argument && argument->value != Value::Text)
            places << "            [[ $word == -* ]] || { " << wordsFor(argument->value, argument->choices)
                   << "; return; }\n";
        places << "            ;;\n";
    });
    const std::string function = "_" + program.name;
    std::ostringstream out;
    out << "# Completion of " << program.name << " for bash.\n"
        << function << "() {\n"
        << "    local word=${COMP_WORDS[COMP_CWORD]} path=" << program.name << " words i\n"
        << "    COMPREPLY=()\n"
        << "    for ((i = 1; i < COMP_CWORD; i++)); do\n"
        << "        case ${COMP_WORDS[i - 1]} in " << joined(withValue, " | ") << ") continue ;; esac\n"
        << "        case \"$path ${COMP_WORDS[i]}\" in\n"
        << commands.str() << "        esac\n    done\n"
        << "    case ${COMP_WORDS[COMP_CWORD - 1]} in\n"
        << values.str() << "    esac\n    case $path in\n"
        << places.str() << "    esac\n"
        << "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\")\n}\n"
        << "complete -F " << function << " " << program.name << "\n";
    return out.str();
}

} // namespace reference
