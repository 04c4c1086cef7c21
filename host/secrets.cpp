#include "host/secrets.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMutex>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace secrets {

namespace {

constexpr qsizetype shortest = 4;

QString escaped(const QString& value)
{
    const QByteArray json = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(json.sliced(2, json.size() - 4));
}

// JSON may also be written in ASCII alone.
QString escapedAscii(const QString& value)
{
    QString text;
    for (const QChar c : escaped(value)) {
        if (c.unicode() < 0x80)
            text += c;
        else
            text += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
    return text;
}

QString percentEncoded(const QString& value, const char* keep = "")
{
    return QString::fromLatin1(QUrl::toPercentEncoding(value, keep));
}

QString withLowerCaseHex(QString text)
{
    for (qsizetype i = text.indexOf(u'%'); i >= 0; i = text.indexOf(u'%', i + 1)) {
        text[i + 1] = text[i + 1].toLower();
        text[i + 2] = text[i + 2].toLower();
    }
    return text;
}

QStringList spellings(const QString& value)
{
    const QString percent = percentEncoded(value);
    const QString form = QString(percent).replace(QStringLiteral("%20"), QStringLiteral("+"));
    const QString json = escaped(value);
    QStringList list{value, json, QString(json).replace(u'/', QStringLiteral("\\/")), escapedAscii(value),
        percent, form, withLowerCaseHex(percent), withLowerCaseHex(form),
        percentEncoded(value, "!$&'()*+,;=:@/")};
    list.removeDuplicates();
    return list;
}

struct Replacement
{
    QString wanted;
    QString by;
};

using Replacements = std::vector<Replacement>;

// The latest values, the oldest forgotten first.
class Values
{
public:
    explicit Values(qsizetype most)
        : limit(most)
    {
    }

    void add(const QString& value)
    {
        if (value.isEmpty() || values.contains(value))
            return;
        values.append(value);
        if (values.size() > limit)
            values.removeFirst();
        prepare();
    }

    void clear()
    {
        values.clear();
        prepare();
    }

    // Stays as it is while others are added.
    [[nodiscard]] std::shared_ptr<const Replacements> replacements() const { return prepared; }

private:
    void prepare()
    {
        auto list = std::make_shared<Replacements>();
        for (const QString& value : values) {
            const QString frame = value.size() < shortest ? QStringLiteral("\"") : QString();
            for (const QString& spelling : spellings(value))
                list->push_back({frame + spelling + frame, frame + mask.toString() + frame});
        }
        // The longer first, so that a value that begins another one does not leave the other's tail behind.
        std::stable_sort(list->begin(), list->end(), [](const Replacement& left, const Replacement& right) {
            return left.wanted.size() > right.wanted.size();
        });
        prepared = std::move(list);
    }

    qsizetype limit;
    QStringList values;
    std::shared_ptr<const Replacements> prepared = std::make_shared<Replacements>();
};

struct Registry
{
    QMutex guard;
    Values credentials{256};
    Values personal{64};
};

Registry& registry()
{
    static Registry instance;
    return instance;
}

} // namespace

void addCredential(const QString& value)
{
    const QMutexLocker lock(&registry().guard);
    registry().credentials.add(value);
}

void addPersonal(const QString& value)
{
    const QMutexLocker lock(&registry().guard);
    registry().personal.add(value);
}

QString masked(const QString& text, Audience audience)
{
    std::shared_ptr<const Replacements> credentials;
    std::shared_ptr<const Replacements> personal;
    {
        const QMutexLocker lock(&registry().guard);
        credentials = registry().credentials.replacements();
        if (audience == Audience::Anyone)
            personal = registry().personal.replacements();
    }
    QString result = text;
    for (const auto& list : {credentials, personal}) {
        if (!list)
            continue;
        for (const auto& [wanted, by] : *list)
            result.replace(wanted, by);
    }
    return result;
}

void clear()
{
    const QMutexLocker lock(&registry().guard);
    registry().credentials.clear();
    registry().personal.clear();
}

} // namespace secrets
