#pragma once

#include "queue/store/store.h"

#include <map>
#include <vector>

namespace queue {

/// One thing that happened to a receipt.
struct Event
{
    /// Grows in the order of events in the whole file.
    qint64 number = 0;
    /// Milliseconds since 1970.
    qint64 at = 0;
    QString name;
    int attempt = 0;
    /// The worker's name; empty for a person.
    QString worker;
    QByteArray detail;
};

/// The register's receipts in the order of their arrival; those of one state where one is given.
void forEachEntry(Store& store, std::optional<State> state, const std::function<void(const Entry&)>& handle);

/// Everything that happened to the receipt, in its order.
[[nodiscard]] std::vector<Event> historyOf(Store& store, const Entry& entry);

/// The results of the register's receipts in the order of finishing, after the event with the number `after`,
/// until `handle` returns false. A receipt that was retried finishes more than once.
void forEachResult(
    Store& store, qint64 after, const std::function<bool(qint64 cursor, const QByteArray& line)>& handle);

/// The result that the receipt finished with last; empty when it has not.
[[nodiscard]] QByteArray resultOf(Store& store, const Entry& entry);

/// How many receipts of the register are in a state.
struct StateCount
{
    State state = State::Unknown;
    int receipts = 0;
    int held = 0;
};

[[nodiscard]] std::vector<StateCount> countsOf(Store& store);

/// Receipts that no worker of this register will finish: how many of which other register, by its address.
[[nodiscard]] std::map<QString, int> unfinishedElsewhere(Store& store);

/// Why the register is paused; empty while it works.
[[nodiscard]] QString troubleOf(Store& store);

/// How many of something there were until now.
struct Rate
{
    int lastMinute = 0;
    int lastHour = 0;
};

/// The register at a glance.
struct Overview
{
    std::map<State, int> receipts;
    int held = 0;
    /// The age of the oldest receipt that is neither finished nor held; none when there is none.
    std::optional<std::chrono::milliseconds> oldest;
    /// How often what happened, in all.
    std::map<QString, int> events;
    /// Receipts that were handed over, and that finished.
    Rate added;
    Rate finished;
    /// What a person must do before the register works again; empty when it works.
    QString trouble;
};

[[nodiscard]] Overview overviewOf(Store& store);

} // namespace queue
