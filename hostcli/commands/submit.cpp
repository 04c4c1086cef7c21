#include "hostcli/commands/batch.h"
#include "hostcli/commands/commands.h"
#include "hostcli/commands/setup.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/interruption.h"
#include "till/error.h"
#include "till/local/localregistrar.h"
#include "till/receipts/receiptstream.h"
#include "till/receipts/servicelimits.h"
#include "till/sale/registrar.h"
#include "till/sale/retries.h"
#include "till/sale/salejournal.h"
#include "till/sale/session.h"
#include "till/text.h"

#include <optional>
#include <tuple>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
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
    Seller(Command wanted, Session& session, SaleJournal& journal)
        : command(wanted)
        , hasService(session.fiscalRegister().hasService())
        , registrar(session.fiscalRegister(), session.transport())
        , local(session.fiscalRegister().driver(),
              hasService ? QUrl() : localAddress(session.fiscalRegister()), session.transport(), journal,
              &warn)
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

// Helps whoever looks for a fault, and must not be one itself.
void keepExchanges(const CommandLine& line, ObservingTransport& transport)
{
    if (const QString file = exchangeFileOf(line); !file.isEmpty())
        std::ignore = transport.exchanges().moveTo(file);
}

// One run of `sell` or `send`.
class Run
{
public:
    Run(const CommandLine& commandLine, Session& usedSession, Batch& usedBatch, SaleJournal& usedJournal)
        : line(commandLine)
        , batch(usedBatch)
        , journal(usedJournal)
        , transport(usedSession.transport())
        , seller(commandLine.command, usedSession, usedJournal)
    {
        connect(usedSession);
    }

    // Only the service's clock tells which records are old.
    void clear(Journal& file)
    {
        if (!goesOn)
            return;
        try {
            file.removeOld(transport.seen().token.time);
        } catch (const JournalError& error) {
            batch.stop(explained(error));
            goesOn = false;
        }
    }

    // Returns whether to hand over the next receipt.
    bool handle(const QueuedReceipt& queued)
    {
        if (!goesOn)
            return batch.skip(queued);
        const int done = batch.doneCount();
        try {
            goesOn = settled(queued);
        } catch (const JournalError& error) {
            batch.stop(explained(error));
            goesOn = false;
            if (line.json && batch.doneCount() == done)
                return batch.skip(queued);
        }
        // Each of the others gets its line.
        return goesOn || (line.json && !line.streams);
    }

    bool refuse(const QueuedReceipt& queued, const ReceiptProblem& problem)
    {
        std::ignore = batch.begin(queued);
        ReceiptResult result;
        result.file = queued.file;
        result.line = queued.line;
        result.id = queued.receipt.id();
        result.outcome = Outcome::Refused;
        result.next = NextStep::Correct;
        result.error = ErrorInfo{{}, std::nullopt,
            problem.pointer.isEmpty() ? problem.rule : u"%1: %2"_s.arg(problem.pointer, problem.rule)};
        result.advice = conclusionOf(SaleVerdict::Refused).advice;
        return batch.finish(result);
    }

    [[nodiscard]] bool isGoingOn() const { return goesOn; }

private:
    // In JSON, a service that cannot be used is reported for each receipt, too.
    void connect(Session& session)
    {
        Retries retries(line.retryFor);
        for (bool tries = true; tries;) {
            try {
                session.connect();
                return;
            } catch (const Error& error) {
                tries = error.problem() == Problem::Connection && retries.again();
                if (!tries && !line.json)
                    throw;
                if (tries)
                    warn(Text::tr("%1 Trying again.").arg(error.message()));
                else
                    batch.stop(error);
            }
        }
        goesOn = false;
    }

    bool settled(const QueuedReceipt& queued)
    {
        const QString status = batch.begin(queued);
        const auto attempt = [&] {
            journal.begin(queued);
            const ShownStatus shown(status);
            return journal.concluded(seller.carryOut(queued));
        };
        Retries retries(line.retryFor);
        const ReceiptResult result =
            repeated(retries, attempt, [this](const ReceiptResult& failed) { batch.noteAttempt(failed); });
        const bool continues = batch.finish(result);
        if (result.outcome.value_or(Outcome::Registered) != Outcome::Registered)
            keepExchanges(line, transport);
        journal.check();
        return continues;
    }

    const CommandLine& line;
    Batch& batch;
    SaleJournal& journal;
    ObservingTransport& transport;
    Seller seller;
    bool goesOn = true;
};

void handleQueue(ReceiptQueue& queue, Run& run, Batch& batch)
{
    try {
        queue.forEach([&](const QueuedReceipt& queued) { return run.handle(queued); });
    } catch (const Error& error) {
        batch.stop(error);
    }
}

// Whatever is wrong with a receipt concerns it alone.
bool handleStreamed(const CommandLine& line, const ReceiptParser& parser, const RawReceipt& raw, Run& run)
{
    QueuedReceipt queued;
    queued.file = u"-"_s;
    queued.line = raw.line;
    const auto parsed = parser.parse(raw.text);
    if (const auto* problem = std::get_if<ReceiptProblem>(&parsed))
        return run.refuse(queued, *problem);
    const auto& json = std::get<QJsonObject>(parsed);
    queued.receipt = toReceipt(json);
    for (const ReceiptProblem& problem : beyondServiceLimits(json)) {
        if (line.strict)
            return run.refuse(queued, problem);
        limitChecksOf(line).warn(
            u"-:%1: %2: %3"_s.arg(QString::number(raw.line), problem.pointer, problem.rule));
    }
    return run.handle(queued);
}

void handleStream(const CommandLine& line, Run& run, Batch& batch)
{
    const ReceiptParser parser;
    ReceiptStream stream(STDIN_FILENO);
    try {
        while (run.isGoingOn()) {
            const auto raw = stream.next();
            if (!raw)
                return;
            batch.expectAnother();
            if (!handleStreamed(line, parser, *raw, run))
                return;
        }
    } catch (const Error& error) {
        batch.stop(error);
    }
}

} // namespace

ExitCode submit(const CommandLine& line, Output& output)
{
    Session session(serviceConfigOf(line), pluginOf(line));
    // Only a service can be sent a receipt without waiting.
    if (line.command == Command::Send)
        std::ignore = session.fiscalRegister().service();
    Batch batch(line, output, session.transport());
    const OnInterruption interruption([&] { batch.interrupt(); });
    if (line.files.contains(u"-"_s) && isatty(STDIN_FILENO) != 0)
        Console::instance().line(
            Text::tr("Waiting for receipts on standard input; Ctrl-D ends them."), Urgency::Notice);
    std::optional<ReceiptQueue> queue;
    if (!line.streams) {
        queue.emplace(line.files, limitChecksOf(line));
        batch.setCount(queue->count());
    }
    const std::unique_ptr<Journal> journal = journalOf(line);
    if (!journal && !session.fiscalRegister().hasService())
        warn(Text::tr("Without a journal, nothing notices an id that is used twice: running a file again "
                      "registers it again."));
    SaleJournal kept(journal.get(), session.transport(), &warn);
    Run run(line, session, batch, kept);
    if (journal)
        run.clear(*journal);
    if (queue)
        handleQueue(*queue, run, batch);
    else
        handleStream(line, run, batch);
    return batch.end();
}

} // namespace frhost
