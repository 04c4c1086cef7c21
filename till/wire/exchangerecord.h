#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QUrl>
#include <QVariant>

namespace till {

/// The last exchanges with the service, for whoever looks for a fault: one line of JSON each, without
/// passwords, tokens, logins and buyers' contacts.
class ExchangeRecord
{
public:
    /// So many are remembered.
    static constexpr qsizetype most = 30;
    /// A file that has grown beyond this is renamed with ".1" at the end, over the one before.
    static constexpr qint64 longestFile = 512 * 1024;

    /// `failure` says why there is no answer; empty when there is one. Whoever calls has registered the
    /// secrets of the exchange (host/log/secrets.h).
    void add(const char* verb, const QUrl& url, const QByteArray& body, const QVariant& answer,
        const QString& failure);

    [[nodiscard]] QByteArray lines() const { return kept.join(); }
    /// Appends what is remembered to a file that only its owner can read, and forgets it. Returns whether
    /// that has succeeded.
    bool moveTo(const QString& file);

private:
    QByteArrayList kept;
};

} // namespace till
