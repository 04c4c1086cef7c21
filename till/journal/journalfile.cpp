#include "till/journal/journalfile.h"

#include "till/journal/journalerror.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

[[noreturn]] void fail(const QString& file)
{
    throw JournalError(file, qt_error_string(errno));
}

void createFolder(const QString& folder, const QString& forFile)
{
    if (QFileInfo(folder).isDir())
        return;
    if (const QString above = QFileInfo(folder).path(); above != folder)
        createFolder(above, forFile);
    // Another process may have been faster.
    if (::mkdir(QFile::encodeName(folder).constData(), S_IRWXU) != 0 && errno != EEXIST)
        fail(forFile);
}

} // namespace

QString defaultJournalFile()
{
    // systemd separates several folders by colons.
    const QString given = qEnvironmentVariable("STATE_DIRECTORY").section(u':', 0, 0);
    if (!given.isEmpty())
        return given + u"/journal.db"_s;
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    // Only absolute paths count there.
    if (const QString home = qEnvironmentVariable("HOME"); !state.startsWith(u'/'))
        state = home.isEmpty() ? QString() : home + u"/.local/state"_s;
    return state.isEmpty() ? QString() : state + u"/frhost/journal.db"_s;
}

void createFolderOf(const QString& file)
{
    createFolder(QFileInfo(file).path(), file);
}

void createPrivateFile(const QString& file)
{
    const int descriptor = ::open(
        QFile::encodeName(file).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (descriptor == -1)
        fail(file);
    ::close(descriptor);
}

} // namespace till
