#pragma once

#include "till/journal/journal.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <optional>

class QSqlQuery;

namespace queue {

/// What the queue knows of a receipt. The states after sending are those of the journal.
enum class State
{
    /// It waits to be sent for the first time, or nothing of it has reached the service so far.
    Queued,
    /// A worker has it; it may be on the wire.
    Sent,
    /// An attempt ended without knowing the outcome; it will be sent again under its id.
    Unknown,
    /// The service says that it is registered, and has not proved it; it will be asked again.
    Incomplete,
    Registered,
    /// The service accepted it and could not register it. Its id is used up.
    Failed,
    /// The service refused it; nothing was registered.
    Refused,
    /// A person withdrew it before anything was sent.
    Cancelled,
};

/// As the store, and the user, name it.
[[nodiscard]] QString nameOf(State state);
/// None for any other name.
[[nodiscard]] std::optional<State> stateOf(const QString& name);
/// The names, in the order of the states.
[[nodiscard]] QStringList stateNames();

/// Whether no worker will touch it again.
[[nodiscard]] bool isFinished(State state);

/// One receipt in the store. Times are milliseconds since 1970 by the database's clock.
struct Entry
{
    qint64 number = 0;
    QString id;
    State state = State::Queued;
    /// Nobody works on it until a person releases it.
    bool isHeld = false;
    /// Grows with every claim.
    int attempt = 0;
    /// Whether any attempt so far may have reached the service.
    bool maybeSent = false;
    /// Attempts in a row that ended because of the receipt, not of the register.
    int fruitless = 0;
    QString file;
    int line = 0;
    /// The receipt's own JSON.
    QByteArray text;
    /// The journal's digest of what is sent.
    QByteArray digest;
    qint64 added = 0;
    qint64 changed = 0;
    QString uuid;
};

/// The columns of `receipts` that make an entry.
constexpr auto entryColumns =
    "number, id, state, held, attempt, maybeSent, fruitless, file, line, text, digest,"
    " added, changed, uuid";
/// The entry in a row of these columns.
[[nodiscard]] Entry entryIn(const QSqlQuery& row);

/// A receipt that is about to be stored.
struct NewEntry
{
    QString id;
    QByteArray text;
    QByteArray digest;
    QString file;
    int line = 0;
};

/// What becomes of a receipt at the end of an attempt.
struct Ending
{
    State state = State::Unknown;
    bool isHeld = false;
    bool maybeSent = true;
    int fruitless = 0;
    /// Before it is claimed again.
    std::chrono::milliseconds delay{0};
    QString uuid;
    std::optional<till::JournalEvidence> evidence;
    /// The result as a line of JSON; what a reader of results gets where this ending is final.
    QByteArray result;
};

} // namespace queue
