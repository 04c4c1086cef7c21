#include "tests/queue/power/scenarios.h"

#include "till/database/database.h"
#include "till/database/privatefile.h"
#include "till/error.h"

#include <chrono>

using namespace Qt::Literals::StringLiterals;

namespace power {

namespace {

constexpr int applicationId = 1;

const char* const firstVersion[] = {
    "CREATE TABLE goods (number @number, name TEXT NOT NULL, price BIGINT NOT NULL)",
};
const char* const secondVersion[] = {
    "CREATE TABLE prices (good BIGINT NOT NULL UNIQUE, price BIGINT NOT NULL)",
    "INSERT INTO prices SELECT number, price FROM goods",
    "ALTER TABLE goods DROP COLUMN price",
};

[[noreturn]] void fail(const QString& reason, till::Fault /*fault*/)
{
    throw till::Error(till::Problem::Setup, reason);
}

std::unique_ptr<till::Database> opened(const QString& folder, int version)
{
    const QString file = folder + u"/goods.db"_s;
    if (const QString reason = till::makePrivateFile(file); !reason.isEmpty())
        fail(reason, till::Fault::Lasting);
    till::DatabaseFormat format{applicationId, {firstVersion}};
    if (version == 2)
        format.versions.emplace_back(secondVersion);
    return std::make_unique<till::Database>(file, format, std::chrono::milliseconds(100), fail);
}

void work(const QString& folder, RecordingVfs& vfs)
{
    // As the second version shows it.
    QByteArray content;
    int last = 0;
    const auto add = [&](till::Database& database, const std::function<void()>& insert) {
        database.transaction(insert);
        vfs.promise(content);
    };
    const auto next = [&] {
        content += "good " + QByteArray::number(++last) + '\n';
        return QByteArray("good ").append(QByteArray::number(last));
    };
    {
        const auto database = opened(folder, 1);
        vfs.promise(content);
        for (const int count : {1, 1, 300}) {
            add(*database, [&] {
                for (int i = 0; i < count; ++i)
                    database->change(
                        "INSERT INTO goods (name, price) VALUES (?, ?)", {QString::fromLatin1(next()), last});
            });
        }
    }
    const auto database = opened(folder, 2);
    vfs.promise(content);
    add(*database, [&] {
        database->change("INSERT INTO goods (name) VALUES (?)", {QString::fromLatin1(next())});
        database->change("INSERT INTO prices VALUES (?, ?)", {last, last});
    });
}

QByteArray contentAfterCut(const QString& folder)
{
    const auto database = opened(folder, 2);
    if (const QString damage = database->value("PRAGMA integrity_check").toString(); damage != "ok"_L1)
        fail(damage, till::Fault::Lasting);
    QByteArray content;
    QSqlQuery row = database->query("SELECT name, number - price FROM goods"
                                    " LEFT JOIN prices ON good = number ORDER BY number");
    while (row.next())
        content += row.value(0).toByteArray() + (row.value(1) == 0 ? "\n" : " has another price\n");
    database->change("INSERT INTO goods (name) VALUES ('after')");
    return content;
}

} // namespace

Scenario migration()
{
    return {work, contentAfterCut};
}

} // namespace power
