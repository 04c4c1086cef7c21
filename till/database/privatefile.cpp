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

QString makePrivateFile(const QString& file)
{
    const int descriptor = ::open(
        QFile::encodeName(file).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (descriptor == -1)
        return qt_error_string(errno);
    ::close(descriptor);
    return {};
}

} // namespace till
