#include "queue/store/workerlocks.h"

#include "queue/store/storeerror.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace queue {

namespace {

struct flock byteOf(qint64 worker)
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = worker;
    lock.l_len = 1;
    return lock;
}

} // namespace

WorkerLocks::WorkerLocks(Store& usedHome)
    : home(usedHome)
{
    if (till::isOnServer(home.place()))
        return;
    fileName = home.place() + u"-workers"_s;
    descriptor =
        ::open(QFile::encodeName(fileName).constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor == -1)
        throw StoreError(fileName, qt_error_string());
}

WorkerLocks::~WorkerLocks()
{
    if (descriptor != -1)
        ::close(descriptor);
}

// A lock of the open file, not of the process: no other close() in the process can release it.
void WorkerLocks::take(qint64 worker)
{
    if (descriptor == -1) {
        home.database().change("SELECT pg_advisory_lock('workers'::regclass::oid::int, ?)", {worker});
        return;
    }
    struct flock lock = byteOf(worker);
    if (::fcntl(descriptor, F_OFD_SETLK, &lock) != 0)
        throw StoreError(fileName, qt_error_string());
}

// On a server, shared locks of those that ask do not exclude each other.
bool WorkerLocks::isTaken(Store& asking, qint64 worker) const
{
    if (descriptor == -1)
        return !asking.database()
                    .value(
                        "SELECT pg_try_advisory_xact_lock_shared('workers'::regclass::oid::int, ?)", {worker})
                    .toBool();
    struct flock lock = byteOf(worker);
    if (::fcntl(descriptor, F_OFD_GETLK, &lock) != 0)
        throw StoreError(fileName, qt_error_string());
    return lock.l_type != F_UNLCK;
}

} // namespace queue
