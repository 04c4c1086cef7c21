#include "till/database/privatefile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace till {

namespace {

// So that what was made in the folder is still known to it after a power cut. Nothing can be done about a
// folder that may be written and not read, and about a file system that does not sync folders.
QString syncFolder(const QString& folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor == -1)
        return errno == EACCES ? QString() : qt_error_string(errno);
    const int code = ::fsync(descriptor) == 0 || errno == EINVAL ? 0 : errno;
    ::close(descriptor);
    return code == 0 ? QString() : qt_error_string(code);
}

QString makeFolder(const QString& folder)
{
    if (QFileInfo(folder).isDir())
        return {};
    const QString above = QFileInfo(folder).path();
    if (above != folder) {
        if (const QString reason = makeFolder(above); !reason.isEmpty())
            return reason;
    }
    // Another process may have been faster.
    if (::mkdir(QFile::encodeName(folder).constData(), S_IRWXU) != 0 && errno != EEXIST)
        return qt_error_string(errno);
    return syncFolder(above);
}

} // namespace

QString makeFolderOf(const QString& file)
{
    return makeFolder(QFileInfo(file).path());
}

// A file that is there is not opened: closing it would release the locks that connections of this process
// hold on it, and others would take it for unused.
QString makePrivateFile(const QString& file)
{
    const QByteArray path = QFile::encodeName(file);
    struct stat status = {};
    if (::stat(path.constData(), &status) == 0) {
        if (S_ISDIR(status.st_mode))
            return qt_error_string(EISDIR);
        const bool isGood = ::faccessat(AT_FDCWD, path.constData(), R_OK | W_OK, AT_EACCESS) == 0;
        return isGood ? QString() : qt_error_string(errno);
    }
    const int descriptor =
        ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (descriptor == -1)
        return qt_error_string(errno);
    ::close(descriptor);
    return {};
}

} // namespace till
