#include "queue/store/intake.h"

#include "queue/store/storeerror.h"
#include "till/error.h"
#include "till/text.h"

#include <QDateTime>
#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;
using till::Text;

namespace queue {

namespace {

QString conflict(const NewEntry& entry, const Entry& known)
{
    return u"%1:%2: "_s.arg(entry.file, QString::number(entry.line)) +
           Text::tr("/id: another receipt is queued under \"%1\" since %2 (%3:%4). Nothing was stored. Give "
                    "another sale an id of its own.")
               .arg(known.id, QDateTime::fromMSecsSinceEpoch(known.added).toString(u"dd.MM.yyyy hh:mm:ss"_s),
                   known.file, QString::number(known.line));
}

// The spelling of numbers and the order of keys do not matter, and the configuration has no part in it.
bool isSame(const QByteArray& text, const QByteArray& other)
{
    return QJsonDocument::fromJson(text) == QJsonDocument::fromJson(other);
}

Added add(Store& store, const NewEntry& entry)
{
    // To return its number would cost a table of its own in a file.
    const bool isNew =
        store.database().change(
            "INSERT INTO receipts (register, id, file, line, text, digest, added, changed)"
            " VALUES (?, ?, ?, ?, ?, ?, @now, @now) ON CONFLICT DO NOTHING",
            {store.registerNumber(), entry.id, entry.file, entry.line, entry.text, entry.digest}) == 1;
    if (isNew) {
        store.database().change("INSERT INTO events (at, receipt, event, attempt, worker)"
                                " SELECT added, number, 'added', 0, 0 FROM receipts"
                                " WHERE register = ? AND id = ?",
            {store.registerNumber(), entry.id});
        return Added::New;
    }
    const auto known = store.find(entry.id);
    if (!known)
        throw StoreError(store.place(),
            Text::tr("\"%1\" was removed while it was added. Nothing was stored: add it again.")
                .arg(entry.id));
    if (!isSame(known->text, entry.text))
        throw till::Error(till::Problem::Receipt, conflict(entry, *known));
    return Added::Known;
}

} // namespace

void storeAll(
    Store& store, const std::function<void(const std::function<Added(const NewEntry&)>& add)>& handOver)
{
    store.database().transaction([&] { handOver([&](const NewEntry& entry) { return add(store, entry); }); });
}

} // namespace queue
