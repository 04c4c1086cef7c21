#include "till/wire/exchangerecord.h"

#include "host/log/secrets.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

namespace secrets = hostruntime::secrets;

// Of anything longer, the beginning tells enough.
constexpr qsizetype longest = 32 * 1024;

QJsonValue readable(const QByteArray& body)
{
    const QJsonDocument json = QJsonDocument::fromJson(body);
    return json.isObject() ? QJsonValue(json.object()) : QJsonValue(QString::fromUtf8(body));
}

} // namespace

void ExchangeRecord::add(
    const char* verb, const QUrl& url, const QByteArray& body, const QVariant& answer, const QString& failure)
{
    QJsonObject json{{u"time"_s, QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)},
        {u"process"_s, static_cast<int>(getpid())},
        {u"request"_s, QString::fromLatin1(verb) + u' ' + url.path()}};
    if (!body.isEmpty())
        json.insert(u"body"_s, readable(body));
    if (answer.isValid())
        json.insert(u"answer"_s, QJsonValue::fromVariant(answer));
    if (!failure.isEmpty())
        json.insert(u"failure"_s, failure);
    const QJsonObject masked = secrets::masked(json, secrets::Audience::Anyone).toObject();
    QByteArray line = QJsonDocument(masked).toJson(QJsonDocument::Compact);
    if (line.size() > longest)
        line =
            QByteArray("{\"cut\": ") +
            QJsonDocument(QJsonArray{QString::fromUtf8(line.first(longest))}).toJson(QJsonDocument::Compact) +
            '}';
    if (kept.size() == most)
        kept.removeFirst();
    kept << line + '\n';
}

bool ExchangeRecord::moveTo(const QString& file)
{
    const QByteArray name = QFile::encodeName(file);
    if (QFileInfo(file).size() > longestFile)
        std::rename(name.constData(), (name + ".1").constData());
    const int descriptor = ::open(name.constData(),
        O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (descriptor == -1)
        return false;
    const QByteArray all = lines();
    const bool isWritten =
        ::write(descriptor, all.constData(), static_cast<std::size_t>(all.size())) == all.size();
    ::close(descriptor);
    kept.clear();
    return isWritten;
}

} // namespace till
