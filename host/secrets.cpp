#include "host/secrets.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <memory>
#include <mutex>
#include <shared_mutex>
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

    [[nodiscard]] bool contains(const QString& value) const { return values.contains(value); }

    void add(const QString& value)
    {
        if (values.contains(value))
            return;
        values.append(value);
        if (values.size() > limit)
            values.removeFirst();
        prepared.reset();
    }

    void clear()
    {
        values.clear();
        prepared.reset();
    }

    // None while they are not prepared. Stay as they are while other values are added.
    [[nodiscard]] std::shared_ptr<const Replacements> replacements() const { return prepared; }

    // Called when they are first needed: most values are never looked for.
    void prepare()
    {
        if (prepared)
            return;
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

private:
    qsizetype limit;
    QStringList values;
    std::shared_ptr<const Replacements> prepared;
};

// The values of one kind. They are asked for in every exchange of every register and change once in a token's
// life, so that readers do not wait for each other.
class Registry
{
public:
    explicit Registry(qsizetype most)
        : values(most)
    {
    }

    void add(const QString& value)
    {
        if (value.isEmpty() || known(value))
            return;
        const std::unique_lock lock(guard);
        values.add(value);
    }

    [[nodiscard]] std::shared_ptr<const Replacements> replacements()
    {
        {
            const std::shared_lock lock(guard);
            if (auto prepared = values.replacements())
                return prepared;
        }
        const std::unique_lock lock(guard);
        values.prepare();
        return values.replacements();
    }

    void clear()
    {
        const std::unique_lock lock(guard);
        values.clear();
    }

private:
    [[nodiscard]] bool known(const QString& value)
    {
        const std::shared_lock lock(guard);
        return values.contains(value);
    }

    std::shared_mutex guard;
    Values values;
};

Registry& credentials()
{
    static Registry instance(256);
    return instance;
}

Registry& personal()
{
    static Registry instance(64);
    return instance;
}

QString replaced(QString text, const Replacements& replacements)
{
    for (const auto& [wanted, by] : replacements)
        text.replace(wanted, by);
    return text;
}

} // namespace

void addCredential(const QString& value)
{
    credentials().add(value);
}

void addPersonal(const QString& value)
{
    personal().add(value);
}

QString masked(const QString& text, Audience audience)
{
    const QString withoutCredentials = replaced(text, *credentials().replacements());
    return audience == Audience::Anyone ? replaced(withoutCredentials, *personal().replacements())
                                        : withoutCredentials;
}

void clear()
{
    credentials().clear();
    personal().clear();
}

} // namespace secrets
