#pragma once

#include <QByteArray>

#include <vector>

namespace power {

/// What SQLite asks of the disk, or what somebody was told in between.
struct Request
{
    enum class Kind
    {
        Create,
        Delete,
        Write,
        Truncate,
        Sync,
        /// Has the names of files survive.
        SyncFolder,
        /// `bytes` are in a file that maps memory and is never synced; the disk has got any of them or none.
        Share,
        /// From here on, the database holds the content in `bytes`, and somebody knows.
        Promise,
    };

    Kind kind = Kind::Write;
    /// A file keeps its number when its name is gone, and gives it to no other.
    int file = 0;
    QByteArray name = {};
    /// Where it writes; the length after Truncate.
    qsizetype offset = 0;
    QByteArray bytes = {};
};

using Requests = std::vector<Request>;

} // namespace power
