#pragma once

#include "tests/queue/power/request.h"

#include <QtGlobal>

#include <functional>
#include <map>
#include <sqlite3.h>

namespace power {

/// SQLite's way to files, for as long as the object lives: does everything as before, and records what it
/// asks of the disk for databases, their logs and journals, and what is in the shared memory beside a log
/// whenever that is synced. One object at a time, for connections of one thread in one folder.
class RecordingVfs
{
public:
    RecordingVfs();
    ~RecordingVfs();
    Q_DISABLE_COPY_MOVE(RecordingVfs)

    /// Notes that somebody knows this content of the database.
    void promise(const QByteArray& content);
    /// Is called before each sync of a log.
    void setBeforeSyncOfLog(std::function<void()> called) { beforeSyncOfLog = std::move(called); }
    [[nodiscard]] const Requests& requests() const { return recorded; }

private:
    struct File;
    template <auto member>
    struct Passed;

    static sqlite3_io_methods methodsOfFiles();
    static int open(sqlite3_vfs* self, const char* name, sqlite3_file* opened, int flags, int* outFlags);
    static int close(sqlite3_file* self);
    static int write(sqlite3_file* self, const void* bytes, int length, sqlite3_int64 offset);
    static int truncate(sqlite3_file* self, sqlite3_int64 length);
    static int sync(sqlite3_file* self, int flags);
    static int remove(sqlite3_vfs* self, const char* name, int syncFolder);
    static int openFolder(const char* path, int* descriptor);

    [[nodiscard]] int numberOf(const QByteArray& name);
    void note(const sqlite3_file* file, Request request);
    void noteShared(const QByteArray& log);

    sqlite3_vfs* real;
    sqlite3_vfs own = {};
    Requests recorded;
    /// Of the files that are there.
    std::map<QByteArray, int> numbers;
    int lastNumber = 0;
    std::function<void()> beforeSyncOfLog;
};

} // namespace power
