#pragma once

#include "till/database/engine.h"

#include <QHash>

namespace till {

/// A service of PostgreSQL, as its service file names it. Who may use it is said there, in a password file or
/// by the server; the rows of a SELECT are held in memory.
class PostgresEngine : public Engine
{
public:
    explicit PostgresEngine(QString usedService);

    [[nodiscard]] QSqlDatabase add(
        const QString& connection, std::chrono::milliseconds patience) const override;
    void limit(Database& database, std::chrono::milliseconds patience) const override;
    [[nodiscard]] DatabaseMark mark(Database& database) const override;
    void lockMark(Database& database) const override;
    void setMark(Database& database, const DatabaseMark& mark) const override;
    [[nodiscard]] QString settle(Database& database) const override;
    [[nodiscard]] bool run(QSqlQuery& query, const QString& statement, const QVariantList& values) override;
    [[nodiscard]] bool runPlanned(
        QSqlQuery& query, const QString& statement, const QVariantList& values) override;
    [[nodiscard]] bool isPassing(const QString& code) const override;
    [[nodiscard]] const char* begin() const override { return "BEGIN"; }
    // It locks nothing, so it may rest for as long as somebody reads what is written meanwhile.
    [[nodiscard]] const char* beginReading() const override
    {
        return "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY;"
               " SET LOCAL idle_in_transaction_session_timeout = 0";
    }
    [[nodiscard]] std::span<const DialectWord> words() const override;

private:
    QString service;
    // The names of prepared statements by what they do.
    QHash<QString, QString> plans;
};

} // namespace till
