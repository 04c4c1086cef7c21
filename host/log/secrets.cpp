#include "host/log/secrets.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace hostruntime::secrets {

namespace {

constexpr qsizetype shortest = 4;

QString escaped(const QString& value)
{
    const QByteArray json = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(json.sliced(2, json.size() - 4));
}

// JSON may also be written in pure ASCII.
QString escapedAscii(const QString& value)
{
    QString text;
    for (const QChar c : escaped(value)) {
        if (c.unicode() < 0x80)
            text += c;
        else
            text += u"\\u%1"_s.arg(c.unicode(), 4, 16, QLatin1Char('0'));
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
    const QString form = QString(percent).replace(u"%20"_s, u"+"_s);
    const QString json = escaped(value);
    QStringList list{value, json, QString(json).replace(u'/', u"\\/"_s), escapedAscii(value), percent, form,
        withLowerCaseHex(percent), withLowerCaseHex(form), percentEncoded(value, "!$&'()*+,;=:@/")};
    list.removeDuplicates();
    return list;
}

struct Replacement
{
    QString wanted;
    QString by;
};

using Replacements = std::vector<Replacement>;

Replacements replacementsOf(const QString& value)
{
    const QString frame = value.size() < shortest ? u"\""_s : QString();
    Replacements list;
    for (const QString& spelling : spellings(value))
        list.push_back({frame + spelling + frame, frame + mask.toString() + frame});
    return list;
}

struct Value
{
    QString text;
    Replacements spelt;
};

// The most recent values of one kind.
struct Recent
{
    // Returns whether the value is new.
    bool add(const QString& text)
    {
        const auto isKnown = [&](const Value& value) { return value.text == text; };
        const auto known = std::find_if(values.begin(), values.end(), isKnown);
        if (known != values.end()) {
            std::rotate(known, known + 1, values.end());
            return false;
        }
        values.push_back({text, {}});
        if (values.size() > limit)
            values.pop_front();
        return true;
    }

    std::size_t limit;
    std::deque<Value> values = {};
};

// The values that one audience must not read: those of the configuration, and those that come with each
// exchange. Every register adds values and searches for them in each exchange, so as little as possible is
// done under the lock: the spellings of a value are computed when it is first searched for, which for most
// values never happens. A plain mutex, because with a shared one the threads queue up after every writer,
// and each new buyer is a write.
class Values
{
public:
    explicit Values(std::size_t mostPassing)
        : lasting{256}
        , passing{mostPassing}
    {
    }

    void addLasting(const QString& text) { add(lasting, text); }
    void addPassing(const QString& text) { add(passing, text); }

    void clear()
    {
        const std::lock_guard lock(guard);
        lasting.values.clear();
        passing.values.clear();
        prepared.reset();
    }

    // The returned list does not change when values are added.
    [[nodiscard]] std::shared_ptr<const Replacements> replacements()
    {
        const std::lock_guard lock(guard);
        if (!prepared)
            prepared = prepare();
        return prepared;
    }

private:
    void add(Recent& to, const QString& text)
    {
        if (text.isEmpty())
            return;
        const std::lock_guard lock(guard);
        if (to.add(text))
            prepared.reset();
    }

    [[nodiscard]] std::shared_ptr<const Replacements> prepare()
    {
        const auto list = std::make_shared<Replacements>();
        for (Recent* recent : {&lasting, &passing}) {
            for (Value& value : recent->values) {
                if (value.spelt.empty())
                    value.spelt = replacementsOf(value.text);
                list->insert(list->end(), value.spelt.begin(), value.spelt.end());
            }
        }
        // Longer spellings first: a value that is the beginning of another one would otherwise leave the rest
        // of it readable.
        std::stable_sort(list->begin(), list->end(), [](const Replacement& left, const Replacement& right) {
            return left.wanted.size() > right.wanted.size();
        });
        return list;
    }

    std::mutex guard;
    Recent lasting;
    Recent passing;
    std::shared_ptr<const Replacements> prepared;
};

Values& credentials()
{
    static Values instance(256);
    return instance;
}

Values& personal()
{
    static Values instance(64);
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
    credentials().addLasting(value);
}

void addToken(const QString& value)
{
    credentials().addPassing(value);
}

void addLogin(const QString& value)
{
    personal().addLasting(value);
}

void addPersonal(const QString& value)
{
    personal().addPassing(value);
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

} // namespace hostruntime::secrets
