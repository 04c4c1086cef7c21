#include "host/vposfrdriver.h"
#include "hostcli/commands/commands.h"
#include "hostcli/commands/setup.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/printable.h"
#include "till/config/registersetup.h"
#include "till/device/loadedregister.h"
#include "till/error.h"
#include "till/sale/attempt.h"
#include "till/sale/registrar.h"
#include "till/text.h"
#include "till/wire/installedtransport.h"
#include "till/wire/recordingtransport.h"

#include <tuple>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

ExitCode compose(const CommandLine& line, Output& output)
{
    const RegisterConfig config = configOf(line);
    RecordingTransport transport;
    const InstalledTransport installed(transport);
    LoadedRegister fiscalRegister(pluginOf(line));
    setUp(fiscalRegister, config);
    VposFrDriver& service = fiscalRegister.service();
    ReceiptQueue queue(line.files, limitChecksOf(line));
    bool isRefused = false;
    const auto handle = [&](const QueuedReceipt& queued) {
        const auto error = attempt([&] {
            handOver(fiscalRegister.driver(), queued.receipt);
            std::ignore = service.documentClose(queued.receipt.document);
        });
        const QByteArray body = transport.takeBody();
        if (!body.isEmpty())
            return output.write((output.isTerminal() ? printableJson(body) : body) + '\n');
        isRefused = true;
        Console::instance().line(u"%1:%2: %3"_s.arg(queued.file, QString::number(queued.line),
            error ? error->message : Text::tr("the driver sent nothing")));
        return true;
    };
    try {
        queue.forEach(handle);
    } catch (const Error& error) {
        Console::instance().line(error.message());
        return isRefused ? ExitCode::Refused : exitCodeOf(error.problem());
    }
    return isRefused ? ExitCode::Refused : ExitCode::Success;
}

} // namespace frhost
