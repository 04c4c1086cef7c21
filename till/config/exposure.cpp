#include "till/config/exposure.h"

#include "till/text.h"

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

} // namespace

QString exposure(const QString& path, const struct stat& status, uid_t reader)
{
    if (!S_ISREG(status.st_mode) || (status.st_mode & (S_IRGRP | S_IROTH)) == 0)
        return {};
    const QString file = quotedForShell(path);
    QString command = u"chmod 600 "_s + file;
    // Whoever reads it only as a member of the group could not read it any more.
    if (reader != status.st_uid && reader != root)
        command = u"chown %1 %2 && "_s.arg(QString::number(reader), file) + command;
    return Text::tr("%1 holds a password and has the mode %2, so others can read it. Run: %3")
        .arg(path, QString::number(status.st_mode & 07777, 8).rightJustified(4, u'0'), command);
}

} // namespace till
