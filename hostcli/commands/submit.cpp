#include "hostcli/commands/batch.h"
#include "hostcli/commands/commands.h"
#include "hostcli/commands/setup.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/interruption.h"
#include "till/error.h"
#include "till/local/localregistrar.h"
#include "till/sale/registrar.h"
#include "till/sale/salejournal.h"
#include "till/sale/session.h"

#include <tuple>

using namespace till;

namespace frhost {

namespace {

void warn(const QString& warning)
{
    Console::instance().line(warning);
}

// Sells or sends one receipt, in the way of the session's register.
class Seller
{
public:
    Seller(Command wanted, Session& session, const SaleJournal& journal)
        : command(wanted)
        , hasService(session.fiscalRegister().hasService())
        , registrar(session.fiscalRegister(), session.transport())
        , local(
              session.fiscalRegister().driver(), localAddress(session.fiscalRegister()), session.transport(),
              [&journal] { return journal.earlier(); }, &warn)
    {
    }

    [[nodiscard]] ReceiptResult carryOut(const QueuedReceipt& queued)
    {
        if (!hasService)
            return local.sell(queued);
        return command == Command::Sell ? registrar.sell(queued) : registrar.send(queued);
    }

private:
    Command command;
    bool hasService;
    Registrar registrar;
    LocalRegistrar local;
};

} // namespace

ExitCode submit(const CommandLine& line, Output& output)
{
    Session session(serviceConfigOf(line), pluginOf(line));
    // Only a service can be sent a receipt without waiting.
    if (line.command == Command::Send)
        std::ignore = session.fiscalRegister().service();
    Batch batch(line, output, session.transport());
    const OnInterruption interruption([&] { batch.interrupt(); });
    ReceiptQueue queue(line.files);
    batch.setCount(queue.count());
    const std::unique_ptr<Journal> journal = journalOf(line);
    SaleJournal kept(journal.get(), session.transport(), &warn);
    session.connect();
    Seller seller(line.command, session, kept);
    const auto handle = [&](const QueuedReceipt& queued) {
        const QString status = batch.begin(queued);
        kept.begin(queued);
        const ReceiptResult result = [&] {
            const ShownStatus shown(status);
            return kept.concluded(seller.carryOut(queued));
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
