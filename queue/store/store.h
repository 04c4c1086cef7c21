#pragma once

#include "queue/store/entry.h"
#include "till/database/database.h"

#include <QJsonObject>

namespace queue {

/// What a store does where there is no database, or where it does not know the register.
enum class Missing
{
    Create,
    /// Throws till::Error (Setup) that says so; whoever looks changes nothing.
    Report,
};

/// The queue's database, a file or a service of PostgreSQL, and one register's receipts in it. Whatever
/// happens to a receipt is an event, appended in the transaction that makes the change; events are never
/// altered.
///
/// One thread uses an object; any number of objects and processes may use a database. Everything
/// throws StoreError when it cannot be used.
class Store
{
public:
    static constexpr std::chrono::milliseconds defaultPatience{10'000};

    /// Opens the service of `postgresql:service=NAME`, or the file, in a folder that must exist. A file that
    /// is created is readable by its owner alone. `fiscalRegister` is
    /// the address of the service and group, as the journal writes it.
    Store(const QString& place, const QString& fiscalRegister,
        std::chrono::milliseconds patience = defaultPatience, till::Database::Probe probe = {},
        Missing missing = Missing::Create);

    [[nodiscard]] QString place() const { return placeName; }
    [[nodiscard]] till::Database& database() { return db; }
    /// The number of the register within the database.
    [[nodiscard]] qint64 registerNumber() const { return number; }

    /// Throws StoreError where the file was removed, replaced or unmounted since it was opened (what is
    /// written then is lost to everybody else), or the connection to the server is lost.
    void requirePlace();

    /// Notes what happened, within the transaction of the change. `detail` is a JSON text or empty.
    void note(
        qint64 receipt, const char* event, qint64 worker = 0, int attempt = 0, const QByteArray& detail = {});

    [[nodiscard]] std::optional<Entry> find(const QString& id);
    /// The same, within a transaction that changes it: until that ends, nobody else does.
    [[nodiscard]] std::optional<Entry> findToChange(const QString& id);
    /// find() and findToChange() for a receipt that must be there: throw till::Error (Setup) where it is not.
    [[nodiscard]] Entry get(const QString& id);
    [[nodiscard]] Entry getToChange(const QString& id);
    /// All rows of `SELECT` the columns of an entry `WHERE condition`.
    void forEach(
        const char* condition, const QVariantList& values, const std::function<void(const Entry&)>& handle);

private:
    [[nodiscard]] qint64 numberOf(const QString& fiscalRegister);
    [[noreturn]] void reportUnknown(const QString& fiscalRegister);
    [[nodiscard]] std::optional<Entry> one(const char* condition, const QString& id);

    QString placeName;
    till::Database db;
    QByteArray opened;
    qint64 number = 0;
};

/// The register's address as the journal writes it, from the settings `url` and `groupCode`.
[[nodiscard]] QString registerAddress(const QString& url, const QString& group);

/// The default file: `queue.db` in the folder of the journal; empty where the environment names none.
[[nodiscard]] QString defaultStoreFile();

} // namespace queue
