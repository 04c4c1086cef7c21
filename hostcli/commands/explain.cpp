#include "hostcli/commands/commands.h"
#include "hostcli/terminal/texttable.h"
#include "till/causes/causes.h"
#include "till/text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

QString outcomeText(const QString& outcome)
{
    const std::pair<const char*, QString> texts[] = {
        {"refused", Text::tr("refused: not registered")},
        {"unknown", Text::tr("unknown: it may be registered")},
        {"incomplete", Text::tr("registered according to the service, which has not proved it")},
        {"not-sent", Text::tr("not sent")},
        {"looked-up", Text::tr("that of the document, which the service is asked about")},
    };
    for (const auto& [name, text] : texts) {
        if (outcome == QLatin1StringView(name))
            return text;
    }
    return outcome;
}

QString nextText(NextStep step)
{
    switch (step) {
    case NextStep::None:
        return Text::tr("nothing");
    case NextStep::Rerun:
        return Text::tr("run the same file again");
    case NextStep::Correct:
        return Text::tr("correct the receipt and run it again under the same id");
    case NextStep::NewId:
        return Text::tr("sell it under a new id");
    case NextStep::Account:
        break;
    }
    return Text::tr("correct the account, the configuration or the machine, then run the same file again");
}

QJsonObject toJson(const CauseTexts& texts)
{
    return {{u"cashier"_s, texts.cashier}, {u"administrator"_s, texts.administrator},
        {u"programmer"_s, texts.programmer}};
}

QByteArray jsonOf(const Cause& cause)
{
    QJsonObject json{{u"kind"_s, cause.kind}, {u"causes"_s, QJsonArray::fromStringList(cause.names)},
        {u"outcome"_s, cause.outcome}, {u"next"_s, nextStepName(cause.next)},
        {u"en"_s, toJson(cause.english)}, {u"ru"_s, toJson(cause.russian)}};
    if (!cause.seen.isEmpty())
        json.insert(u"seen"_s, cause.seen);
    return QJsonDocument(json).toJson(QJsonDocument::Compact) + '\n';
}

// The second column of a table whose first one has these labels, within 80 columns.
QString folded(const QList<QStringList>& rows)
{
    constexpr int columns = 80;
    constexpr int indent = 2;
    qsizetype widest = 0;
    for (const QStringList& row : rows)
        widest = std::max(widest, row.first().size());
    QList<QStringList> lines;
    for (const QStringList& row : rows) {
        QString label = row.first();
        const auto width = static_cast<int>(columns - indent - widest - 2);
        for (const QString& part : wrapped(row.last(), width).split(u'\n'))
            lines << QStringList{std::exchange(label, QString()), part};
    }
    return textTable(lines, indent);
}

QString heading(const Cause& cause)
{
    const QString names = cause.names.join(u", "_s);
    const QString said = cause.seen.isEmpty() ? textsOf(cause).cause : cause.seen;
    return wrapped(said.isEmpty() ? names : names + u": "_s + said, 80);
}

QString textOf(const Cause& cause)
{
    const CauseTexts& texts = textsOf(cause);
    return heading(cause) + u'\n' +
           folded({{Text::tr("Receipt"), outcomeText(cause.outcome)},
               {Text::tr("Next step"), nextText(cause.next)}, {Text::tr("Cashier"), texts.cashier},
               {Text::tr("Administrator"), texts.administrator}, {Text::tr("Programmer"), texts.programmer}});
}

const Cause& wanted(const QString& text)
{
    const Cause* cause = causeNamed(text);
    if (!cause)
        cause = causeIn(text);
    if (cause)
        return *cause;
    bool isNumber = false;
    text.toInt(&isNumber);
    if (isNumber)
        throw Failure(ExitCode::LocalFailure,
            Text::tr("%1 is not a code of the service. The registers that it uses have codes of their own; "
                     "\"frhost explain failed\" says what to do.")
                .arg(text));
    throw Failure(ExitCode::LocalFailure,
        Text::tr("\"%1\" is not a known cause. \"frhost explain\" lists all of them.").arg(text));
}

} // namespace

ExitCode explain(const CommandLine& line, Output& output)
{
    QList<Cause> shown = causes();
    if (!line.cause.isEmpty())
        shown = {wanted(line.cause)};
    QByteArray text;
    for (const Cause& cause : shown) {
        if (!line.json && !text.isEmpty())
            text += '\n';
        text += line.json ? jsonOf(cause) : textOf(cause).toUtf8();
    }
    output.write(text);
    return ExitCode::Success;
}

} // namespace frhost
