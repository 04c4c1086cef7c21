#include "hostcli/queue/add.h"

#include "host/vposfrdriver.h"
#include "hostcli/commands/setup.h"
#include "hostcli/terminal/printable.h"
#include "queue/store/intake.h"
#include "till/config/registersetup.h"
#include "till/device/loadedregister.h"
#include "till/error.h"
#include "till/receipts/receiptqueue.h"
#include "till/sale/attempt.h"
#include "till/sale/registrar.h"
#include "till/text.h"
#include "till/wire/installedtransport.h"
#include "till/wire/recordingtransport.h"

#include <QJsonDocument>
#include <QUrl>

#include <tuple>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

class Composer::Register
{
public:
    Register(const PluginFile& plugin, const RegisterConfig& config)
        : installed(transport)
        , loaded(plugin)
    {
        setUp(loaded, config);
    }

    RecordingTransport transport;
    InstalledTransport installed;
    LoadedRegister loaded;
};

Composer::Composer(const CommandLine& line, const QueuePlace& place)
    : address(place.address)
    , used(std::make_unique<Register>(pluginOf(line), place.config))
{
}

Composer::~Composer() = default;

queue::NewEntry Composer::entryFor(const QueuedReceipt& queued)
{
    const auto error = attempt([&] {
        handOver(used->loaded.driver(), queued.receipt);
        std::ignore = used->loaded.service().documentClose(queued.receipt.document);
    });
    const QByteArray body = used->transport.takeBody();
    if (body.isEmpty())
        throw Error(
            Problem::Receipt, u"%1:%2: "_s.arg(queued.file, QString::number(queued.line)) +
                                  Text::tr("the driver refuses the receipt: %1. Nothing was stored.")
                                      .arg(error ? error->message : Text::tr("the driver sent nothing")));
    return {queued.receipt.id(), QJsonDocument(queued.json).toJson(QJsonDocument::Compact),
        readComposed(QUrl(address + u"/sell"_s), body).digest, queued.file, queued.line};
}

namespace {

QByteArray lineFor(const QueuedReceipt& queued, queue::Added added, bool isJson)
{
    const bool isNew = added == queue::Added::New;
    const QString id = queued.receipt.id();
    if (isJson)
        return printableJson(QJsonDocument(QJsonObject{{u"file"_s, queued.file}, {u"line"_s, queued.line},
                                               {u"id"_s, id}, {u"added"_s, isNew}})
                                 .toJson(QJsonDocument::Compact)) +
               '\n';
    const QString text = isNew ? Text::tr("%1: queued") : Text::tr("%1: already queued");
    return (printable(text.arg(id)) + u'\n').toUtf8();
}

} // namespace

ExitCode queueAdd(const CommandLine& line, Output& output)
{
    const QueuePlace place = placeOf(line);
    ReceiptQueue receipts(line.files, limitChecksOf(line));
    Composer composer(line, place);
    queue::Store store(place.file, place.address);
    // Only what is on the disk is reported.
    QByteArray report;
    queue::storeAll(store, [&](const auto& add) {
        receipts.forEach([&](const QueuedReceipt& queued) {
            report += lineFor(queued, add(composer.entryFor(queued)), line.json);
            return true;
        });
    });
    output.write(report);
    return ExitCode::Success;
}

} // namespace frhost
