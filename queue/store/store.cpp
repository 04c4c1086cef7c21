#include "queue/store/store.h"

#include "queue/store/schema.h"
#include "queue/store/storeerror.h"
#include "till/database/privatefile.h"
#include "till/journal/composedreceipt.h"
#include "till/journal/journalfile.h"
#include "till/text.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <sys/stat.h>
#include <tuple>

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

[[noreturn]] void reportNone(const QString& place)
{
    throw till::Error(till::Problem::Setup,
        Text::tr(
            "%1: there is no queue here yet; frhost queue add creates it. If it should exist, check "
            "\"store\" in section [queue] of the configuration, whether its disk is mounted, and as which "
            "user you run this.")
            .arg(place));
}

bool isFileMissing(const QString& file)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(file).constData(), &status) != 0)
        return errno == ENOENT;
    return S_ISREG(status.st_mode) && status.st_size == 0;
}

// Without any version of the format, only a database that has nothing in it can be opened.
bool isEmpty(const QString& place, std::chrono::milliseconds patience)
{
    struct HasContent
    {
    };
    const auto fail = [&](const QString& reason, till::Fault fault) {
        if (fault == till::Fault::Lasting)
            throw HasContent();
        throw StoreError(place, reason, fault);
    };
    try {
        const till::Database empty(place, {formatOf(place).applicationId, {}}, patience, fail);
        return true;
    } catch (const HasContent&) {
        return false;
    }
}

QString existing(const QString& place, std::chrono::milliseconds patience)
{
    if (!till::isOnServer(place) && isFileMissing(place))
        reportNone(place);
    // Says why a file cannot be used.
    std::ignore = created(place);
    if (isEmpty(place, patience))
        reportNone(place);
    return place;
}

Entry required(const std::optional<Entry>& entry, const QString& id)
{
    if (!entry)
        throw till::Error(till::Problem::Setup,
            u"%1: %2"_s.arg(id, Text::tr("no receipt with this id is in the queue of this register")));
    return *entry;
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
    till::Database::Probe probe, Missing missing)
    : placeName(missing == Missing::Create ? created(place) : existing(place, patience))
    , db(place, formatOf(place), patience,
          [place](const QString& reason, till::Fault fault) { throw StoreError(place, reason, fault); })
    , opened(identityOf(place))
{
    number = numberOf(fiscalRegister);
    if (number == 0) {
        if (missing == Missing::Report)
            reportUnknown(fiscalRegister);
        db.change("INSERT INTO registers (address) VALUES (?) ON CONFLICT DO NOTHING", {fiscalRegister});
        number = numberOf(fiscalRegister);
    }
    db.setProbe(std::move(probe));
}

qint64 Store::numberOf(const QString& fiscalRegister)
{
    return db.value("SELECT number FROM registers WHERE address = ?", {fiscalRegister}).toLongLong();
}

void Store::reportUnknown(const QString& fiscalRegister)
{
    QStringList known;
    db.forEach("SELECT address FROM registers ORDER BY number", {},
        [&](const QSqlQuery& row) { known << row.value(0).toString(); });
    const QString text =
        known.isEmpty()
            ? Text::tr("%1: the queue does not know the register %2; frhost queue add enters it. No other "
                       "register is in it either.")
                  .arg(placeName, fiscalRegister)
            : Text::tr(
                  "%1: the queue does not know the register %2. Check url and groupCode in the "
                  "configuration, and \"store\" in its section [queue]. The queue holds receipts of: %3.")
                  .arg(placeName, fiscalRegister, known.join(u", "_s));
    throw till::Error(till::Problem::Setup, text);
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
    return one("register = ? AND id = ?", id);
}

std::optional<Entry> Store::findToChange(const QString& id)
{
    return one("register = ? AND id = ? @locked", id);
}

Entry Store::get(const QString& id)
{
    return required(find(id), id);
}

Entry Store::getToChange(const QString& id)
{
    return required(findToChange(id), id);
}

std::optional<Entry> Store::one(const char* condition, const QString& id)
{
    std::optional<Entry> only;
    forEach(condition, {number, id}, [&](const Entry& entry) { only = entry; });
    return only;
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
