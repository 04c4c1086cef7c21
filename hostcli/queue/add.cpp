#include "hostcli/queue/add.h"

#include "host/vposfrdriver.h"
#include "hostcli/commands/setup.h"
#include "hostcli/queue/views/conclusion.h"
#include "hostcli/queue/views/entryjson.h"
#include "hostcli/terminal/console.h"
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

#include <algorithm>
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

struct Taken
{
    QString file;
    int line;
    QString id;
    bool isNew;
    queue::State state = queue::State::Queued;
    bool isHeld = false;
    // Of one that the queue had already, and that no worker will take.
    Conclusion conclusion = {};

    // No worker will register it.
    [[nodiscard]] bool isLeft() const { return isFinished(state) && state != queue::State::Registered; }
};

Taken taken(queue::Store& store, const QueuedReceipt& queued, queue::Added added)
{
    Taken one{queued.file, queued.line, queued.receipt.id(), added == queue::Added::New};
    const auto entry = one.isNew ? std::nullopt : store.find(one.id);
    if (!entry)
        return one;
    one.state = entry->state;
    one.isHeld = entry->isHeld;
    if (one.isLeft() || one.isHeld)
        one.conclusion = conclusionOf(store, *entry);
    return one;
}

QByteArray lineFor(const Taken& taken, bool isJson)
{
    if (isJson) {
        QJsonObject json{{u"file"_s, taken.file}, {u"line"_s, taken.line}, {u"id"_s, taken.id},
            {u"added"_s, taken.isNew}, {u"state"_s, nameOf(taken.state)},
            {u"next"_s, queueStepName(taken.conclusion.next)}};
        if (taken.isHeld)
            json.insert("held"_L1, true);
        return jsonLine(json);
    }
    QString text = taken.isNew ? Text::tr("%1: queued").arg(taken.id)
                               : Text::tr("%1: already queued: %2").arg(taken.id, nameOf(taken.state));
    if (taken.isHeld)
        text += u", "_s + Text::tr("held");
    return (printable(text) + u'\n').toUtf8();
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
    QStringList advice;
    bool isAnyLeft = false;
    queue::storeAll(store, [&](const auto& add) {
        receipts.forEach([&](const QueuedReceipt& queued) {
            const Taken one = taken(store, queued, add(composer.entryFor(queued)));
            report += lineFor(one, line.json);
            isAnyLeft = isAnyLeft || one.isLeft();
            if (!one.conclusion.result.advice.isEmpty())
                advice << u"%1: %2"_s.arg(one.id, one.conclusion.result.advice);
            return true;
        });
    });
    output.write(report);
    for (const QString& one : advice)
        Console::instance().line(one);
    return isAnyLeft ? ExitCode::Refused : ExitCode::Success;
}

} // namespace frhost
