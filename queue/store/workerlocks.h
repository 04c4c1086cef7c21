#pragma once

#include <QString>
#include <QtGlobal>

namespace queue {

/// Who is alive, by the kernel's word: each worker locks one byte of a file beside the store, and the lock
/// dies with its process, however that ends.
class WorkerLocks
{
public:
    /// Throws StoreError when the file cannot be used.
    explicit WorkerLocks(const QString& storeFile);
    /// Releases what was taken.
    ~WorkerLocks();
    Q_DISABLE_COPY_MOVE(WorkerLocks)

    /// Takes the lock of a worker of this process. Throws StoreError.
    void take(qint64 worker);
    /// Whether another object holds the lock of this worker. Throws StoreError.
    [[nodiscard]] bool isTaken(qint64 worker) const;

private:
    QString fileName;
    int descriptor = -1;
};

} // namespace queue
