#include "hostcli/queue/views/view.h"

#include "hostcli/queue/open.h"
#include "hostcli/queue/views/conclusion.h"
#include "hostcli/queue/views/entryjson.h"
#include "hostcli/queue/views/metrics.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/runreport.h"
#include "hostcli/terminal/texttable.h"
#include "queue/store/views.h"
#include "till/error.h"
#include "till/text.h"

#include <QDateTime>
#include <QJsonDocument>

#include <algorithm>
#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace till;
using queue::Entry;
using queue::State;

namespace frhost {

namespace {

constexpr auto lookAgain = 100ms;

QString shown(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds).toString(u"dd.MM.yyyy hh:mm:ss"_s);
}

QStringList rowOf(const Entry& entry)
{
    return {entry.id, nameOf(entry.state), entry.isHeld ? Text::tr("held") : QString(),
        QString::number(entry.attempt), shown(entry.changed),
        u"%1:%2"_s.arg(entry.file, QString::number(entry.line))};
}

QJsonObject toJson(const queue::Rate& rate)
{
    return {{u"lastMinute"_s, rate.lastMinute}, {u"lastHour"_s, rate.lastHour}};
}

} // namespace

// As where url or groupCode have been changed since.
QJsonObject tellOfOthers(queue::Store& store)
{
    QJsonObject json;
    for (const auto& [address, count] : unfinishedElsewhere(store)) {
        json.insert(address, count);
        Console::instance().line(
            Text::tr("Unfinished receipts of another register in this queue: %1 (%2). Only a worker with its "
                     "url and groupCode sends them; if you have changed these, run one with the former ones.")
                .arg(QString::number(count), address));
    }
    return json;
}

void writeEntries(const std::vector<Entry>& entries, bool isJson, Output& output)
{
    QList<QStringList> rows;
    for (const Entry& entry : entries) {
        if (isJson)
            output.write(jsonLine(toJson(entry)));
        else
            rows << rowOf(entry);
    }
    if (!rows.isEmpty())
        output.write(textTable(rows).toUtf8());
}

ExitCode queueResults(const CommandLine& line, Output& output)
{
    const QueuePlace place = placeOf(line);
    queue::Store store = storeAt(place);
    qint64 cursor = line.queue.after;
    for (;;) {
        forEachResult(store, cursor, [&](qint64 number, const QByteArray& result) {
            QJsonObject json = inQueue(QJsonDocument::fromJson(result).object());
            json.insert("cursor"_L1, number);
            cursor = number;
            return output.write(jsonLine(json));
        });
        if (!line.queue.follow || !output.error().isEmpty())
            return ExitCode::Success;
        std::this_thread::sleep_for(lookAgain);
    }
}

ExitCode queueWait(const CommandLine& line, Output& output)
{
    const QueuePlace place = placeOf(line);
    queue::Store store = storeAt(place);
    for (const QString& id : line.queue.ids)
        std::ignore = store.get(id);
    Tally tally;
    ExitCode status = ExitCode::Success;
    for (const QString& id : line.queue.ids) {
        Entry entry = store.get(id);
        for (; !isFinished(entry.state) && !entry.isHeld; entry = store.get(id))
            std::this_thread::sleep_for(lookAgain);
        const Conclusion conclusion = conclusionOf(store, entry);
        tally.add(conclusion.result.outcome);
        status = std::max(status, exitCodeOf(conclusion.result.outcome));
        if (line.json)
            reportAs(toJsonLine(conclusion), conclusion.result, output);
        else
            report(conclusion.result, false, output);
        if (!output.error().isEmpty())
            break;
    }
    const auto receipts = static_cast<int>(line.queue.ids.size());
    if (line.json)
        output.write(toJsonLine(tally, u"registered"_s, receipts, status));
    reportTotals(tally, true, receipts);
    return status;
}

ExitCode queueList(const CommandLine& line, Output& output)
{
    const QueuePlace place = placeOf(line);
    queue::Store store = storeAt(place);
    std::vector<Entry> entries;
    forEachEntry(
        store, queue::stateOf(line.queue.state), [&](const Entry& entry) { entries.push_back(entry); });
    writeEntries(entries, line.json, output);
    if (const QString trouble = troubleOf(store); !trouble.isEmpty())
        Console::instance().line(Text::tr("The register is paused: %1").arg(trouble));
    tellOfOthers(store);
    return ExitCode::Success;
}

ExitCode queueShow(const CommandLine& line, Output& output)
{
    const QueuePlace place = placeOf(line);
    queue::Store store = storeAt(place);
    const Entry entry = store.get(line.queue.ids.first());
    const std::vector<queue::Event> history = historyOf(store, entry);
    QList<QStringList> rows;
    for (const queue::Event& event : history)
        rows << QStringList{shown(event.at), event.name,
            event.attempt > 0 ? QString::number(event.attempt) : QString(), event.worker,
            QString::fromUtf8(event.detail)};
    output.write(line.json ? jsonLine(wholeJson(entry, history))
                           : (textTable({rowOf(entry)}) + textTable(rows, 2)).toUtf8());
    return ExitCode::Success;
}

ExitCode queueStats(const CommandLine& line, Output& output)
{
    const QueuePlace place = placeOf(line);
    queue::Store store = storeAt(place);
    const queue::Overview overview = overviewOf(store);
    if (line.queue.openMetrics) {
        output.write(openMetrics(overview, place.address));
        return ExitCode::Success;
    }
    QJsonObject states;
    QList<QStringList> rows;
    for (const auto& [state, count] : overview.receipts) {
        states.insert(nameOf(state), count);
        rows << QStringList{nameOf(state), QString::number(count)};
    }
    const qint64 age = overview.oldest.value_or(0ms).count() / 1000;
    rows << QStringList{Text::tr("held"), QString::number(overview.held)}
         << QStringList{Text::tr("oldest, seconds"), QString::number(age)};
    QJsonObject events;
    for (const auto& [name, count] : overview.events) {
        events.insert(name, count);
        rows << QStringList{Text::tr("event %1").arg(name), QString::number(count)};
    }
    const std::pair<QString, int> rates[] = {
        {Text::tr("handed over in the last minute"), overview.added.lastMinute},
        {Text::tr("handed over in the last hour"), overview.added.lastHour},
        {Text::tr("finished in the last minute"), overview.finished.lastMinute},
        {Text::tr("finished in the last hour"), overview.finished.lastHour},
    };
    for (const auto& [label, count] : rates)
        rows << QStringList{label, QString::number(count)};
    if (!overview.trouble.isEmpty())
        rows << QStringList{Text::tr("paused"), overview.trouble};
    const QJsonObject json{{u"states"_s, states}, {u"held"_s, overview.held}, {u"oldestSeconds"_s, age},
        {u"events"_s, events},
        {u"rates"_s,
            QJsonObject{{u"added"_s, toJson(overview.added)}, {u"finished"_s, toJson(overview.finished)}}},
        {u"trouble"_s, overview.trouble}, {u"otherRegisters"_s, tellOfOthers(store)}};
    output.write(line.json ? jsonLine(json) : textTable(rows).toUtf8());
    return ExitCode::Success;
}

} // namespace frhost
