#include "hostcli/commands/batch.h"
#include "hostcli/commands/commands.h"
#include "hostcli/commands/setup.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/interruption.h"
#include "till/error.h"
#include "till/sale/registrar.h"
#include "till/sale/salejournal.h"
#include "till/sale/session.h"

using namespace till;

namespace frhost {

ExitCode submit(const CommandLine& line, Output& output)
{
    Session session(serviceConfigOf(line), pluginOf(line));
    Batch batch(line, output, session.transport());
    const OnInterruption interruption([&] { batch.interrupt(); });
    ReceiptQueue queue(line.files);
    batch.setCount(queue.count());
    const std::unique_ptr<Journal> journal = journalOf(line);
    SaleJournal kept(journal.get(), session.transport(),
        [](const QString& warning) { Console::instance().line(warning); });
    session.connect();
    Registrar registrar(session.fiscalRegister(), session.transport());
    const auto handle = [&](const QueuedReceipt& queued) {
        const QString status = batch.begin(queued);
        kept.begin(queued);
        const ReceiptResult result = [&] {
            const ShownStatus shown(status);
            return kept.concluded(
                line.command == Command::Sell ? registrar.sell(queued) : registrar.send(queued));
        }();
        const bool goesOn = batch.finish(result);
        kept.check();
        return goesOn;
    };
    try {
        queue.forEach(handle);
    } catch (const JournalError& error) {
        batch.stop(explained(error));
    } catch (const Error& error) {
        batch.stop(error);
    }
    return batch.end();
}

} // namespace frhost
