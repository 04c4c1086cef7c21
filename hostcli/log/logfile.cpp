#include "hostcli/log/logfile.h"

#include "hostcli/failure.h"
#include "till/text.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using till::Text;

namespace frhost {

namespace {

QString complaint(const QString& path, int error)
{
    return Text::tr("The log file %1 cannot be written: %2.").arg(path, qt_error_string(error));
}

} // namespace

LogFile::LogFile(const QString& usedPath)
    : path(usedPath)
    , descriptor(::open(QFile::encodeName(path).constData(),
          O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, S_IRUSR | S_IWUSR))
{
    if (descriptor == -1)
        throw Failure(ExitCode::LocalFailure,
            complaint(path, errno) + u' ' + Text::tr("Name another one with --log-file FILE."));
}

LogFile::~LogFile()
{
    ::close(descriptor);
}

QString LogFile::append(const QString& line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    // One call for each line, so that lines of several processes do not mix.
    const ssize_t written = ::write(descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (written == bytes.size())
        return {};
    const int error = written < 0 ? errno : ENOSPC;
    return std::exchange(hasFailed, true) ? QString() : complaint(path, error);
}

} // namespace frhost
