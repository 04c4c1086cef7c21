#pragma once

#include "queue/store/store.h"

namespace queue {

/// Who is alive. With a file, by the kernel's word: each worker locks one byte of a file beside the store,
/// and the lock dies with its process, however that ends. With a server, by the server's word: each worker
/// has a lock of the session, which ends with that.
class WorkerLocks
{
public:
    /// `usedHome` is borrowed. Its session holds the locks on a server. Throws StoreError when the file
    /// cannot be used.
    explicit WorkerLocks(Store& usedHome);
    /// Releases what was taken in a file. On a server, the end of the session does.
    ~WorkerLocks();
    Q_DISABLE_COPY_MOVE(WorkerLocks)

    /// Takes the lock of a worker of this process. Throws StoreError.
    void take(qint64 worker);
    /// Whether another object holds the lock of this worker. `asking` is the calling thread's. Throws
    /// StoreError.
    [[nodiscard]] bool isTaken(Store& asking, qint64 worker) const;

private:
    Store& home;
    QString fileName;
    int descriptor = -1;
};

} // namespace queue
