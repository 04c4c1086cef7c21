#include "hostcli/queue/decide.h"

#include "hostcli/queue/add.h"
#include "hostcli/queue/views/view.h"
#include "queue/store/decisions.h"
#include "till/receipts/receiptqueue.h"
#include "till/text.h"

#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

void replaceReceipt(const CommandLine& line, const QueuePlace& place, queue::Store& store, const QString& id)
{
    const queue::Entry entry = store.get(id);
    QJsonObject json = QJsonDocument::fromJson(entry.text).object();
    json.insert("id"_L1, line.queue.newId);
    // The schema has rules for ids, too.
    const auto checked = ReceiptParser().parse(QJsonDocument(json).toJson(QJsonDocument::Compact));
    if (const auto* problem = std::get_if<ReceiptProblem>(&checked))
        throw Error(Problem::Receipt, u"%1: %2"_s.arg(problem->pointer, problem->rule));
    Composer composer(line, place);
    queue::replace(store, id, composer.entryFor({entry.file, entry.line, toReceipt(json), json}));
}

} // namespace

ExitCode queueDecide(const CommandLine& line, Output& output)
{
    const QueuePlace place = placeOf(line);
    queue::Store store = storeAt(place);
    QString id = line.queue.ids.first();
    switch (line.queue.action) {
    case QueueAction::Hold:
        queue::hold(store, id);
        break;
    case QueueAction::Release:
        queue::release(store, id);
        break;
    case QueueAction::Cancel:
        queue::cancel(store, id);
        break;
    default:
        if (line.queue.newId.isEmpty()) {
            queue::retry(store, id);
        } else {
            replaceReceipt(line, place, store, id);
            id = line.queue.newId;
        }
    }
    writeEntries({store.get(id)}, line.json, output);
    return ExitCode::Success;
}

} // namespace frhost
