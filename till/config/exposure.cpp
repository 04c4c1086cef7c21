#include "till/config/exposure.h"

#include "till/text.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

constexpr uid_t root = 0;

QString quotedForShell(QString path)
{
    const bool isPlain = std::all_of(path.begin(), path.end(),
        [](QChar c) { return (c.unicode() < 0x80 && c.isLetterOrNumber()) || u"_./-+"_s.contains(c); });
    return isPlain ? path : u'\'' + path.replace(u'\'', u"'\\''"_s) + u'\'';
}

QString modeOf(const struct stat& status)
{
    return QString::number(status.st_mode & 07777, 8).rightJustified(4, u'0');
}

bool othersWrite(const struct stat& status)
{
    return (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

bool mayChange(const struct stat& status, uid_t user)
{
    return user == status.st_uid || user == root;
}

QString changeAdvice(const QString& path, const struct stat& status, uid_t reader)
{
    const QString command = u"chmod go-w "_s + quotedForShell(path);
    if (mayChange(status, reader))
        return Text::tr("Run: %1").arg(command);
    return Text::tr("Its owner, user %1, or an administrator should run: %2")
        .arg(QString::number(status.st_uid), command);
}

} // namespace

QString exposure(const QString& path, const struct stat& status, uid_t reader)
{
    if (!S_ISREG(status.st_mode) || (status.st_mode & (S_IRGRP | S_IROTH)) == 0)
        return {};
    const QString what =
        Text::tr("%1 holds a password and has the mode %2, so others can read it.").arg(path, modeOf(status));
    // Whoever reads it only as a member of the group could not read it any more.
    const QString advice =
        mayChange(status, reader)
            ? Text::tr("Run: %1").arg(u"chmod 600 "_s + quotedForShell(path))
            : Text::tr("Only its owner, user %1, or an administrator can change that; you need a file of "
                       "your own with the mode 0600.")
                  .arg(status.st_uid);
    return what + u' ' + advice;
}

QString changeability(const QString& path, const struct stat& status, uid_t reader)
{
    if (!S_ISREG(status.st_mode) || !othersWrite(status))
        return {};
    return Text::tr("%1 has the mode %2, so others can change it, and with it the address that receives "
                    "login and password.")
               .arg(path, modeOf(status)) +
           u' ' + changeAdvice(path, status, reader);
}

QString ownership(const QString& path, const struct stat& status, uid_t reader)
{
    if (!S_ISREG(status.st_mode) || status.st_uid == root || status.st_uid == reader)
        return {};
    return Text::tr("%1 belongs to user %2, who can change it, and with it the address that receives login "
                    "and password.")
               .arg(path, QString::number(status.st_uid)) +
           u' ' +
           Text::tr("An administrator should run: %1").arg(u"chown %1 "_s.arg(reader) + quotedForShell(path));
}

QStringList replaceability(const QString& path, uid_t reader)
{
    const QFileInfo file(path);
    QStringList folders{file.absolutePath(), file.canonicalPath()};
    folders.removeDuplicates();
    QStringList warnings;
    for (const QString& folder : folders) {
        struct stat status = {};
        // In a folder with the sticky bit, only its owner replaces a file.
        if (stat(QFile::encodeName(folder).constData(), &status) != 0 || !othersWrite(status) ||
            (status.st_mode & S_ISVTX) != 0)
            continue;
        warnings << Text::tr("%1 has the mode %2, so others can replace %3, and with it the address that "
                             "receives login and password.")
                            .arg(folder, modeOf(status), path) +
                        u' ' + changeAdvice(folder, status, reader);
    }
    return warnings;
}

} // namespace till
