#include "hostcli/queue/work.h"

#include "hostcli/commands/setup.h"
#include "hostcli/queue/open.h"
#include "hostcli/service/servicemanager.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/interruption.h"
#include "hostcli/terminal/resultreport.h"
#include "queue/work/worker.h"
#include "till/text.h"

#include <QSysInfo>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

ExitCode queueWork(const CommandLine& line)
{
    const QueuePlace place = placeOf(line);
    queue::Surroundings surroundings;
    surroundings.store = place.file;
    surroundings.address = place.address;
    surroundings.config = place.config;
    surroundings.plugin = pluginOf(line);
    surroundings.toLine = [](const ReceiptResult& result) { return toJsonLine(result).trimmed(); };
    surroundings.say = [](const QString& text) { Console::instance().line(text); };
    ServiceManager manager;
    surroundings.showTrouble = [&](const QString& trouble) {
        manager.reportStatus(trouble.isEmpty() ? Text::tr("Working") : trouble);
    };
    surroundings.showLife = [&] { manager.reportAlive(); };
    surroundings.lease = place.config.queue.lease;
    surroundings.untilEmpty = line.queue.untilEmpty;
    const QString name = u"%1:%2"_s.arg(QSysInfo::machineHostName(), QString::number(getpid()));
    queue::Worker worker(std::move(surroundings), place.config.queue.parallel, name);
    const OnInterruption interruption([&] {
        Console::instance().line(Text::tr("Interrupted: what is being sent is finished first."));
        manager.reportStopping();
        worker.stop();
    });
    manager.reportReady();
    return worker.run() ? ExitCode::Success : ExitCode::Unknown;
}

} // namespace frhost
