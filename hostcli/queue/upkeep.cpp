#include "hostcli/queue/upkeep.h"

#include "hostcli/queue/entryjson.h"
#include "hostcli/queue/open.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/texttable.h"
#include "queue/store/upkeep.h"
#include "till/text.h"

using namespace Qt::Literals::StringLiterals;
using till::Text;

namespace frhost {

ExitCode queueAudit(const CommandLine& line, Output& output)
{
    const QueuePlace place = placeOf(line);
    queue::Store store(place.file, place.address);
    const queue::Audit audit = auditOf(store);
    struct Row
    {
        const char* key;
        QString label;
        int count;
    };
    const Row counts[] = {
        {"accepted", Text::tr("accepted"), audit.accepted},
        {"registered", Text::tr("registered"), audit.registered},
        {"refused", Text::tr("refused"), audit.refused},
        {"underWay", Text::tr("under way"), audit.underWay},
        {"lost", Text::tr("lost"), audit.lost},
        {"doubled", Text::tr("doubled"), audit.doubled},
        {"recovered", Text::tr("recovered"), audit.recovered},
    };
    QJsonObject json;
    QList<QStringList> rows;
    for (const Row& row : counts) {
        json.insert(QLatin1StringView(row.key), row.count);
        rows << QStringList{row.label, QString::number(row.count)};
    }
    output.write(line.json ? jsonLine(json) : textTable(rows).toUtf8());
    for (const QString& finding : audit.findings)
        Console::instance().line(finding);
    return audit.isGood() ? ExitCode::Success : ExitCode::LocalFailure;
}

ExitCode queueExport(const CommandLine& line, Output& output)
{
    const QueuePlace place = placeOf(line);
    queue::Store store(place.file, place.address);
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
    queue::Store store(place.file, place.address);
    const int removed = prune(store, std::chrono::hours(24) * line.queue.days);
    output.write(line.json ? jsonLine({{u"removed"_s, removed}})
                           : (Text::tr("removed: %1").arg(removed) + u'\n').toUtf8());
    return ExitCode::Success;
}

} // namespace frhost
