#include "tests/queue/power/recordingvfs.h"

#include <QFile>

#include <stdexcept>

namespace power {

namespace {

RecordingVfs* active = nullptr;

// Of SQLite's own functions, the one that opens a folder, only ever to sync it.
constexpr auto openFolderName = "openDirectory";
using OpenFolder = int (*)(const char* path, int* descriptor);
sqlite3_syscall_ptr openFolderBefore = nullptr;

constexpr int recordedKinds = SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_WAL | SQLITE_OPEN_MAIN_JOURNAL;

QByteArray baseName(const char* path)
{
    const QByteArray whole(path);
    return whole.sliced(whole.lastIndexOf('/') + 1);
}

} // namespace

struct RecordingVfs::File : sqlite3_file
{
    sqlite3_file* real;
    // 0 where nothing is recorded.
    int number;
    // Of a log; SQLite keeps it.
    const char* log;

    static File& of(sqlite3_file* file) { return *static_cast<File*>(file); }
};

// The same function of the files or the system below.
template <class Result, class... Arguments,
    Result (*sqlite3_io_methods::*member)(sqlite3_file*, Arguments...)>
struct RecordingVfs::Passed<member>
{
    static Result call(sqlite3_file* self, Arguments... arguments)
    {
        sqlite3_file* const real = File::of(self).real;
        return (real->pMethods->*member)(real, arguments...);
    }
};

template <class Result, class... Arguments, Result (*sqlite3_vfs::*member)(sqlite3_vfs*, Arguments...)>
struct RecordingVfs::Passed<member>
{
    static Result call(sqlite3_vfs* /*self*/, Arguments... arguments)
    {
        return (active->real->*member)(active->real, arguments...);
    }
};

// Version 2 lacks only the mapping of a database into memory, which would bypass write().
sqlite3_io_methods RecordingVfs::methodsOfFiles()
{
    using Methods = sqlite3_io_methods;
    Methods methods = {};
    methods.iVersion = 2;
    methods.xClose = &close;
    methods.xRead = &Passed<&Methods::xRead>::call;
    methods.xWrite = &write;
    methods.xTruncate = &truncate;
    methods.xSync = &sync;
    methods.xFileSize = &Passed<&Methods::xFileSize>::call;
    methods.xLock = &Passed<&Methods::xLock>::call;
    methods.xUnlock = &Passed<&Methods::xUnlock>::call;
    methods.xCheckReservedLock = &Passed<&Methods::xCheckReservedLock>::call;
    methods.xFileControl = &Passed<&Methods::xFileControl>::call;
    methods.xSectorSize = &Passed<&Methods::xSectorSize>::call;
    methods.xDeviceCharacteristics = &Passed<&Methods::xDeviceCharacteristics>::call;
    methods.xShmMap = &Passed<&Methods::xShmMap>::call;
    methods.xShmLock = &Passed<&Methods::xShmLock>::call;
    methods.xShmBarrier = &Passed<&Methods::xShmBarrier>::call;
    methods.xShmUnmap = &Passed<&Methods::xShmUnmap>::call;
    return methods;
}

RecordingVfs::RecordingVfs()
    : real(sqlite3_vfs_find(nullptr))
{
    own.iVersion = 2;
    own.szOsFile = sizeof(File);
    own.mxPathname = real->mxPathname;
    own.zName = "recording";
    own.xOpen = &open;
    own.xDelete = &remove;
    own.xAccess = &Passed<&sqlite3_vfs::xAccess>::call;
    own.xFullPathname = &Passed<&sqlite3_vfs::xFullPathname>::call;
    own.xDlOpen = &Passed<&sqlite3_vfs::xDlOpen>::call;
    own.xDlError = &Passed<&sqlite3_vfs::xDlError>::call;
    own.xDlSym = &Passed<&sqlite3_vfs::xDlSym>::call;
    own.xDlClose = &Passed<&sqlite3_vfs::xDlClose>::call;
    own.xRandomness = &Passed<&sqlite3_vfs::xRandomness>::call;
    own.xSleep = &Passed<&sqlite3_vfs::xSleep>::call;
    own.xCurrentTime = &Passed<&sqlite3_vfs::xCurrentTime>::call;
    own.xGetLastError = &Passed<&sqlite3_vfs::xGetLastError>::call;
    own.xCurrentTimeInt64 = &Passed<&sqlite3_vfs::xCurrentTimeInt64>::call;
    openFolderBefore = real->xGetSystemCall(real, openFolderName);
    if (active || !openFolderBefore)
        throw std::logic_error("what SQLite asks of the disk cannot be recorded");
    active = this;
    real->xSetSystemCall(real, openFolderName, reinterpret_cast<sqlite3_syscall_ptr>(&openFolder));
    sqlite3_vfs_register(&own, 1);
}

RecordingVfs::~RecordingVfs()
{
    sqlite3_vfs_unregister(&own);
    sqlite3_vfs_register(real, 1);
    real->xSetSystemCall(real, openFolderName, nullptr);
    active = nullptr;
}

void RecordingVfs::promise(const QByteArray& content)
{
    recorded.push_back({.kind = Request::Kind::Promise, .bytes = content});
}

// A database is created before SQLite sees it.
int RecordingVfs::numberOf(const QByteArray& name)
{
    int& number = numbers[name];
    if (number == 0) {
        number = ++lastNumber;
        recorded.push_back({.kind = Request::Kind::Create, .file = number, .name = name});
    }
    return number;
}

void RecordingVfs::note(const sqlite3_file* file, Request request)
{
    request.file = static_cast<const File*>(file)->number;
    if (request.file != 0)
        recorded.push_back(std::move(request));
}

void RecordingVfs::noteShared(const QByteArray& log)
{
    const QByteArray path = log.chopped(QByteArrayView("-wal").size()) + "-shm";
    if (QFile file(QFile::decodeName(path)); file.open(QIODevice::ReadOnly))
        recorded.push_back(
            {.kind = Request::Kind::Share, .name = baseName(path.constData()), .bytes = file.readAll()});
}

int RecordingVfs::open(
    sqlite3_vfs* /*self*/, const char* name, sqlite3_file* opened, int flags, int* outFlags)
{
    sqlite3_vfs* const real = active->real;
    File& file = File::of(opened);
    file.pMethods = nullptr;
    file.real = static_cast<sqlite3_file*>(sqlite3_malloc(real->szOsFile));
    if (const int code = real->xOpen(real, name, file.real, flags, outFlags); code != SQLITE_OK) {
        sqlite3_free(file.real);
        return code;
    }
    static const sqlite3_io_methods methods = methodsOfFiles();
    file.pMethods = &methods;
    file.number = (flags & recordedKinds) != 0 ? active->numberOf(baseName(name)) : 0;
    file.log = (flags & SQLITE_OPEN_WAL) != 0 ? name : nullptr;
    return SQLITE_OK;
}

int RecordingVfs::close(sqlite3_file* self)
{
    const int code = Passed<&sqlite3_io_methods::xClose>::call(self);
    sqlite3_free(File::of(self).real);
    return code;
}

int RecordingVfs::write(sqlite3_file* self, const void* bytes, int length, sqlite3_int64 offset)
{
    active->note(self, {.kind = Request::Kind::Write,
                           .offset = offset,
                           .bytes = QByteArray(static_cast<const char*>(bytes), length)});
    return Passed<&sqlite3_io_methods::xWrite>::call(self, bytes, length, offset);
}

int RecordingVfs::truncate(sqlite3_file* self, sqlite3_int64 length)
{
    active->note(self, {.kind = Request::Kind::Truncate, .offset = length});
    return Passed<&sqlite3_io_methods::xTruncate>::call(self, length);
}

int RecordingVfs::sync(sqlite3_file* self, int flags)
{
    if (const char* const log = File::of(self).log) {
        active->noteShared(log);
        if (active->beforeSyncOfLog)
            active->beforeSyncOfLog();
    }
    active->note(self, {.kind = Request::Kind::Sync});
    return Passed<&sqlite3_io_methods::xSync>::call(self, flags);
}

int RecordingVfs::remove(sqlite3_vfs* self, const char* name, int syncFolder)
{
    // Before the folder is synced.
    if (const auto known = active->numbers.find(baseName(name)); known != active->numbers.end()) {
        active->recorded.push_back(
            {.kind = Request::Kind::Delete, .file = known->second, .name = known->first});
        active->numbers.erase(known);
    }
    return Passed<&sqlite3_vfs::xDelete>::call(self, name, syncFolder);
}

int RecordingVfs::openFolder(const char* path, int* descriptor)
{
    active->recorded.push_back({.kind = Request::Kind::SyncFolder});
    return reinterpret_cast<OpenFolder>(openFolderBefore)(path, descriptor);
}

} // namespace power
