#pragma once

#include "till/database/engine.h"

namespace till {

/// A SQLite file with a write-ahead log.
class SqliteEngine : public Engine
{
public:
    explicit SqliteEngine(QString usedFile);

    [[nodiscard]] QSqlDatabase add(
        const QString& connection, std::chrono::milliseconds patience) const override;
    // The driver does.
    void limit(Database& /*database*/, std::chrono::milliseconds /*patience*/) const override {}
    [[nodiscard]] DatabaseMark mark(Database& database) const override;
    // Any transaction that changes something does.
    void lockMark(Database& /*database*/) const override {}
    void setMark(Database& database, const DatabaseMark& mark) const override;
    [[nodiscard]] QString settle(Database& database) const override;
    [[nodiscard]] bool run(QSqlQuery& query, const QString& statement, const QVariantList& values) override;
    [[nodiscard]] bool runPlanned(
        QSqlQuery& query, const QString& statement, const QVariantList& values) override
    {
        return run(query, statement, values);
    }
    [[nodiscard]] bool isPassing(const QString& code) const override;
    [[nodiscard]] const char* begin() const override { return "BEGIN IMMEDIATE"; }
    [[nodiscard]] const char* beginReading() const override { return "BEGIN"; }
    [[nodiscard]] std::span<const DialectWord> words() const override;

private:
    QString file;
};

} // namespace till
