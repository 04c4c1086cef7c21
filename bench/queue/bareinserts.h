#pragma once

#include "queue/store/entry.h"

#include <QSqlDatabase>
#include <QSqlQuery>

#include <functional>

namespace bench {

/// The baseline of handing over: one table in a SQLite file, as durable as the queue, and one statement that
/// is kept prepared.
class BareInserts
{
public:
    /// Throws std::runtime_error, as all here does.
    explicit BareInserts(const QString& file);
    ~BareInserts();
    Q_DISABLE_COPY_MOVE(BareInserts)

    void insert(const queue::NewEntry& entry);
    void transaction(const std::function<void()>& action);

private:
    void run(const char* statement);

    QSqlDatabase database;
    QSqlQuery insertion;
};

} // namespace bench
