#pragma once

#include <CLI/App.hpp>
#include <CLI/Formatter.hpp>

#include <QString>

#include <string>

namespace frhost {

/// A text of the parser's.
[[nodiscard]] inline QString fromStd(const std::string& text)
{
    return QString::fromStdString(text);
}

/// Writes the help in the user's language, within 80 columns. The list of commands shows one line for each.
class HelpText : public CLI::Formatter
{
public:
    HelpText();

    std::string make_subcommand(const CLI::App* command) const override;
    std::string make_option_opts(const CLI::Option* option) const override;
    std::string make_option_desc(const CLI::Option* option) const override;
    std::string make_group(
        std::string group, bool isPositional, std::vector<const CLI::Option*> options) const override;
};

/// That there is no such command, with the nearest one.
[[nodiscard]] QString unknownCommand(const CLI::App& app, const QString& name);

/// What is wrong with the arguments, in the user's language, with the nearest command or option that there
/// is.
[[nodiscard]] QString usageError(const CLI::App& app, const CLI::ParseError& error);

} // namespace frhost
