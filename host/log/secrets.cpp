#include "host/log/secrets.h"

#include "host/log/secretsearch.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <deque>
#include <memory>
#include <mutex>

namespace hostruntime::secrets {

using namespace Qt::Literals::StringLiterals;

namespace {

// The most recent values of one kind.
struct Recent
{
    // Returns whether the value is new.
    bool add(const QString& text)
    {
        const auto known = std::find(values.begin(), values.end(), text);
        if (known != values.end()) {
            std::rotate(known, known + 1, values.end());
            return false;
        }
        values.push_back(text);
        if (values.size() > limit)
            values.pop_front();
        return true;
    }

    std::size_t limit;
    std::deque<QString> values = {};
};

// The values that one audience must not read: those of the configuration, and those that come with each
// exchange. Every register adds values and searches for them in each exchange, so as little as possible is
// done under the lock: the search is prepared when it is first needed. A plain mutex, because with a shared
// one the threads queue up after every writer, and each new buyer is a write.
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

    void addBuyer(const QByteArray& client)
    {
        const std::lock_guard lock(guard);
        if (!unread.empty() && unread.back() == client)
            return;
        if (unread.size() == passing.limit)
            unread.pop_front();
        unread.push_back(client);
        prepared.reset();
    }

    void clear()
    {
        const std::lock_guard lock(guard);
        lasting.values.clear();
        passing.values.clear();
        unread.clear();
        prepared.reset();
    }

    [[nodiscard]] std::shared_ptr<const SecretSearch> search()
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
        readBuyers();
        if (to.add(text))
            prepared.reset();
    }

    void readBuyers()
    {
        for (const QByteArray& client : unread) {
            const QJsonDocument buyer = QJsonDocument::fromJson(client);
            for (const auto key : {"email"_L1, "phone"_L1}) {
                if (const QString contact = buyer[key].toString(); !contact.isEmpty())
                    passing.add(contact);
            }
        }
        unread.clear();
    }

    [[nodiscard]] std::shared_ptr<const SecretSearch> prepare()
    {
        readBuyers();
        const auto prepare = std::make_shared<SecretSearch>();
        for (const Recent* recent : {&lasting, &passing}) {
            for (const QString& value : recent->values)
                prepare->add(value);
        }
        return prepare;
    }

    std::mutex guard;
    Recent lasting;
    Recent passing;
    // As JSON, because most are never searched for: reading them takes longer than the rest.
    std::deque<QByteArray> unread;
    std::shared_ptr<const SecretSearch> prepared;
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

Spans found(const QString& text, Audience audience, bool isQuoted)
{
    Spans spans;
    credentials().search()->find(text, isQuoted, spans);
    if (audience == Audience::Anyone)
        personal().search()->find(text, isQuoted, spans);
    std::sort(spans.begin(), spans.end(),
        [](const Span& left, const Span& right) { return left.begin < right.begin; });
    return spans;
}

// Of values that overlap, nothing must stay readable.
QString replaced(const QString& text, const Spans& spans)
{
    if (spans.empty())
        return text;
    QString result;
    qsizetype done = 0;
    for (auto span = spans.begin(); span != spans.end();) {
        const qsizetype begin = span->begin;
        qsizetype end = span->end;
        for (; span != spans.end() && (span->begin < end || span->begin == begin); ++span)
            end = std::max(end, span->end);
        result += QStringView(text).sliced(done, begin - done);
        result += mask;
        done = end;
    }
    result += QStringView(text).sliced(done);
    return result;
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

void addBuyer(const QByteArray& client)
{
    personal().addBuyer(client);
}

QString masked(const QString& text, Audience audience)
{
    return replaced(text, found(text, audience, false));
}

QJsonValue masked(const QJsonValue& value, Audience audience)
{
    if (value.isString())
        return replaced(value.toString(), found(value.toString(), audience, true));
    if (value.isArray()) {
        QJsonArray array;
        for (const QJsonValue element : value.toArray())
            array.append(masked(element, audience));
        return array;
    }
    if (!value.isObject())
        return value;
    QJsonObject object;
    const QJsonObject from = value.toObject();
    for (auto member = from.begin(); member != from.end(); ++member)
        object.insert(
            replaced(member.key(), found(member.key(), audience, true)), masked(member.value(), audience));
    return object;
}

void clear()
{
    credentials().clear();
    personal().clear();
}

} // namespace hostruntime::secrets
