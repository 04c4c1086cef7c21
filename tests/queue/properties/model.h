#pragma once

#include "queue/store/claims.h"
#include "queue/store/store.h"

#include <QStringList>

#include <array>
#include <map>
#include <set>
#include <vector>

/// When a receipt is to be tried again.
enum class Due
{
    Now,
    /// In less than a minute, which no sequence lasts.
    Later,
    /// In hours, which are counted: only a clock that was set back can be the reason.
    Never,
};

/// How an attempt ends.
struct EndingKind
{
    queue::State state;
    bool isHeld = false;
    bool maybeSent = true;
    int fruitless = 0;
    Due due = Due::Now;
    bool isProven = false;
};

/// The number of a receipt, which the store alone chooses, and by which a claim names it. Any is as good as
/// any other.
struct Number
{
    qint64 value = 0;

    bool operator==(const Number& /*other*/) const { return true; }
};

/// What the store must hold of a receipt.
struct Known
{
    Number number;
    std::size_t where = 0;
    QString id;
    QString goods;
    queue::State state = queue::State::Queued;
    /// Before the last claim.
    queue::State earlier = queue::State::Queued;
    bool isHeld = false;
    int attempt = 0;
    bool maybeSent = false;
    int fruitless = 0;
    qint64 owner = 0;
    /// 0: now, -1: later, otherwise in so many hours.
    int hours = 0;
    QByteArray digest = "digest";
    QString uuid;
    qint64 document = 0;
    QStringList events{QStringLiteral("added")};

    bool operator==(const Known& other) const = default;
};

/// The rules of the queue in memory, as somebody writes them who knows nothing of databases: receipts of two
/// registers, by arrival. Operations answer what the store's answer in words; "refused" stands for an error.
struct Model
{
    static constexpr std::size_t registers = 2;

    std::vector<Known> receipts;
    /// Workers that may have something under way.
    std::set<qint64> workers;
    std::array<QString, registers> trouble;
    /// By register, in the order of finishing: the receipt, and the number in its line.
    std::array<std::vector<std::pair<QString, int>>, registers> results;

    bool operator==(const Model& other) const = default;

    /// What the database holds. Throws where it holds more than there can be.
    [[nodiscard]] static Model of(queue::Store& store, const std::array<qint64, registers>& numbers);
    [[nodiscard]] QString described() const;

    [[nodiscard]] Known* find(std::size_t where, const QString& id);
    QString add(std::size_t where, const QString& id, const QString& goods);
    QString claim(std::size_t where, qint64 worker);
    QString noteContent(const queue::Claim& claim, const QByteArray& digest);
    /// `serial` is the number of the document, that in the result and, in hours, a delay that never ends.
    QString conclude(const queue::Claim& claim, const EndingKind& ending, int serial);
    /// Takes what the worker had under way; returns how many receipts.
    int takeFrom(qint64 worker, bool isDead);
    QString hold(std::size_t where, const QString& id);
    QString release(std::size_t where, const QString& id);
    QString cancel(std::size_t where, const QString& id);
    QString retry(std::size_t where, const QString& id);
    QString replace(std::size_t where, const QString& id, const QString& successor, const QString& goods);
    QString prune(std::size_t where);
    [[nodiscard]] bool isDone(std::size_t where) const;
    /// The results with higher numbers than this.
    [[nodiscard]] QString resultsAfter(std::size_t where, int serial) const;
    /// How many receipts are accepted, registered, refused and under way.
    [[nodiscard]] QString counts(std::size_t where) const;

private:
    [[nodiscard]] Known* named(const queue::Claim& claim);
    [[nodiscard]] Known* owned(const queue::Claim& claim);
    [[nodiscard]] Known* unfinished(std::size_t where, const QString& id);
};

/// The answer to a demand that cannot be met.
inline const QString refusal = QStringLiteral("refused");
/// A result, and the number in it.
[[nodiscard]] QByteArray lineOf(int serial);
[[nodiscard]] int serialIn(const QByteArray& line);
