#pragma once

#include "queue/store/store.h"
#include "queue/store/workerlocks.h"

namespace queue {

/// A receipt that a worker has taken.
struct Claim
{
    /// As it was before.
    Entry entry;
    /// Of this claim; any later one has a higher number.
    int attempt = 0;
};

/// Enters a worker into the store and takes its lock; returns its number, which is never used again.
[[nodiscard]] qint64 enrol(Store& store, WorkerLocks& locks, const QString& name);

/// A worker's hold on receipts. Every change carries receipt, state and attempt in its condition, so that a
/// worker that was thought dead changes nothing when it wakes up.
class Claims
{
public:
    /// All are borrowed. `worker` is enrolled.
    Claims(Store& usedStore, const WorkerLocks& usedLocks, qint64 usedWorker,
        std::chrono::milliseconds usedLease);

    /// Takes the receipt that has waited longest and is due. It is on the disk, when this returns, that the
    /// receipt may be sent.
    [[nodiscard]] std::optional<Claim> next();
    /// Whether nobody has taken the receipt over. If not, it must not be sent.
    [[nodiscard]] bool holds(const Claim& claim);
    /// The same; and writes down first that another content than that of `claim` is about to be sent. If an
    /// earlier attempt may have sent something else, no content counts as known from then on: the digest is
    /// empty.
    [[nodiscard]] bool noteContent(const Claim& claim, const QByteArray& digest);
    /// Ends the claim. Returns false, and counts it unless the receipt was removed, where the claim no longer
    /// holds.
    bool conclude(const Claim& claim, const Ending& ending);

    /// Says that the worker is alive.
    void beat();
    /// Takes from workers that have died, or not been heard of for the lease, what they had under way;
    /// returns how many receipts.
    int takeOver();
    /// The worker has ended and has nothing under way.
    void leave();

    /// Whether no receipt of the register is left that a worker has or could take, now or later.
    [[nodiscard]] bool isDone();
    /// What a person must do before the register works again; empty when it works.
    void setTrouble(const QString& text);

private:
    [[nodiscard]] std::optional<Claim> nextOnServer();
    [[nodiscard]] std::optional<Claim> nextInFile();
    int takeFrom(qint64 other, bool isDead);

    Store& store;
    const WorkerLocks& locks;
    qint64 worker;
    std::chrono::milliseconds lease;
    // Whether no receipt was due at the last look.
    bool isIdle = true;
};

} // namespace queue
