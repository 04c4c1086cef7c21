#pragma once

#include "tests/e2e/support/frhost.h"

#include <QTemporaryDir>

/// A shop with a till that runs frhost: its configuration and its receipts, in a folder that is deleted with
/// the object.
class Shop
{
public:
    /// The till's register talks to the service at this address.
    explicit Shop(const QString& url);

    /// Replaces or adds a line of the configuration's section [register].
    void configure(const QString& key, const QString& value);
    /// Removes a line from it.
    void unconfigure(const QString& key);
    /// The same as configure() for the section [transport].
    void configureTransport(const QString& key, const QString& value);
    /// The same for the section [queue].
    void configureQueue(const QString& key, const QString& value);
    /// Writes a file that only its owner can read; returns its path.
    [[nodiscard]] QString file(const QString& name, const QByteArray& content) const;
    /// Writes a file with a receipt of 160 roubles for each id, one per line.
    [[nodiscard]] QString receipts(const QStringList& ids) const;

    /// Runs frhost with the configuration and --json.
    [[nodiscard]] Ran frhost(const QStringList& arguments, const QByteArray& input = {}) const;
    /// All arguments that frhost() would use.
    [[nodiscard]] QStringList arguments(const QStringList& more) const;

private:
    using Settings = QList<std::pair<QString, QString>>;

    static void put(Settings& into, const QString& key, const QString& value);

    QTemporaryDir folder;
    Settings settings;
    Settings transport;
    Settings queue;
};

/// A receipt of 160 roubles on one line.
[[nodiscard]] QByteArray receiptLine(const QString& id, double sum = 160);
