#include "hostcli/helptext.h"

#include "hostcli/terminal/texttable.h"
#include "till/nearestname.h"
#include "till/text.h"

#include <QStringList>

#include <sstream>
#include <vector>

using namespace Qt::Literals::StringLiterals;

using till::Text;

namespace frhost {

namespace {

constexpr int columns = 80;
constexpr int firstColumn = 30;

// The program, the command and the subcommand on the command line, as far as they are there.
std::vector<const CLI::App*> chosen(const CLI::App& app)
{
    std::vector<const CLI::App*> levels{&app};
    for (auto below = app.get_subcommands(); !below.empty(); below = below.front()->get_subcommands())
        levels.push_back(below.front());
    return levels;
}

QStringList commandNames(const CLI::App& app)
{
    QStringList names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        names << fromStd(command->get_name());
    return names;
}

QStringList optionNames(const CLI::App& app)
{
    QStringList names;
    for (const CLI::App* level : chosen(app)) {
        for (const CLI::Option* option : level->get_options()) {
            for (const std::string& name : option->get_lnames())
                names << u"--"_s + fromStd(name);
        }
    }
    return names;
}

QString suggestion(const QString& name, const QStringList& known)
{
    const QString nearest = till::nearestName(name, known);
    return nearest.isEmpty() ? QString() : u' ' + Text::tr("Did you mean \"%1\"?").arg(nearest);
}

QString unknownOption(const CLI::App& app, const QString& name)
{
    const QStringList known = optionNames(app);
    return known.contains(name) ? Text::tr("The option \"%1\" belongs after the command.").arg(name)
                                : Text::tr("There is no option \"%1\".").arg(name) + suggestion(name, known);
}

// What no command and no option has taken.
QString leftOver(const CLI::App& app)
{
    for (const std::string& rest : app.remaining(true)) {
        const QString name = fromStd(rest).section(u'=', 0, 0);
        if (name.startsWith(u"--"_s))
            return unknownOption(app, name);
        if (name.startsWith(u'-') && name.size() > 1)
            return Text::tr("There is no option \"%1\".").arg(name);
        if (const CLI::App& last = *chosen(app).back(); !commandNames(last).isEmpty())
            return unknownCommand(last, name);
        return Text::tr("\"%1\" is one argument too many.").arg(name);
    }
    return {};
}

QString missing(const CLI::App& app)
{
    for (const CLI::Option* option : chosen(app).back()->get_options()) {
        if (option->get_required() && option->count() == 0)
            return Text::tr("%1 is missing.").arg(fromStd(option->get_name(option->get_positional())));
    }
    return Text::tr("A command is missing.");
}

QString explained(const CLI::App& app, const CLI::ParseError& error)
{
    const QString text = fromStd(error.what());
    if (const QString rest = leftOver(app); !rest.isEmpty())
        return rest;
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr)
        return missing(app);
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr)
        return Text::tr("%1 needs exactly one value.").arg(text.section(u':', 0, 0));
    if (dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr) {
        QStringList both{text.section(u' ', 0, 0), text.section(u' ', -1)};
        both.sort();
        return Text::tr("%1 and %2 exclude each other.").arg(both.first(), both.last());
    }
    return text;
}

} // namespace

HelpText::HelpText()
{
    column_width(firstColumn);
    label("Usage", Text::tr("Usage").toStdString());
    label("OPTIONS", Text::tr("OPTIONS").toStdString());
    label("SUBCOMMAND", Text::tr("COMMAND").toStdString());
    label("Positionals", Text::tr("Arguments").toStdString());
}

std::string HelpText::make_subcommand(const CLI::App* command) const
{
    const QString whole = fromStd(command->get_description());
    const QString sentence = whole.sliced(whole.lastIndexOf(u"\n\n"_s) + 2);
    std::stringstream out;
    CLI::detail::format_help(
        out, command->get_name(), wrapped(sentence, columns - firstColumn).toStdString(), column_width_);
    return out.str();
}

std::string HelpText::make_option_opts(const CLI::Option* option) const
{
    const std::string text = option->get_option_text();
    return text.empty() ? text : ' ' + text;
}

std::string HelpText::make_option_desc(const CLI::Option* option) const
{
    return wrapped(fromStd(option->get_description()), columns - firstColumn).toStdString();
}

std::string HelpText::make_group(
    std::string group, bool isPositional, std::vector<const CLI::Option*> options) const
{
    if (group == "Options")
        group = Text::tr("Options").toStdString();
    return Formatter::make_group(group, isPositional, options);
}

QString unknownCommand(const CLI::App& app, const QString& name)
{
    return Text::tr("There is no command \"%1\".").arg(name) + suggestion(name, commandNames(app));
}

QString usageError(const CLI::App& app, const CLI::ParseError& error)
{
    QStringList names;
    for (const CLI::App* level : chosen(app))
        names << fromStd(level->get_name());
    return explained(app, error) + u'\n' + Text::tr("More: %1 --help").arg(names.join(u' '));
}

} // namespace frhost
