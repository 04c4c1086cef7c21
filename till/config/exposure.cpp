#include "till/config/exposure.h"

#include "till/text.h"

#include <algorithm>

namespace frhost {

namespace {

constexpr uid_t root = 0;

QString quotedForShell(QString path)
{
    const bool isPlain = std::all_of(path.begin(), path.end(), [](QChar c) {
        return (c.unicode() < 0x80 && c.isLetterOrNumber()) || QStringLiteral("_./-+").contains(c);
    });
    return isPlain ? path : u'\'' + path.replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}

} // namespace

QString exposure(const QString& path, const struct stat& status, uid_t reader)
{
    if (!S_ISREG(status.st_mode) || (status.st_mode & (S_IRGRP | S_IROTH)) == 0)
        return {};
    const QString file = quotedForShell(path);
    QString command = QStringLiteral("chmod 600 ") + file;
    // Whoever reads it only as a member of the group could not read it any more.
    if (reader != status.st_uid && reader != root)
        command = QStringLiteral("chown %1 %2 && ").arg(QString::number(reader), file) + command;
    return Text::tr("%1 holds a password and has the mode %2, so others can read it. Run: %3")
        .arg(path, QString::number(status.st_mode & 07777, 8).rightJustified(4, u'0'), command);
}

} // namespace frhost
