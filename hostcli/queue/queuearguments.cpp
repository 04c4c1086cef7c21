#include "hostcli/queue/queuearguments.h"

#include "queue/store/entry.h"
#include "till/text.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <optional>

using namespace Qt::Literals::StringLiterals;

using till::Text;

namespace frhost {

namespace {

struct ActionInfo
{
    QueueAction action;
    const char* name;
    /// What follows "frhost queue".
    const char* example;
    /// How many receipts it names: none, one, or any number.
    int ids;
    const char* description;
};

constexpr int many = 2;

constexpr ActionInfo actions[] = {
    {QueueAction::Add, "add", "add receipt.json", 0,
        QT_TRANSLATE_NOOP("Text", "Hand receipts over: they are on the disk when this ends with status 0")},
    {QueueAction::Work, "work", "work --until-empty", 0,
        QT_TRANSLATE_NOOP("Text", "Register what is queued, until it is stopped")},
    {QueueAction::Results, "results", "results --after 17", 0,
        QT_TRANSLATE_NOOP("Text", "Show results in the order of finishing, each with a cursor")},
    {QueueAction::Wait, "wait", "wait r-1 r-2", many,
        QT_TRANSLATE_NOOP("Text", "Wait until receipts are finished; output and status as of sell")},
    {QueueAction::List, "list", "list --state failed", 0, QT_TRANSLATE_NOOP("Text", "List the receipts")},
    {QueueAction::Show, "show", "show r-1", 1,
        QT_TRANSLATE_NOOP("Text", "Show everything that happened to a receipt")},
    {QueueAction::Retry, "retry", "retry r-1 --new-id r-1-again", 1,
        QT_TRANSLATE_NOOP("Text", "Have a receipt sent again")},
    {QueueAction::Hold, "hold", "hold r-1", 1, QT_TRANSLATE_NOOP("Text", "Keep workers from a receipt")},
    {QueueAction::Release, "release", "release r-1", 1,
        QT_TRANSLATE_NOOP("Text", "Let workers have a receipt that is held or set aside")},
    {QueueAction::Cancel, "cancel", "cancel r-1", 1,
        QT_TRANSLATE_NOOP("Text", "Withdraw a receipt of which nothing was ever sent")},
    {QueueAction::Stats, "stats", "stats --openmetrics", 0,
        QT_TRANSLATE_NOOP("Text", "Show counts and what is wrong")},
    {QueueAction::Audit, "audit", "audit", 0,
        QT_TRANSLATE_NOOP(
            "Text", "Check that no receipt is lost and no document is shared; status 1 if not")},
    {QueueAction::Export, "export", "export", 0,
        QT_TRANSLATE_NOOP("Text", "Write finished receipts with their history, one line of JSON each")},
    {QueueAction::Prune, "prune", "prune --older-than 90d", 0,
        QT_TRANSLATE_NOOP("Text", "Remove receipts that finished long ago")},
};

std::string described(const ActionInfo& info)
{
    return (Text::tr("Example:\n  %1").arg(u"frhost queue "_s + QString::fromLatin1(info.example)) +
            u"\n\n"_s + Text::tr(info.description))
        .toStdString();
}

std::string checkedState(const std::string& name)
{
    if (queue::stateOf(QString::fromStdString(name)))
        return {};
    return Text::tr("the state is one of: %1").arg(queue::stateNames().join(u", "_s)).toStdString();
}

std::string checkedText(const std::string& text)
{
    return text.empty() ? Text::tr("the id is empty").toStdString() : std::string();
}

std::string checkedCursor(const std::string& text)
{
    bool isNumber = false;
    const qint64 cursor = QString::fromStdString(text).toLongLong(&isNumber);
    return isNumber && cursor >= 0 ? std::string()
                                   : Text::tr("the cursor is a number, as results shows it").toStdString();
}

// "90d" in days; none for anything else.
std::optional<int> daysIn(const std::string& age)
{
    const QString text = QString::fromStdString(age);
    bool isNumber = false;
    const int days = text.chopped(text.endsWith(u'd') ? 1 : 0).toInt(&isNumber);
    const bool isGood = isNumber && text.endsWith(u'd') && days >= 1 && days <= 36500;
    return isGood ? std::optional(days) : std::nullopt;
}

} // namespace

void QueueArguments::addTo(CLI::App& command, std::vector<std::string>& files)
{
    command.require_subcommand(1);
    for (const ActionInfo& info : actions) {
        CLI::App* sub = command.add_subcommand(info.name, described(info));
        sub->fallthrough();
        sub->group(Text::tr("Commands").toStdString());
        sub->callback([this, &info] { action = info.action; });
        if (info.ids > 0)
            sub->add_option("ID", ids, Text::tr("Id of a receipt").toStdString())
                ->option_text(info.ids == many ? "..." : "")
                ->expected(1, info.ids == many ? 1 << 20 : 1)
                ->required();
    }
    command.get_subcommand("add")
        ->add_option("FILE", files,
            Text::tr("Receipts as a JSON object or JSON Lines; - is standard input").toStdString())
        ->option_text("...")
        ->required();
    command.get_subcommand("work")->add_flag("--until-empty", untilEmpty,
        Text::tr("End when nothing is left, or when the register does not come back within a minute")
            .toStdString());
    CLI::App& results = *command.get_subcommand("results");
    results.add_option("--after", after, Text::tr("Only results after this cursor").toStdString())
        ->option_text("CURSOR")
        ->check(&checkedCursor);
    results.add_flag("--follow", follow, Text::tr("Wait for further results").toStdString());
    command.get_subcommand("list")
        ->add_option("--state", state, Text::tr("Only receipts in this state").toStdString())
        ->option_text("STATE")
        ->type_name("TEXT:{" + queue::stateNames().join(u',').toStdString() + "}")
        ->check(&checkedState);
    command.get_subcommand("retry")
        ->add_option("--new-id", newId,
            Text::tr("Under another id, for one that was not registered and whose id is used up")
                .toStdString())
        ->option_text("ID")
        ->check(&checkedText);
    command.get_subcommand("prune")
        ->add_option("--older-than", age, Text::tr("How long ago, in days, such as 90d").toStdString())
        ->option_text("AGE")
        ->check([](const std::string& text) {
            return daysIn(text) ? std::string()
                                : Text::tr("write a number of days, such as 90d").toStdString();
        })
        ->required();
    command.get_subcommand("audit")->add_flag("--ask", ask,
        Text::tr("Ask the service about every receipt whose outcome is not known").toStdString());
    command.get_subcommand("stats")->add_flag(
        "--openmetrics", openMetrics, Text::tr("As OpenMetrics text").toStdString());
}

QueueLine QueueArguments::line() const
{
    QueueLine line;
    line.action = action;
    for (const std::string& id : ids)
        line.ids << QString::fromStdString(id);
    line.newId = QString::fromStdString(newId);
    line.state = QString::fromStdString(state);
    line.after = after;
    line.follow = follow;
    line.untilEmpty = untilEmpty;
    line.ask = ask;
    line.openMetrics = openMetrics;
    line.days = daysIn(age).value_or(0);
    return line;
}

} // namespace frhost
