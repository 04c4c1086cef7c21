#include "queue/store/store.h"

#include "queue/store/schema.h"
#include "queue/store/storeerror.h"
#include "till/database/privatefile.h"
#include "till/journal/composedreceipt.h"
#include "till/journal/journalfile.h"
#include "till/text.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;
using till::Text;

namespace queue {

namespace {

QString created(const QString& place)
{
    if (till::isOnServer(place))
        return place;
    if (const QString reason = till::makePrivateFile(place); !reason.isEmpty())
        throw StoreError(place, reason);
    return place;
}

// Of the file that is there now; empty where there is none.
QByteArray identityOf(const QString& file)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(file).constData(), &status) != 0)
        return {};
    return QByteArray::number(static_cast<quint64>(status.st_dev)) + ':' +
           QByteArray::number(static_cast<quint64>(status.st_ino));
}

} // namespace

Store::Store(const QString& place, const QString& fiscalRegister, std::chrono::milliseconds patience,
    till::Database::Probe probe)
    : placeName(created(place))
    , db(place, formatOf(place), patience,
          [place](const QString& reason, till::Fault fault) { throw StoreError(place, reason, fault); })
    , opened(identityOf(place))
{
    const auto known = [&] {
        return db.value("SELECT number FROM registers WHERE address = ?", {fiscalRegister}).toLongLong();
    };
    number = known();
    if (number == 0) {
        db.change("INSERT INTO registers (address) VALUES (?) ON CONFLICT DO NOTHING", {fiscalRegister});
        number = known();
    }
    db.setProbe(std::move(probe));
}

void Store::requirePlace()
{
    if (till::isOnServer(placeName)) {
        db.change("SELECT 1");
        return;
    }
    const QByteArray there = identityOf(placeName);
    if (there.isEmpty())
        throw StoreError(placeName, Text::tr("the file is not there any more"));
    if (there != opened)
        throw StoreError(placeName, Text::tr("the file was replaced"));
}

void Store::note(qint64 receipt, const char* event, qint64 worker, int attempt, const QByteArray& detail)
{
    db.change("INSERT INTO events (at, receipt, event, attempt, worker, detail)"
              " VALUES (@now, ?, ?, ?, ?, ?)",
        {receipt, QString::fromLatin1(event), attempt, worker,
            detail.isEmpty() ? QVariant() : QVariant(detail)});
}

std::optional<Entry> Store::find(const QString& id)
{
    return firstOf("register = ? AND id = ? LIMIT 1", {number, id});
}

std::optional<Entry> Store::findToChange(const QString& id)
{
    return firstOf("register = ? AND id = ? LIMIT 1 @locked", {number, id});
}

std::optional<Entry> Store::firstOf(const char* condition, const QVariantList& values)
{
    std::optional<Entry> first;
    forEach(condition, values, [&](const Entry& entry) { first = entry; });
    return first;
}

void Store::forEach(
    const char* condition, const QVariantList& values, const std::function<void(const Entry&)>& handle)
{
    const QByteArray statement = QByteArray("SELECT ") + entryColumns + " FROM receipts WHERE " + condition;
    db.forEach(statement.constData(), values, [&](const QSqlQuery& row) { handle(entryIn(row)); });
}

QString registerAddress(const QString& url, const QString& group)
{
    const QString base = url.endsWith(u'/') ? url : url + u'/';
    return till::readComposed(QUrl(base + group + u"/sell"_s), {}).fiscalRegister;
}

QString defaultStoreFile()
{
    const QString journal = till::defaultJournalFile();
    return journal.isEmpty() ? QString() : QFileInfo(journal).path() + u"/queue.db"_s;
}

} // namespace queue
