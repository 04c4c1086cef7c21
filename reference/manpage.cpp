#include "reference/manpage.h"

#include <cctype>
#include <sstream>

namespace reference {

namespace {

// Text without a meaning for the formatter.
std::string plain(const std::string& text)
{
    std::string out;
    for (const char c : text) {
        const bool startsLine = out.empty() || out.back() == '\n';
        if (startsLine && (c == '.' || c == '\''))
            out += "\\&";
        if (c == '\\')
            out += "\\e";
        else if (c == '-')
            out += "\\-";
        else
            out += c;
    }
    return out;
}

std::string bold(const std::string& text)
{
    return "\\fB" + plain(text) + "\\fR";
}

std::string italic(const std::string& text)
{
    return "\\fI" + plain(text) + "\\fR";
}

std::string head(const Option& option)
{
    std::string text;
    for (const std::string& name : option.names)
        text += (text.empty() ? "" : ", ") + bold(name);
    if (!option.placeholder.empty())
        text += (text.empty() ? "" : " ") + italic(option.placeholder);
    return text + (option.isRepeatable ? "..." : "");
}

std::string sentence(std::string text)
{
    if (!text.empty())
        text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
    return plain(text) + ".";
}

void write(std::ostream& out, const std::vector<Option>& options)
{
    for (const Option& option : options) {
        out << ".TP\n" << head(option) << "\n" << sentence(option.description);
        if (!option.initial.empty())
            out << " Default: " << plain(option.initial) << ".";
        out << "\n";
    }
}

std::string synopsis(const Command& command)
{
    std::string text;
    for (const Option& option : command.options) {
        if (option.isArgument())
            text += " " + head(option);
    }
    return text;
}

void writeCommands(std::ostream& out, const std::vector<Command>& commands, const std::string& path)
{
    for (const Command& command : commands) {
        const std::string name = path.empty() ? command.name : path + " " + command.name;
        if (command.commands.empty()) {
            out << ".SS " << bold(name) << synopsis(command) << "\n" << sentence(command.description) << "\n";
            write(out, command.options);
            if (!command.example.empty())
                out << ".PP\nExample: " << bold(command.example) << "\n";
        }
        writeCommands(out, command.commands, name);
    }
}

// The lines "  0  every receipt is registered" of a footer, below its title.
void writeStatus(std::ostream& out, const std::string& footer)
{
    std::istringstream lines(footer);
    std::string line;
    std::getline(lines, line);
    out << ".SH \"EXIT STATUS\"\nOf several, the highest:\n";
    while (std::getline(lines, line)) {
        const std::size_t start = line.find_first_not_of(' ');
        const std::size_t end = line.find("  ", start);
        if (end != std::string::npos)
            out << ".TP\n"
                << bold(line.substr(start, end - start)) << "\n"
                << sentence(line.substr(end + 2)) << "\n";
    }
}

} // namespace

std::string manTitle(const Command& program)
{
    std::string summary = program.description.substr(0, program.description.find('\n'));
    if (summary.starts_with(program.name + ": "))
        summary = summary.substr(program.name.size() + 2);
    if (summary.ends_with('.'))
        summary.pop_back();
    if (!summary.empty())
        summary.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(summary.front())));
    std::string text = ".SH NAME\n" + program.name + " \\- " + plain(summary) + "\n.SH SYNOPSIS\n" +
                       bold(program.name) + " [" + italic("OPTION") + "]...";
    if (!program.commands.empty())
        text += " " + italic("COMMAND") + " [" + italic("ARGUMENT") + "]...";
    return text + "\n";
}

std::string manOptions(const Command& program)
{
    std::ostringstream out;
    out << ".SH OPTIONS\n";
    write(out, program.options);
    if (!program.commands.empty())
        out << ".SH COMMANDS\n";
    writeCommands(out, program.commands, {});
    if (!program.footer.empty())
        writeStatus(out, program.footer);
    return out.str();
}

} // namespace reference
