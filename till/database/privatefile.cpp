#include "till/database/privatefile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace till {

namespace {

QString makeFolder(const QString& folder)
{
    if (QFileInfo(folder).isDir())
        return {};
    if (const QString above = QFileInfo(folder).path(); above != folder) {
        if (const QString reason = makeFolder(above); !reason.isEmpty())
            return reason;
    }
    // Another process may have been faster.
    if (::mkdir(QFile::encodeName(folder).constData(), S_IRWXU) != 0 && errno != EEXIST)
        return qt_error_string(errno);
    return {};
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
