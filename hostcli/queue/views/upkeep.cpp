#include "hostcli/queue/views/upkeep.h"

#include "hostcli/commands/setup.h"
#include "hostcli/queue/open.h"
#include "hostcli/queue/views/entryjson.h"
#include "hostcli/queue/views/view.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/texttable.h"
#include "queue/store/upkeep.h"
#include "queue/work/asking.h"
#include "till/text.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

struct Row
{
    const char* key;
    QString label;
    int count;
};

struct WordText
{
    queue::Word word;
    const char* key;
    const char* text;
};

constexpr WordText words[] = {
    {queue::Word::Registered, "registered",
        QT_TRANSLATE_NOOP("Text", "the service says that it is registered; a worker will prove it")},
    {queue::Word::Failed, "failed",
        QT_TRANSLATE_NOOP("Text", "the service says that it could not register it; a worker will ask again")},
    {queue::Word::Waiting, "waiting", QT_TRANSLATE_NOOP("Text", "the service is working on it")},
    {queue::Word::Unclear, "unclear",
        QT_TRANSLATE_NOOP("Text", "the service does not say what became of it")},
    {queue::Word::Unasked, "unasked",
        QT_TRANSLATE_NOOP("Text",
            "its uuid has not arrived: only a worker can find out what became of it, by "
            "sending it again under its id")},
};

std::vector<Row> rowsOf(const queue::Audit& audit)
{
    return {
        {"accepted", Text::tr("accepted"), audit.accepted},
        {"registered", Text::tr("registered"), audit.registered},
        {"refused", Text::tr("refused"), audit.refused},
        {"underWay", Text::tr("under way"), audit.underWay},
        {"lost", Text::tr("lost"), audit.lost},
        {"doubled", Text::tr("doubled"), audit.doubled},
        {"recovered", Text::tr("recovered"), audit.recovered},
    };
}

// Says what the service says of each receipt; returns how often it said what.
QJsonObject asked(const CommandLine& line, const QueuePlace& place, queue::Store& store)
{
    requireConnection(place.config, {u"url"_s, u"groupCode"_s, u"login"_s, u"password"_s});
    Session session(place.config, pluginOf(line));
    std::ignore = session.fiscalRegister().service();
    session.connect();
    std::map<queue::Word, int> counts;
    askAboutDoubtful(store, session, [&](const queue::Entry& entry, queue::Word word) {
        ++counts[word];
        const auto* said = std::ranges::find(words, word, &WordText::word);
        Console::instance().line(u"%1: %2"_s.arg(entry.id, Text::tr(said->text)));
    });
    QJsonObject json;
    for (const WordText& each : words)
        json.insert(QLatin1StringView(each.key), counts[each.word]);
    return json;
}

} // namespace

ExitCode queueAudit(const CommandLine& line, Output& output)
{
    const QueuePlace place = placeOf(line);
    queue::Store store = storeAt(place);
    QJsonObject json;
    if (line.queue.ask)
        json.insert("asked"_L1, asked(line, place, store));
    const queue::Audit audit = auditOf(store);
    QList<QStringList> rows;
    for (const Row& row : rowsOf(audit)) {
        json.insert(QLatin1StringView(row.key), row.count);
        rows << QStringList{row.label, QString::number(row.count)};
    }
    json.insert("otherRegisters"_L1, tellOfOthers(store));
    output.write(line.json ? jsonLine(json) : textTable(rows).toUtf8());
    for (const QString& finding : audit.findings)
        Console::instance().line(finding);
    return audit.isGood() ? ExitCode::Success : ExitCode::LocalFailure;
}

ExitCode queueExport(const CommandLine& line, Output& output)
{
    const QueuePlace place = placeOf(line);
    queue::Store store = storeAt(place);
    // One state of the file.
    store.database().snapshot([&] {
        forEachEntry(store, std::nullopt, [&](const queue::Entry& entry) {
            if (isFinished(entry.state))
                output.write(jsonLine(wholeJson(entry, historyOf(store, entry))));
        });
    });
    return ExitCode::Success;
}

ExitCode queuePrune(const CommandLine& line, Output& output)
{
    const QueuePlace place = placeOf(line);
    queue::Store store = storeAt(place);
    const int removed = prune(store, std::chrono::hours(24) * line.queue.days);
    output.write(line.json ? jsonLine({{u"removed"_s, removed}})
                           : (Text::tr("removed: %1").arg(removed) + u'\n').toUtf8());
    return ExitCode::Success;
}

} // namespace frhost
