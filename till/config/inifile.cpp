#include "till/config/inifile.h"

#include "till/error.h"
#include "till/text.h"

#include <QHash>
#include <QStringDecoder>
#include <QStringList>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

QString decoded(const QByteArray& text, const QString& fileName)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString content = decoder(text);
    if (decoder.hasError())
        throw Error(Problem::Setup, Text::tr("%1: the file is not in UTF-8").arg(fileName));
    return content;
}

} // namespace

QList<IniEntry> parseIni(const QByteArray& text, const QString& fileName)
{
    QList<IniEntry> entries;
    QHash<std::pair<QString, QString>, int> seen;
    QString section;
    int number = 0;
    const auto fail = [&](const QString& what) {
        throw Error(Problem::Setup, u"%1:%2: %3"_s.arg(fileName, QString::number(number), what));
    };

    for (const QString& raw : decoded(text, fileName).split(u'\n')) {
        ++number;
        const QString line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(u'#') || line.startsWith(u';'))
            continue;
        if (line.startsWith(u'[')) {
            if (!line.endsWith(u']'))
                fail(Text::tr("the section name has no closing \"]\""));
            section = line.sliced(1, line.size() - 2).trimmed();
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (equals <= 0)
            fail(Text::tr("expected \"key = value\", a [section] or a # comment"));
        if (section.isEmpty())
            fail(Text::tr("the key precedes the first [section]"));
        const IniEntry entry{
            section, line.first(equals).trimmed(), line.sliced(equals + 1).trimmed(), number};
        if (const int first = seen.value({section, entry.key}))
            fail(Text::tr("the key of line %1 is given again").arg(first));
        seen.insert({section, entry.key}, number);
        entries << entry;
    }
    return entries;
}

} // namespace till
